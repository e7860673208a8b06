#include "controls/panel_text.h"

#include <QLabel>
#include <QPainter>
#include <QStyle>

#include "controls/tabular_digits.h"
#include "controls/text_scale.h"

namespace vantrel::PanelText {
namespace {

/// Ends in "…" where its text is wider than itself.
class ElidedLabel final : public QLabel {
 public:
  using QLabel::QLabel;

 protected:
  void paintEvent(QPaintEvent* /*event*/) override {
    QPainter painter(this);
    style()->drawItemText(&painter, rect(), static_cast<int>(alignment()), palette(), isEnabled(),
                          fontMetrics().elidedText(text(), Qt::ElideRight, width()),
                          foregroundRole());
  }
};

QLabel* styled(QLabel* label, int size, QFont::Weight weight) {
  QFont font = label->font();
  font.setWeight(weight);
  label->setFont(withTabularDigits(font));
  scaleFont(*label, size);
  label->setTextFormat(Qt::PlainText);
  return label;
}

QLabel* secondary(QLabel* label) {
  label->setForegroundRole(QPalette::PlaceholderText);
  return label;
}

}  // namespace

QLabel* title(const QString& text, QWidget* parent) {
  return styled(new QLabel(text, parent), kTextSize, QFont::DemiBold);
}

QLabel* body(const QString& text, QWidget* parent) {
  return styled(new QLabel(text, parent), kTextSize, QFont::Normal);
}

QLabel* caption(const QString& text, QWidget* parent) {
  return secondary(styled(new QLabel(text, parent), kCaptionSize, QFont::Normal));
}

QLabel* shortCaption(QWidget* parent) {
  QLabel* caption = secondary(styled(new ElidedLabel(parent), kCaptionSize, QFont::Normal));
  caption->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  return caption;
}

QLabel* callout(const QString& text, QWidget* parent) {
  return styled(new QLabel(text, parent), kCalloutSize, QFont::Normal);
}

QLabel* figure(QWidget* parent) {
  return styled(new QLabel(parent), kTextSize, QFont::Normal);
}

QLabel* value(QWidget* parent) {
  QLabel* value = secondary(styled(new ElidedLabel(parent), kTextSize, QFont::Normal));
  value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  value->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  return value;
}

QString pixelSize(int64_t width, int64_t height) {
  return QString::number(width) + QStringLiteral(" × ") + QString::number(height);
}

}  // namespace vantrel::PanelText
