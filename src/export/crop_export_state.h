#pragma once

#include <QObject>
#include <QString>
#include <QUuid>
#include <cstdint>
#include <optional>

namespace vantrel {

/// How far the export of one editor is, and how its last one ended. It keeps what it is told and
/// tells who watches. Main thread.
///
/// Idle: no progress. A video runs: progress from 0 to 1, operation present. An image runs:
/// progress 0, indeterminate.
class CropExportState final : public QObject {
  Q_OBJECT

 public:
  /// An outcome worth a word; success has none.
  enum class Message { cancelled, failed };

  using QObject::QObject;

  /// "Export cancelled" or "Export failed".
  [[nodiscard]] static QString text(Message message);

  /// A still image is being written; no percentage exists.
  [[nodiscard]] bool indeterminate() const { return m_indeterminate; }
  /// Present while an export runs.
  [[nodiscard]] std::optional<double> progress() const { return m_progress; }
  /// Identity of the running video export, by which late reports of an earlier one are told.
  [[nodiscard]] std::optional<QUuid> operation() const { return m_operation; }
  /// Size of the output so far; keeps its last value after the end.
  [[nodiscard]] int64_t bytes() const { return m_bytes; }
  /// The last outcome; absent after success or a new start.
  [[nodiscard]] std::optional<Message> message() const { return m_message; }

  void setIndeterminate(bool indeterminate) { assign(m_indeterminate, indeterminate); }
  void setProgress(std::optional<double> progress) { assign(m_progress, progress); }
  void setOperation(std::optional<QUuid> operation) { assign(m_operation, operation); }
  void setBytes(int64_t bytes) { assign(m_bytes, bytes); }
  void setMessage(std::optional<Message> message) { assign(m_message, message); }

 Q_SIGNALS:
  void changed();

 private:
  template <class Value>
  void assign(Value& field, const Value& value) {
    if (field == value) return;
    field = value;
    Q_EMIT changed();
  }

  bool m_indeterminate = false;
  std::optional<double> m_progress;
  std::optional<QUuid> m_operation;
  int64_t m_bytes = 0;
  std::optional<Message> m_message;
};

}  // namespace vantrel
