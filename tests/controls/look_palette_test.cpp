#include "controls/look_palette.h"

#include <gtest/gtest.h>

#include <QColor>
#include <algorithm>
#include <cmath>
#include <tuple>
#include <vector>

#include "controls/dark_palette.h"

namespace vantrel {
namespace {

constexpr double kText = 4.5, kControl = 3;

double linear(double channel) {
  constexpr double kKnee = 0.04045;
  return channel <= kKnee ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor& color) {
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

double contrast(const QColor& one, const QColor& other) {
  const auto [low, high] = std::minmax({luminance(one), luminance(other)});
  return (high + 0.05) / (low + 0.05);
}

QColor over(const QColor& ground, const QColor& top) {
  const auto channel = [&top](double upper, double lower) {
    return static_cast<float>(upper * top.alphaF() + lower * (1 - top.alphaF()));
  };
  return QColor::fromRgbF(channel(top.redF(), ground.redF()),
                          channel(top.greenF(), ground.greenF()),
                          channel(top.blueF(), ground.blueF()));
}

void expectColor(const QPalette& palette, QPalette::ColorRole role, const char* name) {
  EXPECT_EQ(palette.color(QPalette::Active, role).name(), QLatin1String(name)) << role;
  EXPECT_EQ(palette.color(QPalette::Inactive, role).name(), QLatin1String(name)) << role;
}

TEST(LookPalette, IsDarkOrLight) {
  EXPECT_TRUE(isDark(lookPalette(true)));
  EXPECT_FALSE(isDark(lookPalette(false)));
}

TEST(LookPalette, HasTheDesignsDarkColors) {
  const QPalette dark = lookPalette(true);
  expectColor(dark, QPalette::Window, "#1f2023");
  expectColor(dark, QPalette::AlternateBase, "#26272b");
  expectColor(dark, QPalette::Base, "#17181a");
  expectColor(dark, QPalette::Button, "#35363c");
  expectColor(dark, QPalette::Mid, "#36373d");
  expectColor(dark, QPalette::Midlight, "#2d2e33");
  expectColor(dark, QPalette::Dark, "#3d3e45");
  expectColor(dark, QPalette::WindowText, "#ececef");
  expectColor(dark, QPalette::PlaceholderText, "#a3a5ad");
  expectColor(dark, QPalette::Highlight, "#4f8cff");
  EXPECT_EQ(dark.color(QPalette::Disabled, QPalette::Text).name(), QLatin1String("#74767e"));
  expectColor(inspectorPalette(true), QPalette::Window, "#232428");
}

TEST(LookPalette, HasTheDesignsLightColors) {
  const QPalette light = lookPalette(false);
  expectColor(light, QPalette::Window, "#f5f5f7");
  expectColor(light, QPalette::AlternateBase, "#fbfbfc");
  expectColor(light, QPalette::Base, "#ffffff");
  expectColor(light, QPalette::Button, "#ffffff");
  expectColor(light, QPalette::Mid, "#d3d4da");
  expectColor(light, QPalette::Midlight, "#e3e4e8");
  expectColor(light, QPalette::Dark, "#d9dae0");
  expectColor(light, QPalette::WindowText, "#1c1d20");
  expectColor(light, QPalette::PlaceholderText, "#5f626b");
  expectColor(light, QPalette::Highlight, "#2f6fed");
  EXPECT_EQ(light.color(QPalette::Disabled, QPalette::Text).name(), QLatin1String("#8b8e97"));
  expectColor(inspectorPalette(false), QPalette::Window, "#f7f7f9");
}

/// Both looks.
class LookContrast : public ::testing::TestWithParam<bool> {
 protected:
  [[nodiscard]] QColor color(QPalette::ColorRole role) const {
    return lookPalette(GetParam()).color(role);
  }
  /// All that text lies on.
  [[nodiscard]] std::vector<QColor> grounds() const {
    return {color(QPalette::Window), color(QPalette::AlternateBase), color(QPalette::Base),
            color(QPalette::Button), inspectorPalette(GetParam()).color(QPalette::Window)};
  }
};

TEST_P(LookContrast, MakesTextReadable) {
  for (const QColor& ground : grounds()) {
    EXPECT_GE(contrast(color(QPalette::WindowText), ground), kText) << qPrintable(ground.name());
    EXPECT_GE(contrast(color(QPalette::Text), ground), kText) << qPrintable(ground.name());
    EXPECT_GE(contrast(color(QPalette::PlaceholderText), ground), kText)
        << qPrintable(ground.name());
  }
  EXPECT_GE(contrast(color(QPalette::HighlightedText), color(QPalette::Highlight)), kText);
  EXPECT_GE(contrast(color(QPalette::ToolTipText), color(QPalette::ToolTipBase)), kText);
}

TEST_P(LookContrast, MakesTextOverPicturesReadable) {
  const QPalette panel = panelPalette(GetParam());
  for (const Qt::GlobalColor picture : {Qt::black, Qt::white, Qt::gray}) {
    const QColor ground = over(picture, panelFill(GetParam()));
    EXPECT_GE(contrast(panel.color(QPalette::WindowText), ground), kText) << picture;
    EXPECT_GE(contrast(panel.color(QPalette::PlaceholderText), ground), kText) << picture;
  }
}

TEST_P(LookContrast, MakesFocusAndSlidersSeen) {
  const QColor accent = color(QPalette::Highlight);
  for (const QColor& ground : grounds())
    EXPECT_GE(contrast(accent, ground), kControl) << qPrintable(ground.name());
  EXPECT_GE(contrast(accent, color(QPalette::Dark)), kControl);
}

TEST_P(LookContrast, MakesFieldsSeenFromWithinAndWithout) {
  const bool dark = GetParam();
  for (const QPalette& palette : {lookPalette(dark), panelPalette(dark), inspectorPalette(dark)}) {
    const QColor edge = outlineColor(palette);
    for (const QPalette::ColorRole role :
         {QPalette::Window, QPalette::AlternateBase, QPalette::Base})
      EXPECT_GE(contrast(edge, palette.color(role)), kControl) << edge.name().toStdString() << role;
  }
}

TEST_P(LookContrast, MakesKnobsSeen) {
  for (const QColor& ground : grounds()) {
    const double asDisc = contrast(Qt::white, ground);
    const double byEdge = contrast(outlineColor(lookPalette(GetParam())), Qt::white);
    EXPECT_GE(GetParam() ? asDisc : byEdge, kControl) << qPrintable(ground.name());
  }
}

TEST_P(LookContrast, TellsTheChosenSegmentAndKeepsAllReadable) {
  for (const QPalette& palette : {lookPalette(GetParam()), inspectorPalette(GetParam())}) {
    const SegmentColors colors = segmentColors(palette);
    EXPECT_GE(contrast(colors.plateEdge, colors.track), kControl);
    EXPECT_GE(contrast(colors.plateText, colors.plate), kText);
    EXPECT_GE(contrast(over(colors.track, colors.text), colors.track), kText);
    EXPECT_GE(contrast(palette.color(QPalette::Highlight), colors.track), kControl);
  }
}

TEST_P(LookContrast, KeepsButtonsReadableUnderThePointer) {
  QPalette exporting = lookPalette(GetParam());
  exporting.setColor(QPalette::Button, QColor(225, 0, 0));
  exporting.setColor(QPalette::ButtonText, Qt::white);
  for (const QPalette& palette : {lookPalette(GetParam()), exporting}) {
    for (const Touch touch : {Touch::none, Touch::hover, Touch::press}) {
      const QColor fill = buttonFill(palette, touch);
      EXPECT_GE(contrast(palette.color(QPalette::ButtonText), fill), kText)
          << qPrintable(fill.name());
    }
  }
}

TEST_P(LookContrast, MakesTheCropsRedSeenInTheInspector) {
  EXPECT_GE(contrast(QColor(225, 0, 0), inspectorPalette(GetParam()).color(QPalette::Window)),
            kControl);
}

TEST_P(LookContrast, MakesScrollBarsSeenOverAnyPicture) {
  for (const bool isHeld : {false, true}) {
    const HandleColors colors = scrollHandleColors(lookPalette(GetParam()), isHeld);
    for (const Qt::GlobalColor picture : {Qt::black, Qt::darkGray, Qt::gray, Qt::white})
      EXPECT_GE(contrast(over(picture, colors.fill), over(picture, colors.edge)), kControl)
          << picture;
  }
}

/// Of the ring around the crop and the line inside it.
TEST_P(LookContrast, MakesTheRingAroundTheCropSeenOverAnyPicture) {
  EXPECT_GE(contrast(color(QPalette::Highlight), color(QPalette::Base)), kControl);
}

/// A desktop that brings its own style.
TEST(LookPalette, OutlinesFieldsInOtherPalettesToo) {
  for (const auto& [window, text, base] :
       {std::tuple{"#eff0f1", "#232629", "#ffffff"}, std::tuple{"#202326", "#fcfcfc", "#141618"},
        std::tuple{"#fafafb", "#2e3436", "#ffffff"}, std::tuple{"#222226", "#ffffff", "#1d1d20"}}) {
    QPalette palette;
    palette.setColor(QPalette::Window, QColor(window));
    palette.setColor(QPalette::WindowText, QColor(text));
    EXPECT_GE(contrast(outlineColor(palette), QColor(base)), kControl) << window;
  }
}

INSTANTIATE_TEST_SUITE_P(DarkAndLight, LookContrast, ::testing::Bool());

}  // namespace
}  // namespace vantrel
