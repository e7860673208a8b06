#include "platform/image/png_reader.h"

#include <algorithm>
#include <bit>
#include <memory>
#include <utility>
#include <vector>

#include "platform/image/png_chunks.h"
#include "platform/image/png_color.h"
#include "platform/image/png_session.h"
#include "platform/image/upright_bitmap.h"

namespace vantrel {
namespace {

// Bytes of rows that are decoded before they are put in their places.
constexpr size_t kBandBytes = 256 * 1024;
// Most bytes that one byte of deflate data expands to: a match of 258 bytes takes two bits at
// least (RFC 1951).
constexpr uint64_t kMostExpansion = 1032;

struct Header {
  png_uint_32 width, height;
  int depth, colorType;
  bool interlaced, transparentColor;
};

Header readHeader(PngSession& session) {
  session.guarded([&session] { png_read_info(session.png(), session.info()); });
  Header header{};
  int interlace = 0;
  png_get_IHDR(session.png(), session.info(), &header.width, &header.height, &header.depth,
               &header.colorType, &interlace, nullptr, nullptr);
  header.interlaced = interlace != PNG_INTERLACE_NONE;
  header.transparentColor = (header.colorType & PNG_COLOR_MASK_PALETTE) == 0 &&
                            png_get_valid(session.png(), session.info(), PNG_INFO_tRNS) != 0;
  return header;
}

PixelLayout layoutOf(const Header& header) {
  PixelLayout layout;
  layout.sample = header.depth == 16 ? SampleFormat::UInt16 : SampleFormat::UInt8;
  layout.alpha = (header.colorType & PNG_COLOR_MASK_ALPHA) != 0 || header.transparentColor;
  if (header.colorType == PNG_COLOR_TYPE_PALETTE) {
    layout.model = ColorModel::Indexed;
  } else {
    const bool color = (header.colorType & PNG_COLOR_MASK_COLOR) != 0;
    layout.model = color ? ColorModel::Rgb : ColorModel::Gray;
  }
  return layout;
}

// Throws when so few bytes cannot hold a picture of this size, before memory is taken for it.
void checkPlausible(const Header& header, png_byte channels, uint64_t imageBytes) {
  const uint64_t bitsPerPixel = uint64_t{channels} * static_cast<uint64_t>(header.depth);
  const uint64_t pixels = uint64_t{header.width} * header.height;  // below 2^62
  if (pixels / 8 / kMostExpansion > imageBytes / bitsPerPixel + 1) throw ImageDamaged();
}

// Asks libpng for rows as `layout` has them in memory.
void setTransformations(PngSession& session, const Header& header, const PixelLayout& layout) {
  session.guarded([&session, &header, &layout] {
    const png_structp png = session.png();
    if (layout.model == ColorModel::Indexed) png_set_packing(png);
    if (layout.model == ColorModel::Gray) png_set_expand_gray_1_2_4_to_8(png);
    if (header.transparentColor) png_set_tRNS_to_alpha(png);
    if (header.depth == 16 && std::endian::native == std::endian::little) png_set_swap(png);
    png_read_update_info(png, session.info());
  });
  const auto pixel = static_cast<uint64_t>(layout.bytesPerPixel());
  if (png_get_rowbytes(session.png(), session.info()) != header.width * pixel) throw ImageDamaged();
}

// Decodes the next `count` rows to `to`, `stride` bytes apart.
void readRows(PngSession& session, std::byte* to, size_t stride, int64_t count) {
  session.guarded([&session, to, stride, count] {
    for (int64_t i = 0; i < count; ++i) {
      png_read_row(session.png(), reinterpret_cast<png_bytep>(to + static_cast<size_t>(i) * stride),
                   nullptr);
    }
  });
}

int64_t rowsOfBand(size_t stride, int64_t height) {
  return std::clamp<int64_t>(static_cast<int64_t>(kBandBytes / stride), 1, height);
}

void readPlain(PngSession& session, const Header& header, UprightBitmap& bitmap, size_t stride) {
  const int64_t height = header.height;
  const int64_t band = rowsOfBand(stride, height);
  std::vector<std::byte> buffer(bitmap.isDirect() ? 0 : stride * static_cast<size_t>(band));
  for (int64_t y = 0; y < height; y += band) {
    const int64_t count = std::min(band, height - y);
    if (bitmap.isDirect()) {
      readRows(session, bitmap.row(y), bitmap.stride(), count);
    } else {
      readRows(session, buffer.data(), stride, count);
      bitmap.put(0, y, header.width, count, buffer.data(), stride);
    }
  }
}

// Each pass of an interlaced file is a small picture; its pixels go where they belong, so that the
// whole is never held twice.
void readInterlaced(PngSession& session, const Header& header, UprightBitmap& bitmap,
                    size_t stride) {
  const int64_t band = rowsOfBand(stride, header.height);
  std::vector<std::byte> buffer(stride * static_cast<size_t>(band));
  for (int pass = 0; pass < PNG_INTERLACE_ADAM7_PASSES; ++pass) {
    const int64_t columns = PNG_PASS_COLS(header.width, pass);
    const int64_t rows = columns == 0 ? 0 : PNG_PASS_ROWS(header.height, pass);
    for (int64_t first = 0; first < rows; first += band) {
      const int64_t count = std::min(band, rows - first);
      readRows(session, buffer.data(), stride, count);
      for (int64_t i = 0; i < count; ++i) {
        const int64_t y =
            PNG_PASS_START_ROW(pass) + (first + i) * (int64_t{1} << PNG_PASS_ROW_SHIFT(pass));
        bitmap.putSpaced(PNG_PASS_START_COL(pass), y, int64_t{1} << PNG_PASS_COL_SHIFT(pass),
                         columns, buffer.data() + static_cast<size_t>(i) * stride);
      }
    }
  }
}

class PngReader final : public ImageReader {
 public:
  explicit PngReader(ReadOnlyFile file) : m_file(std::move(file)) {}

  [[nodiscard]] ImageType type() const override { return ImageType::Png; }
  [[nodiscard]] int imageCount(const std::stop_token& stop) override {
    return pngImageCount(m_file, stop);
  }

  [[nodiscard]] Bitmap decode(const std::stop_token& stop) override {
    const PngChunks chunks = PngChunks::scan(m_file, stop);
    PngSession session(m_file, stop);
    const Header header = readHeader(session);
    checkPlausible(header, png_get_channels(session.png(), session.info()), chunks.imageBytes);
    const PixelLayout layout = layoutOf(header);
    BitmapColor color = pngColor(session, layout.model);
    // Alpha made from one transparent colour has two values only, but counts as 8 bits.
    if (header.depth < 8 && !layout.alpha) color.fileBits = header.depth;

    UprightBitmap bitmap(header.width, header.height, layout, chunks.orientation);
    setTransformations(session, header, layout);
    const size_t stride = png_get_rowbytes(session.png(), session.info());
    if (header.interlaced) {
      readInterlaced(session, header, bitmap, stride);
    } else {
      readPlain(session, header, bitmap, stride);
    }
    session.guarded([&session] { png_read_end(session.png(), nullptr); });
    return bitmap.finish(std::move(color));
  }

 private:
  ReadOnlyFile m_file;
};

}  // namespace

std::unique_ptr<ImageReader> openPng(ReadOnlyFile file) {
  return std::make_unique<PngReader>(std::move(file));
}

}  // namespace vantrel
