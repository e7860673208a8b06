#include "editor/empty_canvas_view.h"

#include <QPushButton>
#include <QSvgWidget>
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

EmptyCanvasView::EmptyCanvasView(QWidget* parent) : QWidget(parent) {
  auto* artwork = new QSvgWidget(QStringLiteral(":/vantrel/artwork.svg"), this);
  artwork->setFixedSize(kArtworkSize, kArtworkSize);
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
  layout->setSpacing(kSpacing);
  layout->addStretch();
  layout->addWidget(artwork, 0, Qt::AlignHCenter);
  layout->addLayout(buttons);
  layout->addStretch();
}

}  // namespace vantrel
