#include "export/crop_export_state.h"

namespace vantrel {

QString CropExportState::text(Message message) {
  switch (message) {
    case Message::cancelled:
      return tr("Export cancelled");
    case Message::failed:
      return tr("Export failed");
  }
  return {};
}

}  // namespace vantrel
