#include <gtest/gtest.h>

#include "platform/image/image_reader.h"
#include "platform/movie/movie.h"
#include "support/film_folder.h"
#include "support/tiff_maker.h"

namespace vantrel {
namespace {

bool isLoaded(const std::string& library) {
  return testing::readFile("/proc/self/maps").find("/" + library) != std::string::npos;
}

// The first of all, in a process of its own.
TEST(DeferredFunctions, LoadTheirLibrariesWhenOneIsCalled) {
#ifdef VANTREL_DEFERS_LIBRARIES
  EXPECT_FALSE(isLoaded("libavcodec.so"));
#endif
  const testing::FilmFolder films;
  films.make("film.mov");
  const Movie movie = Movie::open(films / "film.mov");
  EXPECT_NEAR(movie.duration().seconds(), 1, 0.05);
  EXPECT_TRUE(isLoaded("libavcodec.so"));
}

TEST(DeferredFunctions, KeepTheArgumentsOfVariadicCalls) {
  const testing::TemporaryFolder folder;
  testing::TiffSpec spec;
  spec.width = 7;
  spec.height = 5;
  spec.sample = [](uint32_t x, uint32_t y, int sample) -> uint64_t {
    return x * 9 + y * 5 + static_cast<uint32_t>(sample);
  };
  testing::saveTiff(folder / "a.tiff", {spec});
  const auto reader = ImageReader::open(folder / "a.tiff");
  ASSERT_NE(reader, nullptr);
  const Bitmap bitmap = reader->decode({});
  ASSERT_EQ(bitmap.width(), 7);
  ASSERT_EQ(bitmap.height(), 5);
  EXPECT_EQ(std::to_integer<int>(bitmap.pixel(6, 4)[2]), 6 * 9 + 4 * 5 + 2);
}

}  // namespace
}  // namespace vantrel
