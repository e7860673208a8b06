#include "inspector/original_section.h"

#include <QHBoxLayout>
#include <QLabel>

#include "controls/panel_text.h"
#include "platform/desktop/formatting.h"

namespace vantrel {
namespace {

// Points.
constexpr int kRowSpacing = 8;
constexpr int kTitleSpacing = 16;
constexpr int kRowHeight = 20;

}  // namespace

OriginalSection::OriginalSection(QWidget* parent) : QWidget(parent) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kRowSpacing);
  layout->addWidget(PanelText::title(tr("Original"), this));
  m_format = addRow(tr("Format"));
  m_resolution = addRow(tr("Resolution"));
  m_resolution.row->setToolTip(tr("Pixels"));
  m_size = addRow(tr("Size"));
  m_colorProfile = addRow(tr("Color profile"));
}

OriginalSection::Row OriginalSection::addRow(const QString& title) {
  auto* row = new QWidget(this);
  row->setMinimumHeight(kRowHeight);
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kTitleSpacing);
  QLabel* value = PanelText::value(row);
  layout->addWidget(PanelText::body(title, row));
  layout->addWidget(value, 1);
  this->layout()->addWidget(row);
  return {row, value};
}

void OriginalSection::setSource(const InspectorSource& source) {
  if (!source.imageSource) return;
  const ImageSource& image = *source.imageSource;
  m_format.value->setText(image.formatName());
  m_resolution.value->setText(
      PanelText::pixelSize(static_cast<int64_t>(source.sourceSize.width()),
                           static_cast<int64_t>(source.sourceSize.height())));
  m_size.value->setText(CropFormatting::byteCount(source.sourceBytes));
  m_colorProfile.row->setVisible(image.colorProfileName.has_value());
  m_colorProfile.value->setText(image.colorProfileName.value_or(QString()));
  // Marked up, so that the name itself, which comes out of the file, is not taken for markup.
  m_colorProfile.value->setToolTip(
      QStringLiteral("<p>%1</p>").arg(m_colorProfile.value->text().toHtmlEscaped()));
}

}  // namespace vantrel
