#include "platform/desktop/file_error.h"

#include <cerrno>

namespace vantrel {
namespace {

class FileFaultCategory final : public std::error_category {
 public:
  [[nodiscard]] const char* name() const noexcept override { return "file"; }
  [[nodiscard]] std::string message(int fault) const override {
    switch (static_cast<FileFault>(fault)) {
      case FileFault::NotAFile:
        return "Not a regular file";
    }
    return "Unknown fault";
  }
};

const char* wordsFor(FileAction action) {
  switch (action) {
    case FileAction::Open:
      return "could not be opened";
    case FileAction::Read:
      return "could not be read";
    case FileAction::Save:
      return "could not be saved";
  }
  return "failed";
}

/// Zero-width joiners and marks of direction belong to the spelling of a name; what overrides the
/// direction of the letters does not.
bool isPartOfSpelling(QChar character) {
  const char16_t code = character.unicode();
  return (code >= 0x200C && code <= 0x200F) || code == 0x061C;
}

}  // namespace

std::error_code make_error_code(FileFault fault) {
  static const FileFaultCategory category;
  return {static_cast<int>(fault), category};
}

QString displayName(const std::filesystem::path& path) {
  const std::string bytes = (path.has_filename() ? path.filename() : path).native();
  QString name = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
  for (QChar& character : name) {
    if (character.isPrint() || character.isSurrogate() || isPartOfSpelling(character)) continue;
    character = QChar::ReplacementCharacter;
  }
  return name;
}

std::string fileFailure(const std::filesystem::path& path, FileAction action) {
  return "“" + displayName(path).toStdString() + "” " + wordsFor(action);
}

std::system_error fileError(const std::filesystem::path& path, FileAction action,
                            std::error_code code) {
  return {code, fileFailure(path, action)};
}

std::system_error fileError(const std::filesystem::path& path, FileAction action) {
  return fileError(path, action, {errno, std::generic_category()});
}

}  // namespace vantrel
