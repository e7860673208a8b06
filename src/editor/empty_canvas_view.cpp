#include "editor/empty_canvas_view.h"

#include <QPushButton>
#include <QSvgWidget>
#include <QVBoxLayout>

namespace vantrel {
namespace {

// Points.
constexpr int kArtworkSize = 256;
constexpr int kSpacing = 32;
constexpr int kButtonWidth = 142;
constexpr int kButtonHeight = 34;

}  // namespace

EmptyCanvasView::EmptyCanvasView(QWidget* parent) : QWidget(parent) {
  auto* artwork = new QSvgWidget(QStringLiteral(":/vantrel/artwork.svg"), this);
  artwork->setFixedSize(kArtworkSize, kArtworkSize);
  m_open = new QPushButton(tr("Drop or Open…"), this);
  m_open->setMinimumSize(kButtonWidth, kButtonHeight);
  connect(m_open, &QPushButton::clicked, this, &EmptyCanvasView::openRequested);

  auto* layout = new QVBoxLayout(this);
  layout->setSpacing(kSpacing);
  layout->addStretch();
  layout->addWidget(artwork, 0, Qt::AlignHCenter);
  layout->addWidget(m_open, 0, Qt::AlignHCenter);
  layout->addStretch();
}

}  // namespace vantrel
