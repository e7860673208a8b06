#include "platform/image/png_writer.h"

#include <zlib.h>

#ifdef __linux__
#include <sched.h>
#endif

#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <stdexcept>
#include <string_view>
#include <thread>
#include <vector>

#include "base/cancelled.h"
#include "platform/image/color_profile.h"
#include "platform/image/image_writer.h"
#include "platform/image/ordered_work.h"
#include "platform/image/output_file.h"
#include "platform/image/png_chunk_writer.h"
#include "platform/image/png_rows.h"
#include "platform/image/png_stripes.h"

namespace vantrel {
namespace {

/// The largest number that a PNG can hold (PNG, 7.1).
constexpr int64_t kMostPixelsOnASide = 0x7fffffff;
/// Bounds on what the stripes in work take, beside the bitmap.
constexpr int kMostThreads = 16;
constexpr size_t kMostBytesInWork = size_t{16} << 20;

void writeHeader(PngChunkWriter& chunks, const PngRows& rows) {
  const auto width = bigEndian(static_cast<uint32_t>(rows.width()));
  const auto height = bigEndian(static_cast<uint32_t>(rows.height()));
  // Behind depth and type: deflate, the five filters, not interlaced.
  std::array<uint8_t, 13> header{};
  std::copy(width.begin(), width.end(), header.begin());
  std::copy(height.begin(), height.end(), header.begin() + 4);
  header[8] = static_cast<uint8_t>(rows.bitDepth());
  header[9] = static_cast<uint8_t>(rows.colorType());
  chunks.write("IHDR", header);
}

void writeProfile(PngChunkWriter& chunks, const std::vector<uint8_t>& profile) {
  if (profile.empty()) return;
  if (profile == srgbProfile()) {
    constexpr std::array<uint8_t, 1> perceptual{0};
    chunks.write("sRGB", perceptual);
    return;
  }
  using namespace std::string_view_literals;
  constexpr std::string_view nameAndMethod = "ICC profile\0\0"sv;
  std::vector<uint8_t> data(nameAndMethod.begin(), nameAndMethod.end());
  uLongf size = compressBound(static_cast<uLong>(profile.size()));
  data.resize(nameAndMethod.size() + size);
  if (compress2(data.data() + nameAndMethod.size(), &size, profile.data(),
                static_cast<uLong>(profile.size()), Z_BEST_COMPRESSION) != Z_OK) {
    throw std::bad_alloc();
  }
  data.resize(nameAndMethod.size() + size);
  chunks.write("iCCP", data);
}

void writePalette(PngChunkWriter& chunks, const PngRows& rows) {
  std::vector<uint8_t> colors;
  std::vector<uint8_t> alphas;
  for (const PaletteEntry& entry : rows.palette()) {
    colors.insert(colors.end(), {entry.red, entry.green, entry.blue});
    alphas.push_back(entry.alpha);
  }
  chunks.write("PLTE", colors);
  if (!rows.paletteHasAlpha()) return;
  // Entries past the chunk's end are opaque. One stays, so that the picture keeps its alpha.
  while (alphas.size() > 1 && alphas.back() == 255)
    alphas.pop_back();
  chunks.write("tRNS", alphas);
}

// The zlib stream (RFC 1950) around the joined stripes.
void writeStripes(PngChunkWriter& chunks, const PngRows& rows, int threads,
                  const std::stop_token& stop) {
  const PngStripes stripes(rows);
  const auto makeWorker = [&rows, &stop] {
    return [compressor = std::make_unique<PngStripeCompressor>(rows), &stop](int64_t stripe) {
      return compressor->compress(stripe, stop);
    };
  };
  const auto ahead = static_cast<int64_t>(std::max<size_t>(kMostBytesInWork / stripes.bytes, 1));
  const auto workers =
      static_cast<int>(std::min({int64_t{threads}, int64_t{kMostThreads}, ahead, stripes.count}));

  constexpr std::array<uint8_t, 2> zlibHeader{0x78, 0x5E};
  chunks.addImageData(zlibHeader);
  uLong checksum = 1;
  OrderedWork<CompressedStripe> work(stripes.count, workers, std::min<int64_t>(ahead, workers + 2),
                                     makeWorker);
  for (int64_t i = 0; i < stripes.count; ++i) {
    const CompressedStripe stripe = work.next();
    throwIfCancelled(stop);
    checksum = adler32_combine(checksum, stripe.checksum, static_cast<z_off_t>(stripe.bytes));
    chunks.addImageData(stripe.deflated);
  }
  chunks.addImageData(bigEndian(static_cast<uint32_t>(checksum)));
  chunks.endImageData();
}

}  // namespace

int availableProcessors() {
#ifdef __linux__
  cpu_set_t processors;
  if (sched_getaffinity(0, sizeof processors, &processors) == 0) {
    return std::max(CPU_COUNT(&processors), 1);
  }
#endif
  return static_cast<int>(std::max(std::thread::hardware_concurrency(), 1U));
}

void writePngWithThreads(const Bitmap& bitmap, const PixelRect& area,
                         const std::filesystem::path& path, int threads,
                         const std::stop_token& stop) {
  throwIfCancelled(stop);
  if (std::max(area.width, area.height) > kMostPixelsOnASide) {
    throw std::length_error("A PNG has at most 2147483647 pixels on a side");
  }
  const PngRows rows(bitmap, area, stop);
  OutputFile file(path);
  PngChunkWriter chunks(file);
  chunks.writeSignature();
  writeHeader(chunks, rows);
  writeProfile(chunks, rows.iccProfile());
  if (!rows.palette().empty()) writePalette(chunks, rows);
  writeStripes(chunks, rows, threads, stop);
  chunks.write("IEND", {});
  file.close();
}

void writePng(const Bitmap& bitmap, const PixelRect& area, const std::filesystem::path& path,
              const std::stop_token& stop) {
  writePngWithThreads(bitmap, area, path, availableProcessors(), stop);
}

}  // namespace vantrel
