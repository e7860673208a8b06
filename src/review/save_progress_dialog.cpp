#include "review/save_progress_dialog.h"

#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>
#include <cmath>

#include "controls/panel_text.h"
#include "controls/slim_progress_bar.h"
#include "review/export_review_document.h"
#include "review/save_patience.h"

namespace vantrel {
namespace {

// Points.
constexpr int kWidth = 340;
constexpr int kPadding = 20, kSpacing = 12;

constexpr int kLookMilliseconds = 100;
constexpr int kSteps = 1000;

}  // namespace

SaveProgressDialog::SaveProgressDialog(ExportReviewDocument& document, QWidget* parent)
    : QDialog(parent),
      m_document(document),
      m_title(PanelText::title({}, this)),
      m_bar(new SlimProgressBar(palette().color(QPalette::Highlight), this)),
      m_cancel(new QPushButton(tr("Cancel"), this)) {
  setWindowTitle(tr("Saving"));
  setWindowModality(Qt::WindowModal);
  auto* const column = new QVBoxLayout(this);
  column->setContentsMargins(kPadding, kPadding, kPadding, kPadding);
  column->setSpacing(kSpacing);
  column->setSizeConstraint(QLayout::SetFixedSize);
  column->addWidget(m_title);
  column->addWidget(m_bar);
  column->addSpacing(kSpacing / 2);
  column->addWidget(m_cancel, 0, Qt::AlignRight);
  m_bar->setFixedWidth(kWidth - 2 * kPadding);
  m_bar->setAccessibleName(tr("Saving"));
  m_looks.setInterval(kLookMilliseconds);
  m_looks.callOnTimeout(this, &SaveProgressDialog::look);
  connect(m_cancel, &QPushButton::clicked, this, &QDialog::reject);
  connect(&document, &ExportReviewDocument::savingChanged, this, &SaveProgressDialog::follow);
  connect(&document, &ExportReviewDocument::saveProgressed, this, &SaveProgressDialog::setFraction);
}

void SaveProgressDialog::follow() {
  if (m_document.isSaving()) {
    begin();
  } else {
    m_looks.stop();
    hide();
  }
}

void SaveProgressDialog::begin() {
  const QString text = tr("Saving “%1”…").arg(m_document.savingName());
  m_title->setText(m_title->fontMetrics().elidedText(text, Qt::ElideMiddle, kWidth - 2 * kPadding));
  m_cancel->setEnabled(true);
  setFraction(0);
  m_since.start();
  m_looks.start();
}

void SaveProgressDialog::look() {
  if (!m_document.isSaving()) return follow();
  if (!SavePatience::isOver(m_since.elapsed(), m_fraction)) return;
  m_looks.stop();
  show();
}

void SaveProgressDialog::setFraction(double fraction) {
  m_fraction = fraction;
  // All is copied, but not on disk yet: nobody knows how long that takes.
  const bool isKnown = fraction < 1;
  m_bar->setMaximum(isKnown ? kSteps : 0);
  m_bar->setValue(isKnown ? static_cast<int>(std::floor(fraction * kSteps)) : 0);
}

void SaveProgressDialog::reject() {
  m_cancel->setEnabled(false);
  m_document.cancelSave();
}

}  // namespace vantrel

#include "moc_save_progress_dialog.cpp"
