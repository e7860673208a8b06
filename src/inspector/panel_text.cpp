#include "inspector/panel_text.h"

#include <QLabel>

namespace vantrel::PanelText {
namespace {

QLabel* label(const QString& text, int size, QFont::Weight weight, QWidget* parent) {
  auto* label = new QLabel(text, parent);
  QFont font = label->font();
  font.setPixelSize(size);
  font.setWeight(weight);
  label->setFont(font);
  label->setTextFormat(Qt::PlainText);
  return label;
}

}  // namespace

QLabel* title(const QString& text, QWidget* parent) {
  return label(text, kTextSize, QFont::DemiBold, parent);
}

QLabel* body(const QString& text, QWidget* parent) {
  return label(text, kTextSize, QFont::Normal, parent);
}

QLabel* caption(const QString& text, QWidget* parent) {
  QLabel* caption = label(text, kCaptionSize, QFont::Normal, parent);
  caption->setForegroundRole(QPalette::PlaceholderText);
  return caption;
}

QLabel* value(QWidget* parent) {
  QLabel* value = body({}, parent);
  value->setForegroundRole(QPalette::PlaceholderText);
  value->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  value->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
  return value;
}

QString pixelSize(int64_t width, int64_t height) {
  return QString::number(width) + QStringLiteral(" × ") + QString::number(height);
}

}  // namespace vantrel::PanelText
