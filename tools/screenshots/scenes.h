#pragma once

#include <filesystem>

#include "editor/application_windows.h"
#include "screenshots/photographer.h"

namespace vantrel {

/// The states of the program's windows, each brought about as a user or an export does and
/// photographed under its name. Main thread.
class Scenes final {
 public:
  /// `pictures` holds dusk.jpg, badge.png and harbour.mov; `sample` is a video of standard range.
  Scenes(Photographer photographer, std::filesystem::path pictures, std::filesystem::path sample);

  /// Throws std::runtime_error when one of them does not come about.
  void playAll();

 private:
  void showEmpty();
  void showImage();
  void showTransparency();
  void showVideo();
  void showExports();
  void showTabs();
  void showImageReview();
  void showVideoReview();

  EditorWindow* openEmpty();
  EditorWindow* open(const std::filesystem::path& path);
  ReviewWindow* exportCrop(EditorWindow* window);
  void take(const QWidget* window, const char* name);
  /// Takes the dialog with what it stands over, then gives the answer that changes nothing.
  void takeDialog(const QWidget* window, const char* name);

  const Photographer m_photographer;
  const std::filesystem::path m_pictures;
  const std::filesystem::path m_sample;
  ApplicationWindows m_windows;
};

}  // namespace vantrel
