#include "inspector/crop_inspector_section.h"

#include <QHBoxLayout>
#include <QLabel>

#include "controls/crop_reset_button.h"
#include "controls/panel_text.h"
#include "controls/text_scale.h"

namespace vantrel {
namespace {

// Points; the spacing is between the controls of a row.
constexpr int kTitleHeight = 18;
constexpr int kControlSpacing = 6;

}  // namespace

CropInspectorSection::CropInspectorSection(const QString& title, QWidget* parent)
    : QWidget(parent), m_header(new QHBoxLayout), m_rows(new QVBoxLayout(this)) {
  m_rows->setContentsMargins({});
  m_rows->setSpacing(kSpacing);
  m_header->setSpacing(kControlSpacing);
  QLabel* const text = PanelText::title(title, this);
  followText(*text, [text] { text->setMinimumHeight(scaledForText(kTitleHeight)); });
  m_header->addWidget(text, 1);
  m_rows->addLayout(m_header);
}

QWidget* CropInspectorSection::addRow(const QString& title,
                                      std::initializer_list<QWidget*> controls) {
  auto* const row = new QWidget(this);
  auto* const layout = new QHBoxLayout(row);
  layout->setContentsMargins({});
  layout->setSpacing(kControlSpacing);
  QLabel* const text = PanelText::body(title, row);
  followText(*text, [text] { text->setMinimumHeight(scaledForText(kRowHeight)); });
  layout->addWidget(text, 1);
  for (QWidget* const control : controls) {
    layout->addWidget(control);
    // Assistive tools then read the name of the two but once.
    if (control->accessibleName() == title) text->setBuddy(control);
  }
  endRow(layout, *(controls.end() - 1));
  m_rows->addWidget(row);
  return row;
}

QWidget* CropInspectorSection::addWide(QWidget* control) {
  auto* const row = new QWidget(this);
  auto* const layout = new QHBoxLayout(row);
  layout->setContentsMargins({});
  layout->addWidget(control);
  endRow(layout, control);
  m_rows->addWidget(row);
  return row;
}

void CropInspectorSection::endRow(QHBoxLayout* row, const QWidget* last) {
  const bool overhangs = qobject_cast<const CropResetButton*>(last);
  if (overhangs) {
    row->setContentsMargins({});
  } else {
    followText(*this, [row] { row->setContentsMargins(0, 0, CropResetButton::overhang(), 0); });
  }
}

}  // namespace vantrel
