#include "editor/task_bar_progress.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QGuiApplication>

#include "export/crop_export_state.h"

namespace vantrel {
namespace {

/// Task bars listen to everyone; it is no error if none does.
void tellTaskBars(const LauncherProgress::Shown& shown) {
  QDBusMessage update = QDBusMessage::createSignal(
      QStringLiteral("/org/vantrel/Vantrel"), QStringLiteral("com.canonical.Unity.LauncherEntry"),
      QStringLiteral("Update"));
  update << QStringLiteral("application://%1.desktop").arg(QGuiApplication::desktopFileName())
         << QVariantMap{{QStringLiteral("progress"), shown.percent / 100.0},
                        {QStringLiteral("progress-visible"), shown.visible}};
  QDBusConnection::sessionBus().send(update);
}

}  // namespace

void TaskBarProgress::watch(const CropExportState& state) {
  m_states.push_back(&state);
  connect(&state, &CropExportState::changed, this, &TaskBarProgress::update);
  connect(&state, &QObject::destroyed, this, [this, gone = &state] {
    std::erase(m_states, gone);
    update();
  });
}

void TaskBarProgress::update() {
  std::vector<double> running;
  for (const CropExportState* state : m_states) {
    if (state->progress() && !state->indeterminate()) running.push_back(*state->progress());
  }
  if (const auto shown = m_progress.take(running)) tellTaskBars(*shown);
}

}  // namespace vantrel
