#include "platform/image/tiff_reader.h"

#include <algorithm>
#include <array>
#include <span>
#include <utility>
#include <vector>

#include "base/cancelled.h"
#include "platform/image/tiff_handle.h"
#include "platform/image/tiff_picture.h"
#include "platform/image/tiff_rows.h"
#include "platform/image/upright_bitmap.h"

namespace vantrel {
namespace {

/// Pages beyond this are not counted: a file may chain any number of them.
constexpr int kMostPages = 1000;
/// Most bytes of a row, or of a tile unless the picture itself is larger.
constexpr uint64_t kMostBufferBytes = uint64_t{64} << 20;

class TiffReader final : public ImageReader {
 public:
  explicit TiffReader(ReadOnlyFile file) : m_file(std::move(file)), m_handle(m_file) {}

  [[nodiscard]] ImageType type() const override { return ImageType::Tiff; }
  [[nodiscard]] int imageCount(const std::stop_token& stop) override;
  [[nodiscard]] Bitmap decode(const std::stop_token& stop) override;

 private:
  struct Pages {
    int count = 0;
    /// The directory of the first one.
    tdir_t first = 0;
  };

  [[nodiscard]] Pages countPages(const std::stop_token& stop);
  void selectPage(TiffHandle& handle, tdir_t page) const;

  ReadOnlyFile m_file;
  TiffHandle m_handle;
};

/// Whether the current directory is a picture of its own: neither a reduced copy nor a mask.
bool isPicture(const TiffHandle& handle) {
  uint32_t kind = 0;
  if (TIFFGetField(handle.get(), TIFFTAG_SUBFILETYPE, &kind)) {
    return (kind & (FILETYPE_REDUCEDIMAGE | FILETYPE_MASK)) == 0;
  }
  // libtiff leaves the older tag out.
  return handle.rawShort(TIFFTAG_OSUBFILETYPE) != OFILETYPE_REDUCEDIMAGE;
}

void check(bool succeeded, const TiffHandle& handle) {
  if (!succeeded || handle.hasFailed()) throw ImageDamaged();
}

/// Rows in the order of the file; separate planes are read side by side, each by a handle of its
/// own, because going back and forth in one would decode strips again and again.
class StripRows {
 public:
  StripRows(std::vector<TiffHandle*> handles, const TiffPicture& picture)
      : m_handles(std::move(handles)) {
    const std::vector<int> wanted = picture.wantedSamples();
    for (size_t i = 0; i < m_handles.size(); ++i) {
      const uint64_t bytes = std::max(picture.rowBytes(picture.width),
                                      uint64_t{TIFFScanlineSize64(m_handles[i]->get())});
      if (bytes > kMostBufferBytes) throw ImageDamaged();
      m_buffers.emplace_back(bytes);
      m_rows.push_back(m_buffers.back().data());
      m_samples.push_back(picture.separatePlanes ? static_cast<uint16_t>(wanted[i]) : uint16_t{0});
    }
  }

  std::span<const std::byte* const> read(uint32_t y) {
    for (size_t i = 0; i < m_handles.size(); ++i) {
      readInto(y, i, m_buffers[i].data());
    }
    return m_rows;
  }

  /// Reads a row of a file without separate planes to where it is wanted.
  void readTo(uint32_t y, std::byte* row) { readInto(y, 0, row); }

 private:
  void readInto(uint32_t y, size_t i, std::byte* row) {
    check(TIFFReadScanline(m_handles[i]->get(), row, y, m_samples[i]) == 1, *m_handles[i]);
  }

  std::vector<TiffHandle*> m_handles;
  std::vector<uint16_t> m_samples;
  std::vector<std::vector<std::byte>> m_buffers;
  std::vector<const std::byte*> m_rows;
};

Bitmap decodeStrips(const std::vector<TiffHandle*>& handles, TiffPicture& picture,
                    const std::stop_token& stop) {
  StripRows strips(handles, picture);
  TiffRows converter(picture);
  UprightBitmap bitmap(picture.width, picture.height, picture.layout, picture.orientation);
  const bool straight = bitmap.isDirect() && converter.areIdentical() &&
                        uint64_t{TIFFScanlineSize64(handles[0]->get())} == bitmap.stride();
  std::vector<std::byte> turned(
      bitmap.isDirect() ? 0 : picture.width * static_cast<size_t>(picture.layout.bytesPerPixel()));
  for (uint32_t y = 0; y < picture.height; ++y) {
    throwIfCancelled(stop);
    if (straight) {
      strips.readTo(y, bitmap.row(y));
    } else if (bitmap.isDirect()) {
      converter.convert(strips.read(y), picture.width, bitmap.row(y));
    } else {
      converter.convert(strips.read(y), picture.width, turned.data());
      bitmap.put(0, y, picture.width, 1, turned.data(), turned.size());
    }
  }
  return bitmap.finish(std::move(picture.color));
}

/// A tile in memory: all samples together, or a plane for each wanted one.
class Tile {
 public:
  Tile(const TiffHandle& handle, const TiffPicture& picture) : m_handle(handle) {
    m_width = handle.field<uint32_t>(TIFFTAG_TILEWIDTH, 0);
    m_height = handle.field<uint32_t>(TIFFTAG_TILELENGTH, 0);
    m_rowBytes = picture.rowBytes(m_width);
    const uint64_t pictureBytes = picture.rowBytes(picture.width) * picture.height;
    const uint64_t bytes = TIFFTileSize64(handle.get());
    if (m_width == 0 || m_height == 0 || m_rowBytes > bytes || bytes / m_height < m_rowBytes ||
        bytes > std::max(kMostBufferBytes, pictureBytes)) {
      throw ImageDamaged();
    }
    m_samples = picture.separatePlanes ? picture.wantedSamples() : std::vector<int>{0};
    m_planes.resize(m_samples.size(), std::vector<std::byte>(bytes));
    m_rows.resize(m_samples.size());
  }

  [[nodiscard]] uint32_t width() const { return m_width; }
  [[nodiscard]] uint32_t height() const { return m_height; }

  void read(uint32_t x, uint32_t y) {
    for (size_t i = 0; i < m_planes.size(); ++i) {
      const tmsize_t read = TIFFReadTile(m_handle.get(), m_planes[i].data(), x, y, 0,
                                         static_cast<uint16_t>(m_samples[i]));
      check(read >= 0, m_handle);
    }
  }

  [[nodiscard]] std::span<const std::byte* const> row(uint32_t y) {
    for (size_t i = 0; i < m_planes.size(); ++i) {
      m_rows[i] = m_planes[i].data() + m_rowBytes * y;
    }
    return m_rows;
  }

 private:
  const TiffHandle& m_handle;
  uint32_t m_width = 0, m_height = 0;
  uint64_t m_rowBytes = 0;
  std::vector<int> m_samples;
  std::vector<std::vector<std::byte>> m_planes;
  std::vector<const std::byte*> m_rows;
};

Bitmap decodeTiles(const TiffHandle& handle, TiffPicture& picture, const std::stop_token& stop) {
  if (!Bitmap::fits(picture.width, picture.height, picture.layout.bytesPerPixel())) {
    throw ImageDamaged();
  }
  Tile tile(handle, picture);
  TiffRows converter(picture);
  UprightBitmap bitmap(picture.width, picture.height, picture.layout, picture.orientation);
  const uint32_t widest = std::min(tile.width(), picture.width);
  std::vector<std::byte> row(widest * static_cast<size_t>(picture.layout.bytesPerPixel()));
  for (uint64_t y = 0; y < picture.height; y += tile.height()) {
    const auto rows = static_cast<uint32_t>(std::min<uint64_t>(tile.height(), picture.height - y));
    for (uint64_t x = 0; x < picture.width; x += tile.width()) {
      throwIfCancelled(stop);
      tile.read(static_cast<uint32_t>(x), static_cast<uint32_t>(y));
      const auto columns =
          static_cast<int64_t>(std::min<uint64_t>(tile.width(), picture.width - x));
      for (uint32_t line = 0; line < rows; ++line) {
        converter.convert(tile.row(line), columns, row.data());
        bitmap.put(static_cast<int64_t>(x), static_cast<int64_t>(y + line), columns, 1, row.data(),
                   row.size());
      }
    }
  }
  return bitmap.finish(std::move(picture.color));
}

/// Lets libtiff make RGB of what only it can decode, a band of strips or tiles at a time.
Bitmap decodeByLibrary(const TiffHandle& handle, TiffPicture& picture,
                       const std::stop_token& stop) {
  UprightBitmap bitmap(picture.width, picture.height, picture.layout, picture.orientation);
  struct Decoder : TIFFRGBAImage {
    explicit Decoder(TIFF* tiff)
        : TIFFRGBAImage{}, ready(TIFFRGBAImageBegin(this, tiff, 1, message)) {}
    ~Decoder() {
      if (ready) TIFFRGBAImageEnd(this);
    }
    char message[1024] = {};
    bool ready;
  } decoder(handle.get());
  check(decoder.ready, handle);
  decoder.orientation = decoder.req_orientation = ORIENTATION_TOPLEFT;

  const bool tiled = TIFFIsTiled(handle.get());
  const auto chunk =
      handle.field<uint32_t>(tiled ? TIFFTAG_TILELENGTH : TIFFTAG_ROWSPERSTRIP, picture.height);
  const uint32_t band = std::clamp<uint32_t>(chunk, 1, picture.height);
  // Not initialised: what is never decoded into is never taken from the system.
  const auto raster = std::make_unique_for_overwrite<uint32_t[]>(size_t{picture.width} * band);
  std::vector<std::byte> row(size_t{picture.width} * 3);
  for (uint64_t top = 0; top < picture.height; top += band) {
    throwIfCancelled(stop);
    const auto rows = static_cast<uint32_t>(std::min<uint64_t>(band, picture.height - top));
    decoder.row_offset = static_cast<int>(top);
    check(TIFFRGBAImageGet(&decoder, raster.get(), picture.width, rows), handle);
    for (uint32_t line = 0; line < rows; ++line) {
      const uint32_t* pixel = raster.get() + uint64_t{line} * picture.width;
      for (size_t i = 0; i < row.size(); i += 3, ++pixel) {
        row[i] = static_cast<std::byte>(TIFFGetR(*pixel));
        row[i + 1] = static_cast<std::byte>(TIFFGetG(*pixel));
        row[i + 2] = static_cast<std::byte>(TIFFGetB(*pixel));
      }
      bitmap.put(0, static_cast<int64_t>(top + line), picture.width, 1, row.data(), row.size());
    }
  }
  return bitmap.finish(std::move(picture.color));
}

/// Whether the header (TIFF 6.0, section 2; BigTIFF) names a first directory.
bool namesDirectory(const ReadOnlyFile& file) {
  std::array<std::byte, 16> header{};
  const size_t size = file.read(0, header);
  const bool big = (header[2] | header[3]) == std::byte{43};
  const auto offset = std::span(header).subspan(big ? 8 : 4, big ? 8 : 4);
  return size < header.size() || std::any_of(offset.begin(), offset.end(),
                                             [](std::byte byte) { return byte != std::byte{0}; });
}

TiffReader::Pages TiffReader::countPages(const std::stop_token& stop) {
  Pages pages;
  if (!m_handle.get() || !TIFFSetDirectory(m_handle.get(), 0)) {
    pages.count = namesDirectory(m_file) ? 1 : 0;
    return pages;
  }
  for (tdir_t directory = 0; pages.count < kMostPages; ++directory) {
    throwIfCancelled(stop);
    if (isPicture(m_handle)) {
      if (pages.count == 0) pages.first = directory;
      ++pages.count;
    }
    if (!TIFFReadDirectory(m_handle.get())) break;
  }
  // A file of nothing but reduced copies: the first is the picture.
  if (pages.count == 0) pages.count = 1;
  return pages;
}

int TiffReader::imageCount(const std::stop_token& stop) {
  return countPages(stop).count;
}

void TiffReader::selectPage(TiffHandle& handle, tdir_t page) const {
  if (!handle.get()) throw ImageDamaged();
  handle.forgetFailure();
  check(TIFFSetDirectory(handle.get(), page), handle);
}

Bitmap TiffReader::decode(const std::stop_token& stop) {
  const tdir_t page = countPages(stop).first;
  selectPage(m_handle, page);
  TiffPicture picture = TiffPicture::read(m_handle);
  if (!Bitmap::fits(picture.width, picture.height, picture.layout.bytesPerPixel())) {
    throw ImageDamaged();
  }
  if (picture.colors == TiffColors::Library) return decodeByLibrary(m_handle, picture, stop);
  if (TIFFIsTiled(m_handle.get())) return decodeTiles(m_handle, picture, stop);

  std::vector<std::unique_ptr<TiffHandle>> others;
  std::vector<TiffHandle*> handles = {&m_handle};
  const size_t planes = picture.separatePlanes ? picture.wantedSamples().size() : 1;
  while (handles.size() < planes) {
    others.push_back(std::make_unique<TiffHandle>(m_file));
    selectPage(*others.back(), page);
    handles.push_back(others.back().get());
  }
  return decodeStrips(handles, picture, stop);
}

}  // namespace

std::unique_ptr<ImageReader> openTiff(ReadOnlyFile file) {
  return std::make_unique<TiffReader>(std::move(file));
}

}  // namespace vantrel
