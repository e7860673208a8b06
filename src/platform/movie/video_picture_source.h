#pragma once

#include <QObject>
#include <memory>

namespace vantrel {

struct VideoPicture;

/// Where the picture that a video shows at the moment comes from. Main thread.
class VideoPictureSource : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  /// Null while there is none.
  [[nodiscard]] virtual std::shared_ptr<const VideoPicture> picture() const = 0;

 Q_SIGNALS:
  void pictureChanged();
};

}  // namespace vantrel
