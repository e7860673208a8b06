#include "editor/empty_canvas_view.h"

#include <QPainter>
#include <QPushButton>
#include <QSpacerItem>
#include <QSvgRenderer>
#include <QVBoxLayout>

#include "controls/link_button.h"

namespace vantrel {
namespace {

// Points.
constexpr int kArtworkSize = 256;
constexpr int kSpacing = 32;
constexpr int kButtonSpacing = 12;
constexpr int kButtonWidth = 142;
constexpr int kButtonHeight = 34;

}  // namespace

EmptyCanvasView::EmptyCanvasView(QWidget* parent)
    : QWidget(parent),
      m_artwork(new QSvgRenderer(QStringLiteral(":/vantrel/artwork.svg"), this)),
      m_artworkPlace(new QSpacerItem(kArtworkSize, kArtworkSize + kSpacing, QSizePolicy::Fixed,
                                     QSizePolicy::Fixed)) {
  m_artwork->setAspectRatioMode(Qt::KeepAspectRatio);
  m_open = new QPushButton(tr("Drop or Open…"), this);
  m_open->setMinimumSize(kButtonWidth, kButtonHeight);
  m_sample = new LinkButton(tr("Sample Video"), this);
  connect(m_open, &QAbstractButton::clicked, this, &EmptyCanvasView::openRequested);
  connect(m_sample, &QAbstractButton::clicked, this, &EmptyCanvasView::sampleRequested);

  auto* buttons = new QVBoxLayout;
  buttons->setSpacing(kButtonSpacing);
  buttons->addWidget(m_open, 0, Qt::AlignHCenter);
  buttons->addWidget(m_sample, 0, Qt::AlignHCenter);
  auto* layout = new QVBoxLayout(this);
  layout->addStretch();
  layout->addSpacerItem(m_artworkPlace);
  layout->addLayout(buttons);
  layout->addStretch();
}

QRect EmptyCanvasView::artworkFrame() const {
  const QRect place = m_artworkPlace->geometry();
  return {place.x() + (place.width() - kArtworkSize) / 2, place.y(), kArtworkSize, kArtworkSize};
}

void EmptyCanvasView::paintEvent(QPaintEvent* /*event*/) {
  QPainter painter(this);
  m_artwork->render(&painter, artworkFrame());
}

}  // namespace vantrel
