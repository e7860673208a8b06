#pragma once

#include <QString>

class QLabel;
class QWidget;

/// The labels of panels.
namespace vantrel::PanelText {

/// Sizes in points of the screen.
inline constexpr int kTextSize = 13, kCalloutSize = 12, kCaptionSize = 11;

/// Text of `kTextSize`, semibold.
[[nodiscard]] QLabel* title(const QString& text, QWidget* parent);
/// Text of `kTextSize`.
[[nodiscard]] QLabel* body(const QString& text, QWidget* parent);
/// Text of `kCaptionSize` in the secondary colour.
[[nodiscard]] QLabel* caption(const QString& text, QWidget* parent);
/// A caption that is cut short with "…" when it is too long.
[[nodiscard]] QLabel* shortCaption(QWidget* parent);
/// Text of `kCalloutSize`.
[[nodiscard]] QLabel* callout(const QString& text, QWidget* parent);
/// A number beside a title, with figures of one width.
[[nodiscard]] QLabel* figure(QWidget* parent);
/// A value in the secondary colour; it is cut short with "…" when it is too long.
[[nodiscard]] QLabel* value(QWidget* parent);

/// "640 × 480", digits without grouping.
[[nodiscard]] QString pixelSize(int64_t width, int64_t height);

}  // namespace vantrel::PanelText
