#include "inspector/crop_export_footer.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QStackedLayout>
#include <QToolButton>
#include <algorithm>
#include <cmath>

#include "controls/panel_text.h"
#include "controls/popover.h"
#include "controls/slim_progress_bar.h"
#include "controls/symbol_icon.h"
#include "controls/text_scale.h"
#include "export/crop_export_state.h"
#include "inspector/export_focus.h"
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
constexpr int kLeastTextSpacing = 4;
constexpr int kCancelPadding = 12;
constexpr int kHelpLineSpacing = 5;
constexpr int kHelpIcon = 16, kHelpOverhang = 4;

const QString kHelpSymbol = QStringLiteral("circle-help");

constexpr int kBarSteps = 1000;

}  // namespace

CropExportFooter::CropExportFooter(const CropExportState& state, const QColor& accent,
                                   QWidget* parent)
    : QWidget(parent), m_state(state), m_accent(accent) {
  auto* layout = new QVBoxLayout(this);
  layout->setSpacing(kSpacing);
  auto* action = new QHBoxLayout;
  followText(*this, [this, layout, action] {
    setFixedHeight(scaledForText(kHeight));
    const int overhang = scaledForText(kHelpOverhang);
    layout->setContentsMargins(kHorizontalPadding, kVerticalPadding, kHorizontalPadding - overhang,
                               kVerticalPadding);
    action->setContentsMargins(0, 0, overhang, 0);
  });
  action->addWidget(makeActionRow());
  layout->addLayout(action);
  layout->addLayout(makeStatusRow());
  m_focus = std::make_unique<ExportFocus>(*m_export, *m_cancel);
  connect(&state, &CropExportState::changed, this, &CropExportFooter::showState);
  showState();
}

CropExportFooter::~CropExportFooter() = default;

QWidget* CropExportFooter::makeActionRow() {
  auto* row = new QWidget(this);
  followText(*row, [row] { row->setFixedHeight(scaledForText(kActionHeight)); });
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
  m_phase->setForegroundRole(QPalette::WindowText);
  m_bytes = PanelText::caption({}, progress);
  m_bar = new SlimProgressBar(m_accent, progress);
  m_bar->setAccessibleName(tr("Export progress"));

  auto* text = new QHBoxLayout;
  text->setSpacing(kLeastTextSpacing);
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

QHBoxLayout* CropExportFooter::makeStatusRow() {
  m_status = PanelText::shortCaption(this);
  makeCancel();
  makeHelp();
  m_statusRow = new QHBoxLayout;
  m_statusRow->setSpacing(kSpacing);
  m_statusRow->addWidget(m_status, 1);
  m_statusRow->addWidget(m_cancel);
  m_statusRow->addWidget(m_help);
  return m_statusRow;
}

void CropExportFooter::makeCancel() {
  m_cancel = new QPushButton(tr("Cancel"), this);
  m_cancel->setToolTip(tr("Cancel export"));
  m_cancel->setAutoDefault(false);
  scaleFont(*m_cancel, PanelText::kCaptionSize);
  followText(*m_cancel, [this] { fitCancel(); });
  connect(m_cancel, &QPushButton::clicked, this, &CropExportFooter::cancelRequested);
}

void CropExportFooter::fitCancel() {
  const int text = m_cancel->fontMetrics().horizontalAdvance(m_cancel->text());
  m_cancel->setFixedSize(text + 2 * kCancelPadding, scaledForText(kStatusHeight));
}

void CropExportFooter::makeHelp() {
  m_help = new QToolButton(this);
  m_help->setAccessibleName(tr("Canvas Help"));
  m_help->setAccessibleDescription(ExportFooterText::help());
  m_help->setToolTip(tr("Canvas shortcuts"));
  m_help->setAutoRaise(true);
  followText(*m_help, [this] {
    m_help->setFixedSize(QSize(1, 1) * scaledForText(kStatusHeight));
    m_help->setIconSize(QSize(1, 1) * scaledForText(kHelpIcon));
  });
  m_help->setIcon(secondaryIcon(kHelpSymbol, palette()));
  connect(m_help, &QToolButton::clicked, this, &CropExportFooter::toggleHelp);
}

Popover* CropExportFooter::helpPopover() const {
  return m_helpPopover;
}

void CropExportFooter::toggleHelp() {
  if (m_helpPopover) {
    m_helpPopover->dismiss();
    return;
  }
  auto* lines = new QWidget;
  auto* layout = new QVBoxLayout(lines);
  layout->setContentsMargins({});
  layout->setSpacing(kHelpLineSpacing);
  for (const QString& line : ExportFooterText::help().split(u'\n'))
    layout->addWidget(PanelText::callout(line, lines));
  m_helpPopover = new Popover(*m_help, lines);
  m_helpPopover->setAccessibleName(m_help->accessibleName());
}

void CropExportFooter::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange && m_cancel) fitCancel();
  if (event->type() != QEvent::PaletteChange) return;
  m_help->setIcon(secondaryIcon(kHelpSymbol, palette()));
  showButton();
}

void CropExportFooter::setOutput(const Output& output) {
  m_output = output;
  showState();
  if (!m_state.progress()) m_focus->forget();
}

void CropExportFooter::begin() {
  m_focus->begin();
}

void CropExportFooter::showState() {
  const bool running = m_state.progress().has_value();
  if (!running) m_focus->leaveCancel();
  // What goes makes room for what comes.
  (running ? static_cast<QWidget*>(m_help) : m_cancel)->hide();
  (running ? static_cast<QWidget*>(m_cancel) : m_help)->show();
  if (running) m_focus->enterCancel();
  showButton();
  if (running) showProgress(*m_state.progress());
  static_cast<QStackedLayout*>(m_export->parentWidget()->layout())
      ->setCurrentWidget(running ? m_progress : m_export);
  // The frame of the help's icon reaches beyond the edge of the rest.
  m_statusRow->setContentsMargins(0, 0, running ? scaledForText(kHelpOverhang) : 0, 0);
  m_status->setText(ExportFooterText::status(m_state.message(), m_output.loaded, m_output.width,
                                             m_output.height, m_output.encodingName));
  layout()->activate();
  if (!running && m_output.canExport) m_focus->enterStart();
}

void CropExportFooter::showProgress(double progress) {
  m_phase->setText(ExportFooterText::phase(progress, m_state.indeterminate()));
  m_bytes->setText(CropFormatting::byteCount(m_state.bytes()));
  // The bar has itself and all around it painted as it moves.
  m_progress->layout()->activate();
  // Without a range there is no value either, for those who ask for one.
  const int last = m_state.indeterminate() ? 0 : kBarSteps;
  m_bar->setRange(0, last);
  m_bar->setValue(static_cast<int>(std::lround(std::clamp(progress, 0.0, 1.0) * last)));
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
