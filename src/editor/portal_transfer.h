#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <optional>

class QMimeData;
class QObject;

/// Files that a sandboxed program hands over by a drop: the data holds a key alone, for which the
/// desktop's document portal tells paths that this program may read (interface
/// org.freedesktop.portal.FileTransfer). Main thread.
namespace vantrel::PortalTransfer {

/// Told the paths, or none and why; nothing of why where there is no session bus.
using Retrieved = std::function<void(const QStringList& paths, const QString& error)>;

/// Whether the data has such a key. Asks for no contents, which a drag may not give out yet.
[[nodiscard]] bool isOffered(const QMimeData& data);
/// The key; absent if there is none.
[[nodiscard]] std::optional<QString> keyOf(const QMimeData& data);

/// Asks for the files of a key. `retrieved` is called once, later, from the event loop, unless
/// `receiver` is gone by then.
void retrieve(const QString& key, QObject& receiver, Retrieved retrieved);

}  // namespace vantrel::PortalTransfer
