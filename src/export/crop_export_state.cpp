#include "export/crop_export_state.h"

namespace vantrel {

QString CropExportState::text(Message message) {
  switch (message) {
    case Message::cancelled:
      return QStringLiteral("Export cancelled");
    case Message::failed:
      return QStringLiteral("Export failed");
  }
  return {};
}

}  // namespace vantrel
