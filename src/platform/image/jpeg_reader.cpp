#include "platform/image/jpeg_reader.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>
#include <vector>

#include "base/cancelled.h"
#include "platform/image/color_profile.h"
#include "platform/image/jpeg_markers.h"
#include "platform/image/jpeg_session.h"
#include "platform/image/upright_bitmap.h"

namespace vantrel {
namespace {

constexpr int kBits = 8;
// Rows that are decoded between two looks at the stop token.
constexpr int64_t kBandRows = 32;

// The layout in memory, for which libjpeg is asked. Throws for colours that have no meaning.
PixelLayout chooseLayout(jpeg_decompress_struct& decoder) {
  PixelLayout layout;
  switch (decoder.jpeg_color_space) {
    case JCS_GRAYSCALE:
      layout.model = ColorModel::Gray;
      decoder.out_color_space = JCS_GRAYSCALE;
      return layout;
    case JCS_RGB:
    case JCS_YCbCr:
      layout.model = ColorModel::Rgb;
      decoder.out_color_space = JCS_RGB;
      return layout;
    case JCS_CMYK:
    case JCS_YCCK:
      layout.model = ColorModel::Cmyk;
      decoder.out_color_space = JCS_CMYK;
      return layout;
    default:
      throw ImageDamaged();
  }
}

// Decodes the next `count` rows to `to`, `stride` bytes apart.
void readRows(JpegSession& session, std::byte* to, size_t stride, int64_t count) {
  std::array<JSAMPROW, kBandRows> rows;
  for (size_t i = 0; i < static_cast<size_t>(count); ++i) {
    rows[i] = reinterpret_cast<JSAMPROW>(to + i * stride);
  }
  session.guarded([&session, &rows, count] {
    JDIMENSION done = 0;
    while (done < count) {
      done += jpeg_read_scanlines(&session.decoder(), rows.data() + done,
                                  static_cast<JDIMENSION>(count) - done);
    }
  });
}

void invert(std::byte* bytes, size_t count) {
  std::transform(bytes, bytes + count, bytes, [](std::byte byte) { return ~byte; });
}

void readPicture(JpegSession& session, UprightBitmap& bitmap, const std::stop_token& stop) {
  const jpeg_decompress_struct& decoder = session.decoder();
  // Adobe's files store what is left of the paper's white instead of the ink.
  const bool inverted = decoder.out_color_space == JCS_CMYK && decoder.saw_Adobe_marker != 0;
  const int64_t width = decoder.output_width;
  const int64_t height = decoder.output_height;
  const size_t rowBytes = decoder.output_width * static_cast<size_t>(decoder.output_components);
  std::vector<std::byte> buffer(bitmap.isDirect() ? 0 : rowBytes * kBandRows);
  for (int64_t y = 0; y < height; y += kBandRows) {
    throwIfCancelled(stop);
    const int64_t count = std::min(kBandRows, height - y);
    std::byte* const rows = bitmap.isDirect() ? bitmap.row(y) : buffer.data();
    readRows(session, rows, rowBytes, count);
    if (inverted) invert(rows, rowBytes * static_cast<size_t>(count));
    if (!bitmap.isDirect()) bitmap.put(0, y, width, count, rows, rowBytes);
  }
}

class JpegReader final : public ImageReader {
 public:
  explicit JpegReader(ReadOnlyFile file) : m_file(std::move(file)) {}

  [[nodiscard]] ImageType type() const override { return ImageType::Jpeg; }
  /// Previews and further pictures behind the first one do not count: to every program such a file
  /// is one photograph.
  [[nodiscard]] int imageCount(const std::stop_token&) override { return 1; }

  [[nodiscard]] Bitmap decode(const std::stop_token& stop) override {
    JpegMarkers markers = JpegMarkers::scan(m_file, stop);
    JpegSession session(m_file, stop);
    jpeg_decompress_struct& decoder = session.decoder();
    session.guarded([&decoder] { jpeg_read_header(&decoder, TRUE); });
    if (decoder.data_precision != kBits) throw ImageDamaged();
    const PixelLayout layout = chooseLayout(decoder);
    UprightBitmap bitmap(decoder.image_width, decoder.image_height, layout, markers.orientation);

    session.guarded([&decoder] { jpeg_start_decompress(&decoder); });
    if (decoder.output_components != layout.channels()) throw ImageDamaged();
    readPicture(session, bitmap, stop);
    session.guarded([&decoder] { jpeg_finish_decompress(&decoder); });

    BitmapColor color;
    if (profileFits(markers.iccProfile, layout.model)) {
      color.iccProfile = std::move(markers.iccProfile);
    }
    return bitmap.finish(std::move(color));
  }

 private:
  ReadOnlyFile m_file;
};

}  // namespace

std::unique_ptr<ImageReader> openJpeg(ReadOnlyFile file) {
  return std::make_unique<JpegReader>(std::move(file));
}

}  // namespace vantrel
