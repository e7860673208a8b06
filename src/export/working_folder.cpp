#include "export/working_folder.h"

#include <sys/stat.h>

#include "export/unique_name.h"
#include "platform/desktop/file_error.h"

namespace vantrel {

WorkingFolder::WorkingFolder(const FileDestination& destination)
    : m_path(destination.folder() / uniqueName()) {
  std::error_code error;
  std::filesystem::create_directories(destination.folder(), error);
  if (error) throw fileError(destination.name(), FileAction::Save, error);
  if (::mkdir(m_path.c_str(), S_IRWXU) != 0) throw fileError(destination.name(), FileAction::Save);
}

WorkingFolder::~WorkingFolder() {
  std::error_code ignored;
  std::filesystem::remove_all(m_path, ignored);
}

}  // namespace vantrel
