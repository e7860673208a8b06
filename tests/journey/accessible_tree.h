#pragma once

#include <QAccessible>
#include <QMetaEnum>
#include <QWidget>
#include <functional>
#include <string>
#include <vector>

namespace vantrel::testing {

/// All that assistive tools see of a window, parents first.
inline void visitAccessible(QAccessibleInterface* item,
                            const std::function<void(QAccessibleInterface&)>& visit) {
  if (!item || !item->isValid() || item->state().invisible) return;
  visit(*item);
  for (int index = 0; index < item->childCount(); ++index)
    visitAccessible(item->child(index), visit);
}

inline QString nameOf(const QAccessibleInterface& item) {
  return item.text(QAccessible::Name);
}

/// The visible item of this name; null for none.
inline QAccessibleInterface* accessibleItem(QWidget* window, const QString& name,
                                            QAccessible::Role role) {
  QAccessibleInterface* found = nullptr;
  visitAccessible(QAccessible::queryAccessibleInterface(window), [&](QAccessibleInterface& item) {
    if (!found && item.role() == role && nameOf(item) == name) found = &item;
  });
  return found;
}

/// "Button “Fit”" or the like.
inline std::string inWords(const QAccessibleInterface& item) {
  const char* const role = QMetaEnum::fromType<QAccessible::Role>().valueToKey(item.role());
  std::string words = std::string(role ? role : "item") + " “" + nameOf(item).toStdString() + "”";
  if (item.object()) words += std::string(" (") + item.object()->metaObject()->className() + ")";
  return words;
}

}  // namespace vantrel::testing
