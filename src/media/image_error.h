#pragma once

#include <QString>
#include <exception>
#include <string>

namespace vantrel {

/// The one error of the still-image path. Compared by its case.
class ImageError final : public std::exception {
 public:
  enum Case { unsupported, multipleImages, unreadable, invalidCrop, encodingFailed };

  explicit ImageError(Case error);

  [[nodiscard]] Case error() const { return m_case; }
  /// The words that the user sees.
  [[nodiscard]] QString errorDescription() const;
  /// The same words in UTF-8.
  [[nodiscard]] const char* what() const noexcept override { return m_description.c_str(); }

  friend bool operator==(const ImageError& a, const ImageError& b) { return a.m_case == b.m_case; }

 private:
  Case m_case;
  std::string m_description;
};

}  // namespace vantrel
