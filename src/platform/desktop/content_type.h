#pragma once

#include <QString>
#include <filesystem>

namespace vantrel {

/// The kind of a file: a MIME type of the shared database with its parents. A value, compared by
/// name.
class ContentType {
 public:
  /// No type at all.
  ContentType() = default;
  /// The type with this name, aliases resolved; invalid when the database has no such type.
  explicit ContentType(const QString& mimeName);

  /// The type of a file on disk, by its name first and by its content where the name says nothing.
  /// Invalid for a file of no known type. Throws std::system_error when the file cannot be looked
  /// at (it is missing, not readable, or a directory). Blocking.
  [[nodiscard]] static ContentType ofFile(const std::filesystem::path& path);

  [[nodiscard]] static ContentType png();
  [[nodiscard]] static ContentType jpeg();
  [[nodiscard]] static ContentType heic();
  [[nodiscard]] static ContentType heif();
  [[nodiscard]] static ContentType tiff();
  [[nodiscard]] static ContentType quickTimeMovie();

  [[nodiscard]] bool isValid() const { return !m_name.isEmpty(); }
  /// For example "image/png".
  [[nodiscard]] const QString& name() const { return m_name; }
  /// Whether this is `other` or inherits it.
  [[nodiscard]] bool conformsTo(const ContentType& other) const;
  [[nodiscard]] bool isImage() const;
  [[nodiscard]] bool isMovie() const;
  /// Without a point, for example "png"; empty when the type has none.
  [[nodiscard]] QString preferredFilenameExtension() const;
  /// Whether `fileName` ends in an extension that files of this type have, in capitals or not.
  [[nodiscard]] bool isExtensionOf(const QString& fileName) const;

  friend bool operator==(const ContentType&, const ContentType&) = default;

 private:
  QString m_name;
};

}  // namespace vantrel
