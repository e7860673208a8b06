#include "canvas/crop_description.h"

#include <QCoreApplication>

namespace vantrel::CropDescription {
namespace {

QString translated(const char* text) {
  return QCoreApplication::translate("vantrel::CropDescription", text);
}

const char* patternOf(CropHandle handle) {
  switch (handle) {
    case CropHandle::topLeft:
      return QT_TRANSLATE_NOOP("vantrel::CropDescription", "Top %1, left %2 pixels");
    case CropHandle::top:
      return QT_TRANSLATE_NOOP("vantrel::CropDescription", "Top %1 pixels");
    case CropHandle::topRight:
      return QT_TRANSLATE_NOOP("vantrel::CropDescription", "Top %1, right %2 pixels");
    case CropHandle::right:
      return QT_TRANSLATE_NOOP("vantrel::CropDescription", "Right %1 pixels");
    case CropHandle::bottomRight:
      return QT_TRANSLATE_NOOP("vantrel::CropDescription", "Bottom %1, right %2 pixels");
    case CropHandle::bottom:
      return QT_TRANSLATE_NOOP("vantrel::CropDescription", "Bottom %1 pixels");
    case CropHandle::bottomLeft:
      return QT_TRANSLATE_NOOP("vantrel::CropDescription", "Bottom %1, left %2 pixels");
    case CropHandle::left:
      return QT_TRANSLATE_NOOP("vantrel::CropDescription", "Left %1 pixels");
  }
  return "";
}

}  // namespace

QString ofCrop(const CropMargins& crop, const QSizeF& source) {
  const QSizeF size = crop.rectangle(source).size();
  return translated(QT_TRANSLATE_NOOP("vantrel::CropDescription", "%1 × %2 pixels at %3, %4"))
      .arg(static_cast<int64_t>(size.width()))
      .arg(static_cast<int64_t>(size.height()))
      .arg(crop.left)
      .arg(crop.top);
}

QString nameOf(CropHandle handle) {
  switch (handle) {
    case CropHandle::topLeft:
      return translated(QT_TRANSLATE_NOOP("vantrel::CropDescription", "Top left handle"));
    case CropHandle::top:
      return translated(QT_TRANSLATE_NOOP("vantrel::CropDescription", "Top handle"));
    case CropHandle::topRight:
      return translated(QT_TRANSLATE_NOOP("vantrel::CropDescription", "Top right handle"));
    case CropHandle::right:
      return translated(QT_TRANSLATE_NOOP("vantrel::CropDescription", "Right handle"));
    case CropHandle::bottomRight:
      return translated(QT_TRANSLATE_NOOP("vantrel::CropDescription", "Bottom right handle"));
    case CropHandle::bottom:
      return translated(QT_TRANSLATE_NOOP("vantrel::CropDescription", "Bottom handle"));
    case CropHandle::bottomLeft:
      return translated(QT_TRANSLATE_NOOP("vantrel::CropDescription", "Bottom left handle"));
    case CropHandle::left:
      return translated(QT_TRANSLATE_NOOP("vantrel::CropDescription", "Left handle"));
  }
  return {};
}

QString ofHandle(CropHandle handle, const CropMargins& crop) {
  QString text = translated(patternOf(handle));
  for (const CropMargins::Edge edge : CropOverlayGeometry::edgesOf(handle)) {
    text = text.arg(crop[edge]);
  }
  return text;
}

QString ofMove(CropOverlay::Direction direction) {
  switch (direction) {
    case CropOverlay::Direction::left:
      return translated(QT_TRANSLATE_NOOP("vantrel::CropDescription", "Move left"));
    case CropOverlay::Direction::right:
      return translated(QT_TRANSLATE_NOOP("vantrel::CropDescription", "Move right"));
    case CropOverlay::Direction::up:
      return translated(QT_TRANSLATE_NOOP("vantrel::CropDescription", "Move up"));
    case CropOverlay::Direction::down:
      return translated(QT_TRANSLATE_NOOP("vantrel::CropDescription", "Move down"));
  }
  return {};
}

}  // namespace vantrel::CropDescription
