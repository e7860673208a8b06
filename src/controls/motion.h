#pragma once

class QWidget;

namespace vantrel {

/// Whether a widget may move and fade what it shows; not on a desktop that asks for less motion.
[[nodiscard]] bool showsMotion(const QWidget& widget);

}  // namespace vantrel
