#pragma once

#include <QObject>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>

#include "editor/editor_state.h"
#include "platform/desktop/background_task.h"

class QMimeData;
class QUrl;

namespace vantrel {

/// The ways in which a file enters or leaves an editor. A file is read in the background; only when
/// it is whole does it take the place of the old one, and a failure leaves everything as it was but
/// the message of the alert. Main thread; the destructor cancels.
class MediaLoader final : public QObject {
  Q_OBJECT

 public:
  explicit MediaLoader(EditorState& state, QObject* parent = nullptr);
  ~MediaLoader() override;

  /// The filter of an open dialog, movies and images together.
  [[nodiscard]] static QString openFilter();

  /// Starts to load; the outcome comes through the state.
  void loadMedia(const std::filesystem::path& path);
  /// Nothing when no load runs; otherwise all stays as it is, without a word.
  void cancel();
  /// Loads the clip that comes with the program.
  void loadSample(const std::optional<std::filesystem::path>& sample = bundledSample());
  /// Whether a drop of this data would be taken.
  [[nodiscard]] bool acceptsMedia(const QMimeData& data) const;
  /// Takes a drop: true when it is accepted. Loading starts later, from the event loop. Of several
  /// files, the first is loaded.
  bool receiveMedia(const QMimeData& data);
  /// Nothing while the editor is busy.
  void closeMedia();

 private:
  [[nodiscard]] static std::optional<std::filesystem::path> bundledSample();
  void receiveUrl(const QUrl& url);
  void receivePortalFiles(const QStringList& paths, const QUrl& otherwise, const QString& error);
  void finish(int64_t load, BackgroundTask<SourceFile>::Outcome outcome);

  EditorState& m_state;
  int64_t m_loads = 0;
  std::map<int64_t, std::unique_ptr<BackgroundTask<SourceFile>>> m_running;
};

}  // namespace vantrel
