#pragma once

#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QTest>

#include "export/crop_export_state.h"
#include "inspector/inspector_view.h"
#include "model/edit_history.h"
#include "support/bitmap_maker.h"

namespace vantrel::testing {

/// The panel in a window of its own, shown anew at every change as an editor does.
class InspectorWindow : public ::testing::Test {
 protected:
  InspectorWindow() {
    for (const auto changed : {&EditHistory::cropChanged, &EditHistory::encodingChanged,
                               &EditHistory::imageEncodingChanged}) {
      QObject::connect(&history, changed, &view, [this] { view.setSource(source); });
    }
  }

  /// An image of 640 × 480, opaque or not.
  void openImage(bool hasAlpha = false) {
    const PixelLayout layout{ColorModel::Rgb, SampleFormat::UInt8, hasAlpha};
    source.imageSource.emplace();
    source.imageSource->image = makeBitmap(2, 2, layout, [](auto...) { return 100; });
    open({640, 480}, 1);
  }
  /// A video of 641 × 480 at 8 megabits per second.
  void openVideo(bool isHDR = false) {
    source.sourceMbps = 8;
    source.sourceFPS = 30;
    source.sourceIsHDR = isHDR;
    open({641, 480}, 2);
  }
  void open(const QSizeF& size, int64_t pixelStep) {
    source.sourceSize = size;
    source.loaded = true;
    source.canExport = true;
    history.setPixelStep(pixelStep);
    CropEdit edit;
    edit.crop = CropMargins::fullImage(size, pixelStep);
    history.reset(edit);
  }
  void show() {
    view.setSource(source);
    view.resize(InspectorView::kWidth, 900);
    view.show();
    view.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&view));
  }
  void setBusy(bool busy) {
    source.busy = busy;
    source.canExport = !busy;
    view.setSource(source);
  }
  [[nodiscard]] int64_t steps() const { return history.manager().count(); }
  /// The texts that can be seen within a widget, from top to bottom.
  [[nodiscard]] static QStringList textsIn(const QWidget* widget) {
    QStringList texts;
    for (const QLabel* const label : widget->findChildren<QLabel*>()) {
      if (label->isVisible()) texts << label->text();
    }
    return texts;
  }
  /// Where a widget lies in the panel.
  [[nodiscard]] QRect placeOf(const QWidget* widget) const {
    return {widget->mapTo(&view, QPoint(0, 0)), widget->size()};
  }

  EditHistory history;
  CropExportState exportState;
  InspectorSource source;
  InspectorView view{history, exportState, QColor(225, 0, 0)};
};

}  // namespace vantrel::testing
