#pragma once

#include <QObject>
#include <QUndoStack>
#include <cstdint>
#include <optional>

#include "model/crop_margins.h"
#include "model/encoding_settings.h"
#include "model/image_encoding_settings.h"

namespace vantrel {

/// One complete state of what the user can edit.
struct CropEdit {
  CropMargins crop;
  EncodingSettings encoding;
  ImageEncodingSettings imageEncoding;
  friend bool operator==(const CropEdit&, const CropEdit&) = default;
};

/// The one place where crop and encoding are changed, with their undo. One for each editor; main
/// thread.
///
/// Outside a transaction each change is an undo step; `begin` and `end` bracket a gesture into one.
/// Signals come once an edit is complete, undo step included, and only for what changed.
class EditHistory final : public QObject {
  Q_OBJECT

 public:
  explicit EditHistory(QObject* parent = nullptr);

  [[nodiscard]] CropEdit value() const { return m_current; }
  [[nodiscard]] const CropMargins& crop() const { return m_current.crop; }
  [[nodiscard]] EncodingSettings::Codec codec() const { return m_current.encoding.codec; }
  /// Megabits per second.
  [[nodiscard]] double bitrate() const { return m_current.encoding.megabitsPerSecond; }
  [[nodiscard]] const ImageEncodingSettings& imageEncoding() const {
    return m_current.imageEncoding;
  }
  /// The `multiple` of crop operations: 1 for an image, 2 for a video and before any file.
  [[nodiscard]] int64_t pixelStep() const { return m_pixelStep; }
  [[nodiscard]] bool canUndo() const;
  [[nodiscard]] bool canRedo() const;
  /// Grows whenever what undo or redo could do may have changed.
  [[nodiscard]] int64_t revision() const { return m_revision; }
  [[nodiscard]] const QUndoStack& manager() const { return m_manager; }

  void setCrop(const CropMargins& crop);
  void setCodec(EncodingSettings::Codec codec);
  void setBitrate(double megabitsPerSecond);
  void setImageEncoding(const ImageEncodingSettings& settings);
  /// Takes no part in undo.
  void setPixelStep(int64_t step);

  /// Opens a transaction; nothing if one is open.
  void begin();
  /// Closes it, as one undo step if the state differs from that at `begin`.
  void end();
  /// The one way of changing the state as an edit.
  void set(const CropEdit& edit);
  /// Makes a state the new start: no undo, no redo, no transaction.
  void reset(const CropEdit& edit);
  /// Resizes the crop to a typed size in source pixels. Successive calls resize around one centre,
  /// until the crop changes in another way.
  void resizeCrop(int64_t width, int64_t height, const QSizeF& in);
  void undo();
  void redo();

 Q_SIGNALS:
  void cropChanged();
  /// The codec or the bitrate changed.
  void encodingChanged();
  void imageEncodingChanged();
  void revisionChanged();

 private:
  class Step;
  /// Runs a complete operation, then tells what it has changed.
  template <typename Operation>
  void announcing(Operation&& operation);
  void change(const CropEdit& edit);
  void closeTransaction();
  void push(const CropEdit& before, const CropEdit& after);
  void write(const CropEdit& edit);

  CropEdit m_current;
  std::optional<QPointF> m_resizeCenter;
  int64_t m_pixelStep = 2;
  std::optional<CropEdit> m_transaction;
  int64_t m_revision = 0;
  QUndoStack m_manager;
};

}  // namespace vantrel
