#include "inspector/inspector_view.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRegularExpression>
#include <QScrollBar>
#include <QSignalSpy>
#include <utility>

#include "controls/crop_dimension_field.h"
#include "controls/crop_number_field.h"
#include "controls/crop_reset_button.h"
#include "controls/edit_slider.h"
#include "controls/floating_scroll_bar.h"
#include "controls/pixel_stepper.h"
#include "controls/segmented_control.h"
#include "inspector/crop_canvas_section.h"
#include "inspector/crop_export_footer.h"
#include "inspector/crop_section.h"
#include "inspector/image_encoding_section.h"
#include "inspector/inspector_scroll_area.h"
#include "inspector/inspector_window.h"
#include "inspector/original_section.h"

namespace vantrel {
namespace {

class InspectorViewTest : public testing::InspectorWindow {
 protected:
  InspectorViewTest() { openImage(); }
  CropNumberField* field(CropMargins::Edge edge) { return view.cropSection()->marginField(edge); }
};

TEST_F(InspectorViewTest, ShowsTheMargins) {
  history.setCrop({1, 2, 3, 4});
  show();
  EXPECT_EQ(field(CropMargins::Edge::left)->text(), QStringLiteral("1"));
  EXPECT_EQ(field(CropMargins::Edge::top)->text(), QStringLiteral("2"));
  EXPECT_EQ(field(CropMargins::Edge::right)->text(), QStringLiteral("3"));
  EXPECT_EQ(field(CropMargins::Edge::bottom)->text(), QStringLiteral("4"));
  EXPECT_EQ(view.footer()->statusLabel()->text(), QStringLiteral("636 × 474 px · PNG"));
}

TEST_F(InspectorViewTest, ShowsTheFactsAndSectionsOfEachKindOfFile) {
  const auto titles = [this] {
    return textsIn(&view).filter(
        QRegularExpression(QStringLiteral("^(Original|Format|Frame rate|Color profile|Crop|Codec|"
                                          "Encoding|Canvas)$")));
  };
  const auto text = [](const char* one) { return QString::fromLatin1(one); };
  source.imageSource->colorProfileName = QStringLiteral("Wide");
  show();
  EXPECT_EQ(titles(),
            (QStringList{text("Original"), text("Format"), text("Color profile"), text("Crop"),
                         text("Encoding"), text("Format"), text("Canvas")}));
  source.imageSource->colorProfileName.reset();
  view.setSource(source);
  EXPECT_FALSE(titles().contains(text("Color profile")));
  source.imageSource.reset();
  openVideo();
  view.setSource(source);
  EXPECT_EQ(titles(), (QStringList{text("Original"), text("Frame rate"), text("Crop"),
                                   text("Encoding"), text("Codec"), text("Canvas")}));
  EXPECT_EQ(view.footer()->statusLabel()->text(), QStringLiteral("640 × 480 px · HEVC"));
}

TEST_F(InspectorViewTest, NamesEachControl) {
  history.setImageEncoding({ImageEncodingSettings::Format::jpeg, 0.9, {}});
  openImage(true);
  show();
  for (const QWidget* const control : view.findChildren<QWidget*>()) {
    if (!control->isVisible() || control->focusPolicy() == Qt::NoFocus) continue;
    QAccessibleInterface* const item =
        QAccessible::queryAccessibleInterface(const_cast<QWidget*>(control));
    EXPECT_FALSE(item->text(QAccessible::Name).isEmpty()) << control->metaObject()->className();
  }
}

TEST_F(InspectorViewTest, SetsItsSectionsApart) {
  history.setImageEncoding({ImageEncodingSettings::Format::jpeg, 0.9, {}});
  show();
  const QWidget* const encoding = view.imageEncodingSection();
  const QWidget* const original = view.findChild<OriginalSection*>();
  EXPECT_EQ(placeOf(original).topLeft(), QPoint(1 + 16, 16));  // The hairline takes one point.
  for (const auto& [upper, lower] :
       {std::pair<const QWidget*, const QWidget*>(original, view.cropSection()),
        {view.cropSection(), encoding},
        {encoding, view.canvasSection()}}) {
    EXPECT_EQ(placeOf(lower).top() - placeOf(upper).bottom() - 1, 20);
  }
  const ImageEncodingSection* const rows = view.imageEncodingSection();
  EXPECT_EQ(placeOf(rows->qualityReset()).top() - placeOf(rows->formatPicker()).bottom() - 1, 8);
  EXPECT_EQ(placeOf(rows->qualitySlider()).top() - placeOf(rows->qualityReset()).bottom() - 1, 8);
}

TEST_F(InspectorViewTest, KeepsAllTextInSightInLargeFonts) {
  const QFont before = QApplication::font();
  QFont large = before;
  large.setPixelSize(26);
  QApplication::setFont(large);
  history.setImageEncoding({ImageEncodingSettings::Format::jpeg, 1, {}});
  source.sourceSize = {20000, 20000};
  {
    InspectorView panel(history, exportState, QColor(225, 0, 0));
    panel.setSource(source);
    panel.resize(panel.width(), 700);
    panel.show();
    const auto check = [&panel] {
      QCoreApplication::processEvents();
      for (const QLabel* const label : panel.findChildren<QLabel*>()) {
        if (!label->isVisible()) continue;
        EXPECT_GE(label->height(), label->sizeHint().height()) << label->text().toStdString();
        EXPECT_GE(label->width(), label->fontMetrics().horizontalAdvance(label->text()))
            << label->text().toStdString();
        EXPECT_LE(label->mapTo(&panel, label->rect().bottomRight()).x(), panel.rect().right());
      }
      for (const QAbstractButton* const button : panel.findChildren<QAbstractButton*>()) {
        if (!button->isVisible() || button->text().isEmpty()) continue;
        const QRect text = button->fontMetrics().boundingRect(button->text());
        EXPECT_GE(button->width(), text.width()) << button->text().toStdString();
        EXPECT_GE(button->height(), text.height()) << button->text().toStdString();
      }
      for (const QLineEdit* const field : panel.findChildren<QLineEdit*>())
        EXPECT_GE(field->height(), field->fontMetrics().height());
      for (const PixelStepper* const stepper : panel.findChildren<PixelStepper*>())
        EXPECT_EQ(stepper->size(), QSize(30, 44));
      for (const CropResetButton* const reset : panel.findChildren<CropResetButton*>())
        EXPECT_EQ(reset->size(), QSize(48, 48));
    };
    check();
    source.imageSource.reset();
    openVideo(true);
    panel.setSource(source);
    exportState.setBytes(1'230'000'000);
    exportState.setProgress(0.5);
    check();
    exportState.setProgress({});
  }
  QApplication::setFont(before);
}

TEST_F(InspectorViewTest, DrawsItsHairlinesAlikeAtEveryScale) {
  show();
  for (const double scale : {1.0, 1.25, 1.5, 2.0}) {
    QImage shown((QSizeF(view.size()) * scale).toSize(), QImage::Format_RGB32);
    shown.setDevicePixelRatio(scale);
    view.render(&shown);
    const QRgb line = view.palette().color(QPalette::Midlight).rgb();
    const auto thickness = static_cast<int>(scale);
    int left = 0;
    while (shown.pixel(left, 4) == line)
      ++left;
    EXPECT_EQ(left, thickness) << scale;
    const int footer = static_cast<int>((view.height() - 92) * scale);
    int above = 0;
    for (int y = footer; y < footer + 2 + 2 * thickness; ++y)
      above += shown.pixel(shown.width() / 2, y) == line ? 1 : 0;
    EXPECT_EQ(above, thickness) << scale;
  }
}

TEST_F(InspectorViewTest, ScrollsWhatDoesNotFitUnderAFloatingBar) {
  openVideo();
  source.imageSource.reset();
  show();
  const int width = view.canvasSection()->width();
  view.resize(InspectorView::kWidth, 500);
  QCoreApplication::processEvents();
  EXPECT_EQ(view.canvasSection()->width(), width);
  auto* const area = view.findChild<InspectorScrollArea*>();
  EXPECT_FALSE(area->floatingBar()->isVisible());
  area->verticalScrollBar()->setValue(area->verticalScrollBar()->maximum());
  EXPECT_TRUE(area->floatingBar()->isVisible());
  EXPECT_EQ(area->floatingBar()->value(), area->verticalScrollBar()->maximum());
  EXPECT_EQ(placeOf(view.canvasSection()).bottom() + 16 + 1 + 90, view.height() - 1);
  area->floatingBar()->setValue(0);
  EXPECT_EQ(area->verticalScrollBar()->value(), 0);
}

TEST_F(InspectorViewTest, BringsTheFocusedControlIntoView) {
  show();
  view.resize(InspectorView::kWidth, 400);
  view.cropSection()->heightField()->setFocus();
  for (int step = 0; step < 5; ++step)
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
  ASSERT_TRUE(view.canvasSection()->resetButton()->hasFocus());
  EXPECT_LT(placeOf(view.canvasSection()->resetButton()).bottom(), view.height() - 90);
}

TEST_F(InspectorViewTest, SetsALegalMargin) {
  history.setCrop({0, 0, 100, 0});
  show();
  Q_EMIT field(CropMargins::Edge::left)->valueEdited(5000);
  EXPECT_EQ(history.crop(), (CropMargins{539, 0, 100, 0}));
  EXPECT_EQ(field(CropMargins::Edge::left)->text(), QStringLiteral("539"));
  Q_EMIT field(CropMargins::Edge::top)->valueEdited(-5);
  EXPECT_EQ(history.crop().top, 0);
}

TEST_F(InspectorViewTest, CutsALongProfileShortAndTellsAllOfIt) {
  const QString name = QStringLiteral("<b>Wide</b> gamut, ") + QString(60, QLatin1Char('m'));
  source.imageSource->colorProfileName = name;
  show();
  QLabel* value = nullptr;
  for (QLabel* label : view.findChildren<QLabel*>()) {
    if (label->text() == name) value = label;
  }
  ASSERT_NE(value, nullptr);
  EXPECT_TRUE(value->parentWidget()->toolTip().contains(name.toHtmlEscaped()));
  const QImage shown = value->grab().toImage();
  const QString cut = value->fontMetrics().elidedText(name, Qt::ElideRight, value->width());
  ASSERT_TRUE(cut.endsWith(QStringLiteral("…")));
  value->setText(cut);
  EXPECT_EQ(value->grab().toImage(), shown);
}

TEST_F(InspectorViewTest, LeavesDropsToTheWindow) {
  show();
  for (const QLineEdit* text : view.findChildren<QLineEdit*>())
    EXPECT_FALSE(text->acceptDrops());
}

TEST_F(InspectorViewTest, ShowsDashesWithoutAFile) {
  source = {};
  show();
  EXPECT_EQ(textsIn(&view).count(QStringLiteral("—")), 6);  // Five facts and the bitrate.
  EXPECT_EQ(textsIn(&view).count(QStringLiteral("— × —")), 2);
  EXPECT_FALSE(view.cropSection()->isEnabled());
  EXPECT_TRUE(field(CropMargins::Edge::left)->text().isEmpty());
  EXPECT_EQ(view.footer()->statusLabel()->text(), QStringLiteral("Ready"));
  EXPECT_FALSE(view.footer()->exportButton()->isEnabled());
}

TEST_F(InspectorViewTest, AllowsNoEditWhileBusy) {
  source.busy = true;
  source.canExport = false;
  show();
  EXPECT_FALSE(view.cropSection()->isEnabled());
  EXPECT_FALSE(view.footer()->exportButton()->isEnabled());
}

TEST_F(InspectorViewTest, TurnsTheButtonIntoProgressAndBack) {
  show();
  QSignalSpy started(&view, &InspectorView::exportRequested);
  QSignalSpy cancelled(&view, &InspectorView::cancelRequested);
  QTest::mouseClick(view.footer()->exportButton(), Qt::LeftButton);
  EXPECT_EQ(started.count(), 1);
  EXPECT_FALSE(view.footer()->cancelButton()->isVisible());

  exportState.setIndeterminate(true);
  exportState.setProgress(0.0);
  EXPECT_FALSE(view.footer()->exportButton()->isVisible());
  ASSERT_TRUE(view.footer()->cancelButton()->isVisible());
  QTest::mouseClick(view.footer()->cancelButton(), Qt::LeftButton);
  EXPECT_EQ(cancelled.count(), 1);

  exportState.setMessage(CropExportState::Message::cancelled);
  exportState.setProgress({});
  EXPECT_TRUE(view.footer()->exportButton()->isVisible());
  EXPECT_EQ(view.footer()->statusLabel()->text(), QStringLiteral("Export cancelled"));
}

}  // namespace
}  // namespace vantrel
