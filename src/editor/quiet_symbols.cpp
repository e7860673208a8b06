#include "editor/quiet_symbols.h"

namespace vantrel {

QString quietSymbol(QStyle::StandardPixmap which) {
  switch (which) {
    case QStyle::SP_ToolBarHorizontalExtensionButton:
      return QStringLiteral("ellipsis");
    case QStyle::SP_DirIcon:
    case QStyle::SP_DirClosedIcon:
    case QStyle::SP_DirHomeIcon:
    case QStyle::SP_DirLinkIcon:
      return QStringLiteral("folder");
    case QStyle::SP_DirOpenIcon:
      return QStringLiteral("folder-open");
    case QStyle::SP_FileIcon:
    case QStyle::SP_FileLinkIcon:
      return QStringLiteral("file");
    case QStyle::SP_ComputerIcon:
    case QStyle::SP_DriveHDIcon:
      return QStringLiteral("monitor");
    case QStyle::SP_ArrowBack:
    case QStyle::SP_FileDialogBack:
      return QStringLiteral("arrow-left");
    case QStyle::SP_ArrowForward:
      return QStringLiteral("arrow-right");
    case QStyle::SP_FileDialogToParent:
      return QStringLiteral("arrow-up");
    case QStyle::SP_FileDialogNewFolder:
      return QStringLiteral("folder-plus");
    case QStyle::SP_FileDialogListView:
      return QStringLiteral("layout-grid");
    case QStyle::SP_FileDialogDetailedView:
      return QStringLiteral("list");
    default:
      return {};
  }
}

}  // namespace vantrel
