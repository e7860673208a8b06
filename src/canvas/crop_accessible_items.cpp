#include "canvas/crop_accessible_items.h"

#include <QAccessibleWidget>
#include <QWindow>
#include <algorithm>
#include <array>
#include <cmath>

#include "canvas/crop_canvas_field.h"
#include "canvas/crop_canvas_fields.h"
#include "canvas/crop_description.h"
#include "canvas/crop_overlay_view.h"

namespace vantrel {
namespace {

using Direction = CropOverlay::Direction;

constexpr std::array kDirections{Direction::left, Direction::right, Direction::up, Direction::down};

QString actionName(Direction direction) {
  switch (direction) {
    case Direction::left:
      return QStringLiteral("MoveLeft");
    case Direction::right:
      return QStringLiteral("MoveRight");
    case Direction::up:
      return QStringLiteral("MoveUp");
    case Direction::down:
      return QStringLiteral("MoveDown");
  }
  return {};
}

std::optional<Direction> directionOf(const QString& action) {
  for (const Direction direction : kDirections) {
    if (action == actionName(direction)) return direction;
  }
  return std::nullopt;
}

QStringList moveActions() {
  QStringList names;
  for (const Direction direction : kDirections)
    names.append(actionName(direction));
  return names;
}

/// Whether there is anything to meet.
bool isShown(const CropOverlayView& view) {
  return view.overlay().isEditingEnabled() && !view.overlay().projection().isEmpty() &&
         view.isVisible();
}

QAccessible::State stateOf(const CropOverlayView& view, bool hasKeyboard) {
  QAccessible::State state;
  state.invisible = !isShown(view);
  state.focusable = isShown(view);
  state.focused = hasKeyboard && view.hasFocus();
  state.movable = true;
  return state;
}

QRect onScreen(const CropOverlayView& view, const QRectF& rect) {
  const QRect place = rect.toAlignedRect();
  return {view.mapToGlobal(place.topLeft()), place.size()};
}

/// One of the eight handles; owned by the interface of its view.
class HandleInterface final : public QAccessibleInterface,
                              public QAccessibleActionInterface,
                              public QAccessibleValueInterface {
 public:
  HandleInterface(CropOverlayView& view, CropHandle handle) : m_view(view), m_handle(handle) {}

  [[nodiscard]] bool isValid() const override { return true; }
  [[nodiscard]] QObject* object() const override { return nullptr; }
  [[nodiscard]] QWindow* window() const override { return m_view.window()->windowHandle(); }
  [[nodiscard]] QAccessibleInterface* parent() const override {
    return QAccessible::queryAccessibleInterface(&m_view);
  }
  [[nodiscard]] QAccessibleInterface* child(int) const override { return nullptr; }
  [[nodiscard]] QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  [[nodiscard]] int childCount() const override { return 0; }
  [[nodiscard]] int indexOfChild(const QAccessibleInterface*) const override { return -1; }
  [[nodiscard]] QAccessible::Role role() const override { return QAccessible::Slider; }
  [[nodiscard]] QAccessible::State state() const override {
    return stateOf(m_view, m_view.focusedHandle() == m_handle);
  }
  [[nodiscard]] QRect rect() const override {
    return onScreen(m_view, CropOverlayGeometry::handleRect(m_handle, overlay().selection()));
  }
  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Name) return CropDescription::nameOf(m_handle);
    if (kind == QAccessible::Description || kind == QAccessible::Value) {
      return CropDescription::ofHandle(m_handle, overlay().crop());
    }
    return {};
  }
  void setText(QAccessible::Text, const QString&) override {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ActionInterface) return static_cast<QAccessibleActionInterface*>(this);
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return nullptr;
  }

  [[nodiscard]] QStringList actionNames() const override {
    const QStringList names{setFocusAction(), increaseAction(), decreaseAction()};
    return isCorner() ? names + moveActions() : names;
  }
  [[nodiscard]] QString localizedActionName(const QString& name) const override {
    const auto direction = directionOf(name);
    return direction ? CropDescription::ofMove(*direction)
                     : QAccessibleActionInterface::localizedActionName(name);
  }
  [[nodiscard]] QStringList keyBindingsForAction(const QString&) const override { return {}; }
  void doAction(const QString& name) override {
    if (!isShown(m_view)) return;
    if (name == setFocusAction()) {
      m_view.setFocus(Qt::OtherFocusReason);
      m_view.focusHandle(m_handle);
    } else if (const auto direction = directionOf(name)) {
      m_view.nudge(m_handle, *direction, false);
    } else if (name == increaseAction()) {
      m_view.setMargin(edge(), margin() + m_view.pixelStep());
    } else if (name == decreaseAction()) {
      m_view.setMargin(edge(), margin() - m_view.pixelStep());
    }
  }

  [[nodiscard]] QVariant currentValue() const override { return static_cast<double>(margin()); }
  [[nodiscard]] QVariant minimumValue() const override { return static_cast<double>(nearest(0)); }
  [[nodiscard]] QVariant maximumValue() const override {
    const QSizeF size = overlay().sourceSize();
    return static_cast<double>(
        nearest(static_cast<int64_t>(std::max(size.width(), size.height()))));
  }
  [[nodiscard]] QVariant minimumStepSize() const override {
    return static_cast<double>(m_view.pixelStep());
  }
  void setCurrentValue(const QVariant& value) override {
    const double wanted = value.toDouble();
    if (!isShown(m_view) || !std::isfinite(wanted)) return;
    const double legal = std::clamp(wanted, minimumValue().toDouble(),
                                    std::max(minimumValue().toDouble(), maximumValue().toDouble()));
    m_view.setMargin(edge(), std::llround(legal));
  }

 private:
  [[nodiscard]] const CropOverlay& overlay() const { return m_view.overlay(); }
  [[nodiscard]] bool isCorner() const { return CropOverlayGeometry::edgesOf(m_handle).size() > 1; }
  /// What the value tells: of a corner the upper or lower margin, as the desktop's tools take one
  /// number; its description tells both.
  [[nodiscard]] CropMargins::Edge edge() const {
    return CropOverlayGeometry::edgesOf(m_handle).front();
  }
  [[nodiscard]] int64_t margin() const { return overlay().crop()[edge()]; }
  /// What would become of the margin.
  [[nodiscard]] int64_t nearest(int64_t wanted) const {
    if (overlay().projection().isEmpty()) return 0;
    CropMargins crop = overlay().crop();
    crop.set(edge(), wanted, overlay().sourceSize(), m_view.pixelStep());
    return crop[edge()];
  }

  CropOverlayView& m_view;
  CropHandle m_handle;
};

/// The crop as a whole.
class CropInterface final : public QAccessibleWidget {
 public:
  explicit CropInterface(CropOverlayView& cropView)
      : QAccessibleWidget(&cropView, QAccessible::Grouping) {
    for (const CropHandle handle : kCropHandles) {
      m_handles[static_cast<size_t>(handle)] =
          QAccessible::registerAccessibleInterface(new HandleInterface(cropView, handle));
    }
  }
  ~CropInterface() override {
    for (const QAccessible::Id id : m_handles)
      QAccessible::deleteAccessibleInterface(id);
  }
  CropInterface(const CropInterface&) = delete;
  CropInterface& operator=(const CropInterface&) = delete;

  [[nodiscard]] int childCount() const override {
    return static_cast<int>(kCropHandles.size() + CropMargins::kEdges.size());
  }
  [[nodiscard]] QAccessibleInterface* child(int index) const override {
    if (index < 0 || index >= childCount()) return nullptr;
    const auto place = static_cast<size_t>(index);
    if (place < m_handles.size()) return QAccessible::accessibleInterface(m_handles[place]);
    const CropMargins::Edge edge = CropMargins::kEdges.at(place - m_handles.size());
    return QAccessible::queryAccessibleInterface(view().fields()->field(edge));
  }
  [[nodiscard]] int indexOfChild(const QAccessibleInterface* wanted) const override {
    for (int index = 0; wanted && index < childCount(); ++index) {
      if (child(index) == wanted) return index;
    }
    return -1;
  }
  [[nodiscard]] QAccessibleInterface* focusChild() const override {
    const auto& handle = view().focusedHandle();
    return view().hasFocus() && handle ? child(static_cast<int>(*handle))
                                       : QAccessibleWidget::focusChild();
  }
  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Name) return CropOverlayView::tr("Crop");
    if (kind == QAccessible::Description || kind == QAccessible::Value) {
      return CropDescription::ofCrop(view().overlay().crop(), view().overlay().sourceSize());
    }
    return QAccessibleWidget::text(kind);
  }
  [[nodiscard]] QAccessible::State state() const override {
    return stateOf(view(), !view().focusedHandle());
  }
  [[nodiscard]] QRect rect() const override {
    return onScreen(view(), view().overlay().selection());
  }

  [[nodiscard]] QStringList actionNames() const override {
    return QAccessibleWidget::actionNames() + moveActions();
  }
  [[nodiscard]] QString localizedActionName(const QString& name) const override {
    const auto direction = directionOf(name);
    return direction ? CropDescription::ofMove(*direction)
                     : QAccessibleWidget::localizedActionName(name);
  }
  void doAction(const QString& name) override {
    if (!isShown(view())) return;
    if (const auto direction = directionOf(name)) {
      view().nudge(std::nullopt, *direction, false);
    } else {
      QAccessibleWidget::doAction(name);
      if (name == setFocusAction()) view().focusHandle(std::nullopt);
    }
  }

 private:
  [[nodiscard]] CropOverlayView& view() const { return *static_cast<CropOverlayView*>(widget()); }

  std::array<QAccessible::Id, kCropHandles.size()> m_handles{};
};

}  // namespace

QAccessibleInterface* makeCropInterface(CropOverlayView& view) {
  return new CropInterface(view);
}

}  // namespace vantrel
