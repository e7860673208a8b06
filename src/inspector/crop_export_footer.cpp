#include "inspector/crop_export_footer.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedLayout>
#include <algorithm>
#include <cmath>

#include "controls/panel_text.h"
#include "controls/slim_progress_bar.h"
#include "export/crop_export_state.h"
#include "inspector/export_footer_text.h"
#include "platform/desktop/formatting.h"
#include "platform/desktop/key_names.h"

namespace vantrel {
namespace {

// Points.
constexpr int kHeight = 90;
constexpr int kHorizontalPadding = 16;
constexpr int kVerticalPadding = 12;
constexpr int kSpacing = 8;
constexpr int kActionHeight = 34;
constexpr int kStatusHeight = 24;
constexpr int kProgressSpacing = 3;

constexpr int kBarSteps = 1000;

}  // namespace

CropExportFooter::CropExportFooter(const CropExportState& state, const QColor& accent,
                                   QWidget* parent)
    : QWidget(parent), m_state(state), m_accent(accent) {
  setFixedHeight(kHeight);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(kHorizontalPadding, kVerticalPadding, kHorizontalPadding,
                             kVerticalPadding);
  layout->setSpacing(kSpacing);
  layout->addWidget(makeActionRow());
  layout->addWidget(makeStatusRow());
  connect(&state, &CropExportState::changed, this, &CropExportFooter::showState);
  showState();
}

QWidget* CropExportFooter::makeActionRow() {
  auto* row = new QWidget(this);
  row->setFixedHeight(kActionHeight);
  m_export = new QPushButton(tr("Export"), row);
  m_export->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
  m_export->setToolTip(
      tr("Encode and review the crop (%1)").arg(keyText(Qt::CTRL | Qt::SHIFT | Qt::Key_E)));
  QFont font = m_export->font();
  font.setWeight(QFont::DemiBold);
  m_export->setFont(font);
  m_export->setAutoDefault(false);
  connect(m_export, &QPushButton::clicked, this, &CropExportFooter::exportRequested);

  m_progress = makeProgress();
  auto* layout = new QStackedLayout(row);
  layout->addWidget(m_export);
  layout->addWidget(m_progress);
  return row;
}

QWidget* CropExportFooter::makeProgress() {
  auto* progress = new QWidget(this);
  m_phase = PanelText::caption({}, progress);
  m_bytes = PanelText::caption({}, progress);
  m_bar = new SlimProgressBar(m_accent, progress);
  m_bar->setAccessibleName(tr("Export progress"));

  auto* text = new QHBoxLayout;
  text->addWidget(m_phase, 1);
  text->addWidget(m_bytes);
  auto* layout = new QVBoxLayout(progress);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kProgressSpacing);
  layout->addStretch();
  layout->addLayout(text);
  layout->addWidget(m_bar);
  layout->addStretch();
  return progress;
}

QWidget* CropExportFooter::makeStatusRow() {
  auto* row = new QWidget(this);
  row->setFixedHeight(kStatusHeight);
  m_status = PanelText::caption({}, row);
  m_status->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  m_cancel = new QPushButton(tr("Cancel"), row);
  m_cancel->setToolTip(tr("Cancel export"));
  m_cancel->setFixedHeight(kStatusHeight);
  m_cancel->setAutoDefault(false);
  QFont font = m_cancel->font();
  font.setPixelSize(PanelText::kCaptionSize);
  m_cancel->setFont(font);
  connect(m_cancel, &QPushButton::clicked, this, &CropExportFooter::cancelRequested);

  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(kSpacing);
  layout->addWidget(m_status, 1);
  layout->addWidget(m_cancel);
  return row;
}

void CropExportFooter::setOutput(const Output& output) {
  m_output = output;
  showState();
}

void CropExportFooter::showState() {
  const bool running = m_state.progress().has_value();
  showButton();
  static_cast<QStackedLayout*>(m_export->parentWidget()->layout())
      ->setCurrentWidget(running ? m_progress : m_export);
  m_cancel->setVisible(running);
  m_status->setText(ExportFooterText::status(m_state.message(), m_output.loaded, m_output.width,
                                             m_output.height, m_output.encodingName));
  if (!running) return;

  const double progress = *m_state.progress();
  m_phase->setText(ExportFooterText::phase(progress, m_state.indeterminate()));
  m_bytes->setText(CropFormatting::byteCount(m_state.bytes()));
  m_bar->setRange(0, m_state.indeterminate() ? 0 : kBarSteps);
  m_bar->setValue(static_cast<int>(std::lround(std::clamp(progress, 0.0, 1.0) * kBarSteps)));
}

void CropExportFooter::showButton() {
  m_export->setEnabled(m_output.canExport);
  QPalette colors;
  if (m_output.canExport) {
    colors.setColor(QPalette::Button, m_accent);
    colors.setColor(QPalette::ButtonText, Qt::white);
  } else {
    colors.setColor(QPalette::ButtonText, palette().color(QPalette::PlaceholderText));
  }
  m_export->setPalette(colors);
}

}  // namespace vantrel
