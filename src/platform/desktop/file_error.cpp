#include "platform/desktop/file_error.h"

#include <QtGlobal>
#include <cerrno>

#include "platform/desktop/user_text.h"

namespace vantrel {
namespace {

class FileFaultCategory final : public std::error_category {
 public:
  [[nodiscard]] const char* name() const noexcept override { return "file"; }
  [[nodiscard]] std::string message(int fault) const override {
    switch (static_cast<FileFault>(fault)) {
      case FileFault::NotAFile:
        return failureText(QT_TRANSLATE_NOOP("Failure", "Not a regular file"));
    }
    return "Unknown fault";
  }
};

const char* wordsFor(FileAction action) {
  switch (action) {
    case FileAction::Open:
      return QT_TRANSLATE_NOOP("Failure", "“%1” could not be opened");
    case FileAction::Read:
      return QT_TRANSLATE_NOOP("Failure", "“%1” could not be read");
    case FileAction::Save:
      return QT_TRANSLATE_NOOP("Failure", "“%1” could not be saved");
  }
  return "%1";
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
  return failureText(wordsFor(action), displayName(path).toStdString());
}

std::string fileFailure(const std::filesystem::path& path, FileAction action,
                        const std::string& reason) {
  return fileFailure(path, action) + ": " + failureText(reason.c_str());
}

std::system_error fileError(const std::filesystem::path& path, FileAction action,
                            std::error_code code) {
  return {code, fileFailure(path, action)};
}

std::system_error fileError(const std::filesystem::path& path, FileAction action) {
  return fileError(path, action, {errno, std::generic_category()});
}

}  // namespace vantrel
