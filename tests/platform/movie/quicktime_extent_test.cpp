#include "platform/movie/quicktime_extent.h"

#include <gtest/gtest.h>

#include <system_error>

#include "support/movie_maker.h"
#include "support/quicktime_maker.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using namespace testing;

class QuickTimeExtentTest : public ::testing::Test {
 protected:
  /// Twenty frames and a sound track.
  std::filesystem::path film(const std::string& name, const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments = {
        "-f",       "lavfi",   "-i",      "testsrc2=s=64x48:r=10:d=2",
        "-f",       "lavfi",   "-i",      "sine=d=2",
        "-c:v",     "libx264", "-preset", "ultrafast",
        "-pix_fmt", "yuv420p", "-c:a",    "aac"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    arguments.push_back((m_folder / name).string());
    runFfmpeg(arguments);
    return m_folder / name;
  }

  /// A file of one track with these sample tables and `media` bytes of media behind them.
  std::filesystem::path tables(const std::string& stbl, size_t media = 0) {
    const std::string tkhd = fullBox("tkhd", bigEndian(0, 8) + bigEndian(1, 4) + bigEndian(0, 68));
    const std::filesystem::path path = m_folder / "tables.mov";
    writeFile(path,
              box("ftyp", "qt  ") +
                  box("moov", box("trak", tkhd + box("mdia", box("minf", box("stbl", stbl))))) +
                  box("mdat", std::string(media, 'x')));
    return path;
  }

  TemporaryFolder m_folder;
};

void cut(const std::filesystem::path& path, uint64_t bytes) {
  std::filesystem::resize_file(path, std::filesystem::file_size(path) - bytes);
}

size_t countOf(const std::filesystem::path& path, const char* stream) {
  return std::stoul(runFfprobe({"-select_streams", stream, "-count_packets", "-show_entries",
                                "stream=nb_read_packets", "-of", "csv=p=0", path.string()}));
}

std::string sizes(const std::vector<uint32_t>& each) {
  std::string entries = bigEndian(0, 4) + bigEndian(each.size(), 4);
  for (const uint32_t size : each)
    entries += bigEndian(size, 4);
  return fullBox("stsz", entries);
}

std::string runs(const std::vector<std::pair<uint32_t, uint32_t>>& each) {
  std::string entries = bigEndian(each.size(), 4);
  for (const auto& [first, samples] : each)
    entries += bigEndian(first, 4) + bigEndian(samples, 4) + bigEndian(1, 4);
  return fullBox("stsc", entries);
}

std::string offsets(const std::vector<uint32_t>& each) {
  std::string entries = bigEndian(each.size(), 4);
  for (const uint32_t offset : each)
    entries += bigEndian(offset, 4);
  return fullBox("stco", entries);
}

QuickTimeExtent::Track onlyTrack(const std::filesystem::path& path) {
  const auto extent = QuickTimeExtent::read(path);
  if (!extent || extent->tracks.size() != 1) throw std::runtime_error("not one track");
  return extent->tracks[0];
}

TEST_F(QuickTimeExtentTest, FindsAWholeFilmWhole) {
  for (const char* name : {"film.mov", "film.mp4"}) {
    const std::filesystem::path path = film(name);
    const auto extent = QuickTimeExtent::read(path);
    ASSERT_TRUE(extent);
    EXPECT_TRUE(extent->boxesAreWhole);
    ASSERT_EQ(extent->tracks.size(), 2u);
    EXPECT_EQ(extent->tracks[0].sampleCount, 20u);
    EXPECT_EQ(extent->tracks[1].sampleCount, countOf(path, "a:0"));
    EXPECT_TRUE(extent->tracks[0].isWhole && extent->tracks[1].isWhole);
    EXPECT_EQ(extent->track(2), &extent->tracks[1]);
    EXPECT_EQ(extent->track(9), nullptr);
  }
}

TEST_F(QuickTimeExtentTest, FindsAFilmCutByAByte) {
  const std::filesystem::path path = film("film.mp4", {"-movflags", "faststart"});
  cut(path, 1);
  const auto extent = QuickTimeExtent::read(path);
  ASSERT_TRUE(extent);
  EXPECT_FALSE(extent->boxesAreWhole);
  ASSERT_EQ(extent->tracks.size(), 2u);
  // One of them has the last byte.
  EXPECT_NE(extent->tracks[0].isWhole, extent->tracks[1].isWhole);
  EXPECT_EQ(extent->tracks[0].sampleCount, 20u);
}

TEST_F(QuickTimeExtentTest, FindsAFilmWithoutItsHeader) {
  const std::filesystem::path path = film("film.mov");
  cut(path, 1);
  const auto extent = QuickTimeExtent::read(path);
  ASSERT_TRUE(extent);
  EXPECT_FALSE(extent->boxesAreWhole);
  EXPECT_TRUE(extent->tracks.empty());
}

TEST_F(QuickTimeExtentTest, CountsTheSamplesOfFragments) {
  const std::filesystem::path path =
      film("film.mp4", {"-g", "5", "-movflags", "frag_keyframe+empty_moov"});
  const auto extent = QuickTimeExtent::read(path);
  ASSERT_TRUE(extent);
  EXPECT_TRUE(extent->boxesAreWhole);
  ASSERT_EQ(extent->tracks.size(), 2u);
  EXPECT_EQ(extent->tracks[0].sampleCount, 20u);
  EXPECT_EQ(extent->tracks[1].sampleCount, countOf(path, "a:0"));
}

TEST_F(QuickTimeExtentTest, FindsTheLastFragmentCut) {
  const std::filesystem::path path =
      film("film.mp4", {"-g", "5", "-movflags", "frag_keyframe+empty_moov+skip_trailer"});
  const auto whole = QuickTimeExtent::read(path);
  ASSERT_TRUE(whole);
  EXPECT_TRUE(whole->boxesAreWhole);
  cut(path, 1);
  const auto extent = QuickTimeExtent::read(path);
  ASSERT_TRUE(extent);
  EXPECT_FALSE(extent->boxesAreWhole);
  EXPECT_EQ(extent->tracks[0].sampleCount, 20u);
}

TEST_F(QuickTimeExtentTest, FindsAFragmentCutInItsFirstBytes) {
  const std::filesystem::path path =
      film("film.mp4", {"-g", "5", "-movflags", "frag_keyframe+empty_moov+skip_trailer"});
  writeFile(path, readFile(path) + std::string("\0\0\x04", 3));
  const auto extent = QuickTimeExtent::read(path);
  ASSERT_TRUE(extent);
  EXPECT_FALSE(extent->boxesAreWhole);
}

TEST_F(QuickTimeExtentTest, FindsAFragmentDamaged) {
  const std::filesystem::path path =
      film("film.mp4", {"-g", "5", "-movflags", "frag_keyframe+empty_moov"});
  const std::string bytes = readFile(path);
  const size_t first = bytes.find("moof"), second = bytes.find("moof", first + 4);
  ASSERT_NE(second, std::string::npos);
  const auto isWholeWith = [&](size_t at, const std::string& damage) {
    writeFile(path, std::string(bytes).replace(at, damage.size(), damage));
    return QuickTimeExtent::read(path)->boxesAreWhole;
  };
  EXPECT_TRUE(isWholeWith(second, "moof"));
  // The box of the fragment, its size, the box of its track, and the track that it names.
  for (const size_t at : {second, second - 4, bytes.find("traf", second) - 4,
                          bytes.find("tfhd", second) + 8, bytes.find("tfhd", second) - 4}) {
    EXPECT_FALSE(isWholeWith(at, std::string(4, '\0'))) << at - second;
    EXPECT_FALSE(isWholeWith(at, "\x81\x02\xFE\x17")) << at - second;
  }
  EXPECT_FALSE(isWholeWith(second - 4, std::string(200, '\0')));
}

TEST_F(QuickTimeExtentTest, IgnoresWhatFollowsThatIsNoBoxOfMedia) {
  const std::filesystem::path path = film("film.mov");
  const std::string bytes = readFile(path);
  for (const std::string& more : {std::string("abc"), std::string(64, '\0'), std::string(64, 'z'),
                                  bigEndian(4000, 4) + "free"}) {
    writeFile(path, bytes + more);
    const auto extent = QuickTimeExtent::read(path);
    ASSERT_TRUE(extent);
    EXPECT_TRUE(extent->boxesAreWhole) << more;
  }
}

TEST_F(QuickTimeExtentTest, IsNotThereForOtherFiles) {
  EXPECT_FALSE(QuickTimeExtent::read(film("film.mkv")));
  writeFile(m_folder / "empty.mov", "");
  EXPECT_FALSE(QuickTimeExtent::read(m_folder / "empty.mov"));
  EXPECT_THROW(QuickTimeExtent::read(m_folder / "missing.mov"), std::system_error);
}

TEST_F(QuickTimeExtentTest, AddsUpTheSamplesOfEachChunk) {
  // Two chunks of two samples and one of one; the file's own size decides how far they may reach.
  const std::string table = sizes({10, 20, 30, 40, 50}) + runs({{1, 2}, {3, 1}});
  const uint64_t size = std::filesystem::file_size(tables(table + offsets({0, 0, 0}), 300));
  const auto last = static_cast<uint32_t>(size);
  EXPECT_TRUE(onlyTrack(tables(table + offsets({last - 30, last - 70, last - 50}), 300)).isWhole);
  EXPECT_FALSE(onlyTrack(tables(table + offsets({last - 29, 0, 0}), 300)).isWhole);
  EXPECT_FALSE(onlyTrack(tables(table + offsets({0, last - 69, 0}), 300)).isWhole);
  EXPECT_FALSE(onlyTrack(tables(table + offsets({0, 0, last - 49}), 300)).isWhole);
  EXPECT_EQ(onlyTrack(tables(table + offsets({0, 0, 0}), 300)).sampleCount, 5u);
}

TEST_F(QuickTimeExtentTest, ReadsCompactAndConstantSizes) {
  const std::string one = runs({{1, 3}});
  const auto compact = [](uint32_t bits, const std::string& entries) {
    return fullBox("stz2", bigEndian(bits, 4) + bigEndian(3, 4) + entries);
  };
  const std::string constant = fullBox("stsz", bigEndian(20, 4) + bigEndian(3, 4));
  const std::vector<std::pair<std::string, uint32_t>> tests = {
      {compact(4, "\x12\x30"), 6},
      {compact(8, "\x10\x20\x30"), 0x60},
      {compact(16, bigEndian(0x11, 2) + bigEndian(0x22, 2) + bigEndian(0x33, 2)), 0x66},
      {constant, 60}};
  for (const auto& [table, length] : tests) {
    const uint64_t size = std::filesystem::file_size(tables(table + one + offsets({0}), 300));
    const auto fits = static_cast<uint32_t>(size) - length;
    EXPECT_TRUE(onlyTrack(tables(table + one + offsets({fits}), 300)).isWhole) << length;
    EXPECT_FALSE(onlyTrack(tables(table + one + offsets({fits + 1}), 300)).isWhole) << length;
  }
}

TEST_F(QuickTimeExtentTest, ReadsOffsetsOf64Bits) {
  const std::string far = fullBox("co64", bigEndian(1, 4) + bigEndian(~uint64_t{0} - 3, 8));
  EXPECT_FALSE(onlyTrack(tables(sizes({10}) + runs({{1, 1}}) + far)).isWhole);
  const std::string near = fullBox("co64", bigEndian(1, 4) + bigEndian(20, 8));
  EXPECT_TRUE(onlyTrack(tables(sizes({10}) + runs({{1, 1}}) + near)).isWhole);
}

TEST_F(QuickTimeExtentTest, CountsSoundFramesWithoutSizeByTheirChunks) {
  const std::string frames = fullBox("stsz", bigEndian(1, 4) + bigEndian(100000, 4));
  const QuickTimeExtent::Track track =
      onlyTrack(tables(frames + runs({{1, 50000}}) + offsets({20, 30})));
  EXPECT_TRUE(track.isWhole);
  EXPECT_EQ(track.sampleCount, 100000u);
}

TEST_F(QuickTimeExtentTest, TakesTablesThatExceedTheirBoxForDamage) {
  const std::string size = sizes({10}), run = runs({{1, 1}}), offset = offsets({20});
  const auto claiming = [](std::string table, size_t at) {
    return table.replace(at, 4, bigEndian(0xffffffff, 4));
  };
  EXPECT_TRUE(onlyTrack(tables(size + run + offset)).isWhole);
  EXPECT_FALSE(onlyTrack(tables(claiming(size, 16) + run + offset)).isWhole);
  EXPECT_FALSE(onlyTrack(tables(size + claiming(run, 12) + offset)).isWhole);
  EXPECT_FALSE(onlyTrack(tables(size + run + claiming(offset, 12))).isWhole);
  EXPECT_FALSE(onlyTrack(tables(size + run)).isWhole);
}

}  // namespace
}  // namespace vantrel
