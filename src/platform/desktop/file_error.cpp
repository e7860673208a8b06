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

bool isReadable(QChar character) {
  // Joiners and marks of direction are seen in what they do to their neighbours.
  constexpr QChar kFirstJoiner(0x200c), kLastMark(0x200f);
  return character.isPrint() || character.isSurrogate() ||
         (character >= kFirstJoiner && character <= kLastMark);
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
    if (!isReadable(character)) character = QChar::ReplacementCharacter;
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
