#pragma once

#include <QObject>
#include <QString>
#include <filesystem>
#include <memory>

#include "export/finished_export.h"
#include "platform/desktop/atomic_file.h"
#include "platform/desktop/background_task.h"
#include "playback/playback_state.h"
#include "review/file_save.h"
#include "review/player_opening.h"

namespace vantrel {

/// A finished export that waits to be looked at and saved. It owns the temporary file: saving
/// copies it, closing deletes it. Unsaved from the start, and saved as often as is wished. It also
/// plays the file, if that is a movie. Main thread.
class ExportReviewDocument final : public QObject {
  Q_OBJECT

 public:
  explicit ExportReviewDocument(FinishedExport finished, OpenPlayer open = &openMoviePlayer,
                                CopyFile copy = &atomicCopy, QObject* parent = nullptr);
  /// Closes.
  ~ExportReviewDocument() override;

  [[nodiscard]] const QString& displayName() const { return m_export.title; }
  [[nodiscard]] const ExportSummary& summary() const { return m_export.summary; }
  [[nodiscard]] const ContentType& contentType() const { return m_export.contentType; }
  /// The finished file; empty once the document is closed.
  [[nodiscard]] const std::filesystem::path& temporaryExportPath() const {
    return m_export.file.path();
  }
  [[nodiscard]] bool isUnsaved() const { return m_unsaved; }
  [[nodiscard]] bool isSaving() const { return m_save != nullptr; }
  /// The name under which it is being, or was last, saved; for people to read.
  [[nodiscard]] const QString& savingName() const { return m_savingName; }
  [[nodiscard]] bool isClosed() const { return m_closed; }

  /// Whether the file is to be seen as an image: it is one, and can be read as one.
  [[nodiscard]] bool showsImage() const;
  /// Null until it is open, and after `close`.
  [[nodiscard]] Player* reviewPlayer() const { return m_player.get(); }
  /// Follows reviewPlayer.
  [[nodiscard]] PlaybackState& playback() { return m_playback; }
  /// Whether the movie starts over at its end; not so from the start.
  [[nodiscard]] bool loopEnabled() const { return m_playback.isLooping(); }

  /// Without a point: "jpg" for a JPEG, otherwise the type's own, "mov" if it has none.
  [[nodiscard]] QString filenameExtension() const;
  /// What a save dialog proposes: the title, with the extension if it does not end in it; short
  /// enough to be a file's name.
  [[nodiscard]] QString suggestedFileName() const;
  /// A name that was chosen, with the extension unless it has one of its type.
  [[nodiscard]] QString withExtension(const QString& fileName) const;

  /// Copies the file in the background; ends in `saved`, `saveFailed` or `saveCancelled`. Nothing
  /// while another save runs or after `close`.
  void save(const std::filesystem::path& destination);
  /// A save that has replaced its destination by now ends in `saved` nevertheless.
  void cancelSave();
  /// Opens the file in the background for playing; nothing plays by itself. What cannot be played
  /// leaves no player. Again or after `close`: nothing.
  void openPlayer();
  /// Counts from the next end of the movie on.
  void toggleLoop();
  /// Cancels a save that runs, gives up the player, and deletes the temporary file. Again: nothing.
  void close();

 Q_SIGNALS:
  /// isSaving; the outcome is told after it.
  void savingChanged();
  /// The part of the file that is copied, from 0 to 1; only while a save runs.
  void saveProgressed(double fraction);
  void saved();
  /// The document is as it was; `message` is for the user.
  void saveFailed(const QString& message);
  /// The document and the destination are as they were.
  void saveCancelled();
  void closed();
  void loopEnabledChanged();

 private:
  void finishSave(FileSave::Outcome outcome);
  void takePlayer(BackgroundTask<MakePlayer>::Outcome outcome);
  void releasePlayer();

  FinishedExport m_export;
  const OpenPlayer m_open;
  const CopyFile m_copy;
  bool m_unsaved = true;
  bool m_closed = false;
  QString m_savingName;
  std::unique_ptr<FileSave> m_save;
  /// Until its outcome is there.
  std::unique_ptr<BackgroundTask<MakePlayer>> m_opening;
  std::unique_ptr<Player> m_player;
  PlaybackState m_playback;
};

}  // namespace vantrel
