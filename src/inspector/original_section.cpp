#include "inspector/original_section.h"

#include <QHBoxLayout>
#include <QLabel>

#include "controls/crop_reset_button.h"
#include "controls/panel_text.h"
#include "controls/text_scale.h"
#include "inspector/source_facts.h"

namespace vantrel {
namespace {

/// Points.
constexpr int kTitleSpacing = 16;

}  // namespace

OriginalSection::OriginalSection(QWidget* parent) : CropInspectorSection(tr("Original"), parent) {}

OriginalSection::Row OriginalSection::makeRow() {
  auto* const row = new QWidget(this);
  const Row made{row, PanelText::body({}, row), PanelText::value(row)};
  auto* const layout = new QHBoxLayout(row);
  layout->setSpacing(kTitleSpacing);
  followText(*made.title,
             [title = made.title] { title->setMinimumHeight(scaledForText(kRowHeight)); });
  layout->addWidget(made.title);
  layout->addWidget(made.value, 1);
  endRow(layout, made.value);
  rows()->addWidget(row);
  return made;
}

void OriginalSection::setSource(const InspectorSource& source) {
  const std::vector<SourceFact> facts = sourceFacts(source);
  while (m_factRows.size() < facts.size())
    m_factRows.push_back(makeRow());
  for (size_t index = 0; index < m_factRows.size(); ++index) {
    const Row& row = m_factRows[index];
    const SourceFact fact = index < facts.size() ? facts[index] : SourceFact();
    row.title->setText(fact.title);
    row.value->setText(fact.value);
    row.widget->setToolTip(fact.help);
    row.widget->setVisible(index < facts.size());
  }
}

}  // namespace vantrel
