// png_writer_benchmark [--runs N] [PHOTO.ppm]
//
// Writes a picture of 12 megapixels, or the given one, as PNG with our writer and with libpng at
// level 6 with all filters, in turn, and prints one JSON object: medians of processor time and wall
// time in seconds, sizes in bytes, and for each number of threads the shortest wall time of our
// writer: what other programs on the machine take away is not ours.

#include <png.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "photo.h"
#include "platform/image/bitmap.h"
#include "platform/image/png_writer.h"

namespace vantrel::bench {
namespace {

constexpr int64_t kWidth = 4000;
constexpr int64_t kHeight = 3000;

struct Times {
  double processor = 0, wall = 0;
};

double processorSeconds() {
  timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

Times measure(const std::function<void()>& work) {
  const double processor = processorSeconds();
  const auto wall = std::chrono::steady_clock::now();
  work();
  return {processorSeconds() - processor,
          std::chrono::duration<double>(std::chrono::steady_clock::now() - wall).count()};
}

double median(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  const size_t middle = values.size() / 2;
  return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

Times medians(const std::vector<Times>& runs) {
  std::vector<double> processor;
  std::vector<double> wall;
  for (const Times& run : runs) {
    processor.push_back(run.processor);
    wall.push_back(run.wall);
  }
  return {median(processor), median(wall)};
}

void writeWithLibpng(const Photo& photo, const std::filesystem::path& path) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "wb"),
                                                             std::fclose);
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
  png_infop info = png_create_info_struct(png);
  if (!file || setjmp(png_jmpbuf(png)) != 0) std::exit(1);
  png_init_io(png, file.get());
  png_set_IHDR(png, info, static_cast<png_uint_32>(photo.width),
               static_cast<png_uint_32>(photo.height), 8, PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_set_filter(png, 0, PNG_ALL_FILTERS);
  png_set_compression_level(png, 6);
  png_write_info(png, info);
  for (int64_t y = 0; y < photo.height; ++y) {
    png_write_row(png, photo.pixels.data() + y * photo.width * 3);
  }
  png_write_end(png, info);
  png_destroy_write_struct(&png, &info);
}

Bitmap bitmapOf(const Photo& photo) {
  const std::shared_ptr<const std::byte> pixels(
      reinterpret_cast<const std::byte*>(photo.pixels.data()), [](const std::byte*) {});
  return Bitmap(photo.width, photo.height, {ColorModel::Rgb, SampleFormat::UInt8, false}, pixels,
                static_cast<size_t>(photo.width) * 3, {});
}

void compare(const Photo& photo, int runs) {
  const Bitmap bitmap = bitmapOf(photo);
  const std::filesystem::path ours = "png_writer_benchmark_ours.png";
  const std::filesystem::path theirs = "png_writer_benchmark_libpng.png";
  const int processors = availableProcessors();
  std::vector<Times> ourRuns;
  std::vector<Times> theirRuns;
  std::map<int, double> wallByThreads;
  for (int run = 0; run < runs; ++run) {
    const auto write = [&](int threads) {
      return measure([&] { writePngWithThreads(bitmap, bitmap.bounds(), ours, threads, {}); });
    };
    ourRuns.push_back(write(processors));
    theirRuns.push_back(measure([&] { writeWithLibpng(photo, theirs); }));
    for (int threads = 1; threads <= processors; threads *= 2) {
      double& shortest = wallByThreads.try_emplace(threads, HUGE_VAL).first->second;
      shortest = std::min(shortest, write(threads).wall);
    }
  }
  const Times our = medians(ourRuns);
  const Times their = medians(theirRuns);
  std::printf("{\"width\": %lld, \"height\": %lld, \"runs\": %d, \"processors\": %d,\n",
              static_cast<long long>(photo.width), static_cast<long long>(photo.height), runs,
              processors);
  std::printf(" \"ours\": {\"processor\": %.4f, \"wall\": %.4f, \"bytes\": %ju},\n", our.processor,
              our.wall, std::filesystem::file_size(ours));
  std::printf(" \"libpng\": {\"processor\": %.4f, \"wall\": %.4f, \"bytes\": %ju},\n",
              their.processor, their.wall, std::filesystem::file_size(theirs));
  std::printf(" \"wallByThreads\": {");
  const char* separator = "";
  for (const auto& [threads, wall] : wallByThreads) {
    std::printf("%s\"%d\": %.4f", std::exchange(separator, ", "), threads, wall);
  }
  std::printf("}}\n");
  std::filesystem::remove(ours);
  std::filesystem::remove(theirs);
}

int run(int argc, char** argv) {
  int runs = 5;
  const char* path = nullptr;
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "--runs") == 0 && i + 1 < argc) {
      runs = std::max(std::atoi(argv[++i]), 1);
    } else {
      path = argv[i];
    }
  }
  compare(path != nullptr ? readPhoto(path) : makePhoto(kWidth, kHeight), runs);
  return 0;
}

}  // namespace
}  // namespace vantrel::bench

int main(int argc, char** argv) {
  try {
    return vantrel::bench::run(argc, argv);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
