#pragma once

#include <QWidget>
#include <filesystem>

#include "export/export_summary.h"

namespace vantrel {

class PicturePreview;

/// A finished image, scaled to fit, on the colour of the window, with its summary in the top left
/// corner. The file is decoded in the background.
class ImageReviewView final : public QWidget {
  Q_OBJECT

 public:
  ImageReviewView(const std::filesystem::path& file, const ExportSummary& summary,
                  QWidget* parent = nullptr);

  /// Whether what is on the screen is the image at its present size.
  [[nodiscard]] bool isImageShown() const;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QSizeF m_imageSize;
  PicturePreview* m_preview;
};

}  // namespace vantrel
