#include <gtest/gtest.h>
#include <sys/resource.h>

#include <array>
#include <random>
#include <system_error>

#include "platform/movie/movie_error.h"
#include "platform/movie/quicktime_atoms.h"
#include "platform/movie/quicktime_extent.h"
#include "platform/movie/quicktime_finish.h"
#include "support/movie_maker.h"
#include "support/quicktime_maker.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using namespace testing;

/// Films with everything in them that is read, as bytes.
class QuickTimeDamage : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    const TemporaryFolder folder;
    const std::filesystem::path plain = folder / "plain.mov", fragments = folder / "fragments.mp4";
    const auto make = [](const std::filesystem::path& path, const std::vector<std::string>& more) {
      std::vector<std::string> arguments = {
          "-f",   "lavfi",   "-i",       "testsrc2=s=32x32:r=10:d=1",
          "-f",   "lavfi",   "-i",       "sine=d=0.5",
          "-c:v", "libx264", "-pix_fmt", "yuv420p",
          "-c:a", "aac"};
      arguments.insert(arguments.end(), more.begin(), more.end());
      arguments.push_back(path.string());
      runFfmpeg(arguments);
    };
    make(plain, {});
    addToTrack(plain, 1, metadataBox({densityItem(64, 64, 32, 32), {"note", "hello"}}));
    addToTrack(plain, 2, box("udta", metadataBox({{"note", "hello"}}, true)));
    setExtendedLanguage(plain, 2, "de-AT");
    make(fragments, {"-g", "4", "-movflags", "frag_keyframe+empty_moov"});
    s_films = {readFile(plain), readFile(fragments)};
  }

  /// Whatever comes out of it, nothing else than the errors that callers expect.
  void readWhatMayBeDamaged(const std::string& bytes) {
    const std::filesystem::path source = m_folder / "film.mov", out = m_folder / "out.mov";
    writeFile(source, bytes);
    (void)QuickTimeMovie::read(source);
    (void)QuickTimeExtent::read(source);
    QuickTimeFinish finish{90000, {}};
    for (const uint32_t id : {1u, 2u}) {
      QuickTimeTrackChange change;
      change.trackID = id;
      change.mediaEnd = 12345;
      finish.tracks.push_back(change);
    }
    try {
      finishQuickTimeMovie(source, out, finish);
      ++m_finished;
    } catch (const MovieError&) {
      ++m_refused;
    }
  }

  static constexpr int kRounds = 120;
  static inline std::vector<std::string> s_films;
  TemporaryFolder m_folder;
  int m_finished = 0, m_refused = 0;
};

TEST_F(QuickTimeDamage, FlippedBitsDoNoHarm) {
  std::mt19937 random(20261120);
  for (const std::string& film : s_films) {
    // Every other flip is in the movie header, which is a small part of the file.
    const size_t header = film.rfind("moov") - 4;
    for (int round = 0; round < kRounds; ++round) {
      std::string bytes = film;
      for (uint32_t flips = random() % 4 + 1; flips > 0; --flips) {
        const size_t from = flips % 2 == 1 ? header : 0;
        bytes[from + random() % (bytes.size() - from)] ^= static_cast<char>(1 << random() % 8);
      }
      readWhatMayBeDamaged(bytes);
    }
  }
  EXPECT_GT(m_finished, 20);
  EXPECT_GT(m_refused, 20);
}

TEST_F(QuickTimeDamage, ExtremeNumbersDoNoHarm) {
  std::mt19937 random(20261120);
  constexpr std::array<uint64_t, 6> kNumbers = {0, 1, 7, 0x7fffffff, 0x80000000, 0xffffffff};
  for (const std::string& film : s_films) {
    const size_t header = film.rfind("moov") - 4;
    for (int round = 0; round < kRounds; ++round) {
      std::string bytes = film;
      const size_t at = header + random() % (bytes.size() - header - 4) / 2 * 2;
      bytes.replace(at, 4, bigEndian(kNumbers[random() % kNumbers.size()], 4));
      readWhatMayBeDamaged(bytes);
    }
  }
  EXPECT_GT(m_refused, 20);
}

TEST_F(QuickTimeDamage, FilesCutAnywhereDoNoHarm) {
  for (const std::string& film : s_films) {
    for (size_t size = 0; size < film.size(); size += 1 + film.size() / 100)
      readWhatMayBeDamaged(film.substr(0, size));
  }
  EXPECT_GT(m_refused, 100);
}

TEST_F(QuickTimeDamage, SizesThatAreOnlyClaimedCostNoMemory) {
  // Tables and boxes of gigabytes in a file that is all hole.
  const auto wide = [](const char* type, uint64_t size) {
    return bigEndian(1, 4) + type + bigEndian(size, 8);
  };
  const uint64_t end = uint64_t{1} << 40;
  std::string start = box("ftyp", "qt  ");
  for (const char* type : {"moov", "trak", "meta"})
    start += wide(type, end - start.size());
  const std::filesystem::path path = m_folder / "sparse.mov";
  rusage before{}, after{};
  ::getrusage(RUSAGE_SELF, &before);
  for (const char* type : {"mvhd", "udta", "meta", "trak", "moof", "free"}) {
    writeFile(path, start + wide(type, end - start.size()));
    std::filesystem::resize_file(path, end);
    EXPECT_FALSE(QuickTimeMovie::read(path));
    EXPECT_TRUE(QuickTimeExtent::read(path));
    EXPECT_THROW(finishQuickTimeMovie(path, m_folder / "out.mov", {}), MovieError);
  }
  ::getrusage(RUSAGE_SELF, &after);
  constexpr long kKibibytes = 64 << 10;
  EXPECT_LT(after.ru_maxrss - before.ru_maxrss, kKibibytes);
}

}  // namespace
}  // namespace vantrel
