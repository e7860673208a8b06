#pragma once

#include <QKeyEvent>
#include <QLineEdit>
#include <QTest>
#include <QVBoxLayout>
#include <QWidget>
#include <cstdint>

#include "controls/crop_dimension_field.h"
#include "controls/crop_number_field.h"
#include "model/edit_history.h"

namespace vantrel {

/// A window that edits a crop of a 1921 × 1081 source with one field of each kind, and has a plain
/// text field beside them, which has the focus at first.
class FieldWindow {
 public:
  static constexpr QSizeF kSource{1921, 1081};

  explicit FieldWindow(int64_t step)
      : left(history, QStringLiteral("Left")),
        width(history, QStringLiteral("Width")),
        m_layout(&window) {
    history.setPixelStep(step);
    history.reset({CropMargins::fullImage(kSource, step), {}, {}});
    width.setMaximum(1921);
    QObject::connect(&left, &CropNumberField::valueEdited, &window, [this](int64_t value) {
      CropMargins crop = history.crop();
      crop.set(CropMargins::Edge::left, value, kSource, history.pixelStep());
      history.setCrop(crop);
      update();
    });
    QObject::connect(&width, &CropDimensionField::valueEdited, &window, [this](int64_t value) {
      history.resizeCrop(value, size().toSize().height(), kSource);
      update();
    });
    QObject::connect(&history, &EditHistory::cropChanged, &window, [this] { update(); });
    for (QWidget* const field : {static_cast<QWidget*>(&left), static_cast<QWidget*>(&width),
                                 static_cast<QWidget*>(&plain)}) {
      m_layout.addWidget(field);
    }
    update();
    plain.setFocus();
    window.show();
    window.activateWindow();
  }

  /// Whether the window has the keyboard; without it, no test of focus means anything.
  [[nodiscard]] bool isReady() { return QTest::qWaitForWindowActive(&window); }
  [[nodiscard]] QSizeF size() const { return history.crop().rectangle(kSource).size(); }
  [[nodiscard]] int64_t steps() const { return history.manager().count(); }
  void leave() { plain.setFocus(); }

  EditHistory history;
  QWidget window;
  CropNumberField left;
  CropDimensionField width;
  QLineEdit plain;

 private:
  void update() {
    left.setValue(history.crop().left);
    width.setValue(size().toSize().width());
  }

  QVBoxLayout m_layout;
};

}  // namespace vantrel
