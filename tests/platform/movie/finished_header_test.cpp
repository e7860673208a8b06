#include "platform/movie/finished_header.h"

#include <gtest/gtest.h>

#include <fstream>
#include <limits>

#include "platform/movie/edit_list.h"
#include "support/movie_maker.h"
#include "support/quicktime_maker.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using namespace testing;

constexpr uint64_t k4GiB = uint64_t{1} << 32;

std::span<const uint8_t> bytesOf(const std::string& text) {
  return {reinterpret_cast<const uint8_t*>(text.data()), text.size()};
}

std::string offsetBox(const std::vector<uint64_t>& offsets, bool isLong) {
  std::string entries = bigEndian(offsets.size(), 4);
  for (const uint64_t offset : offsets)
    entries += bigEndian(offset, isLong ? 8 : 4);
  return fullBox(isLong ? "co64" : "stco", entries);
}

/// A track that has nothing but chunks.
std::string track(uint32_t id, const std::vector<uint64_t>& offsets, bool isLong = false) {
  const std::string tkhd = fullBox("tkhd", bigEndian(0, 8) + bigEndian(id, 4) + bigEndian(0, 4) +
                                               bigEndian(10, 4) + std::string(60, '\0'));
  const std::string mdhd = fullBox("mdhd", bigEndian(0, 8) + bigEndian(600, 4) + bigEndian(10, 8));
  return box("trak",
             tkhd + box("mdia", mdhd + box("minf", box("stbl", offsetBox(offsets, isLong)))));
}

std::string movie(const std::string& tracks) {
  const std::string mvhd = fullBox(
      "mvhd", bigEndian(0, 8) + bigEndian(600, 4) + bigEndian(10, 4) + std::string(80, '\0'));
  return box("moov", mvhd + tracks);
}

/// The finished header with the media of [16, 6 GiB) behind it, of which it has offsets.
EditableBox finished(const std::string& moov, uint64_t headerOffset = 20) {
  const MediaStretch media{16, 6 * (k4GiB / 4)};
  const auto bytes = finishedMovieHeader(bytesOf(moov), {}, headerOffset, {&media, 1});
  return EditableBox::parse(std::string(bytes.begin(), bytes.end()));
}

std::string offsetsOf(EditableBox& moov, uint32_t trackID) {
  EditableBox& table = trackOf(moov, trackID).child("mdia").child("minf").child("stbl");
  return table.children.at(0).bytes();
}

TEST(FinishedHeader, MovesChunksBehindItself) {
  const std::string moov = movie(track(1, {16, 1000}) + track(2, {500}));
  EditableBox result = finished(moov);
  const uint64_t shift = 20 + moov.size() - 16;
  EXPECT_EQ(offsetsOf(result, 1), offsetBox({16 + shift, 1000 + shift}, false));
  EXPECT_EQ(offsetsOf(result, 2), offsetBox({500 + shift}, false));
}

TEST(FinishedHeader, WritesOffsetsPast4GiBIn64Bits) {
  const std::string moov = movie(track(1, {16, k4GiB - 1}) + track(2, {500}));
  EditableBox result = finished(moov);
  // The first table has grown by four bytes for each of its two entries.
  const uint64_t shift = 20 + moov.size() + 8 - 16;
  EXPECT_EQ(offsetsOf(result, 1), offsetBox({16 + shift, k4GiB - 1 + shift}, true));
  EXPECT_EQ(offsetsOf(result, 2), offsetBox({500 + shift}, false));
}

TEST(FinishedHeader, GrowsATableThatOnlyTheGrowthOfAnotherCarriesPast4GiB) {
  const auto moovWith = [](uint64_t last) {
    return movie(track(1, {16, k4GiB - 1}) + track(2, {last}));
  };
  const uint64_t shift = 20 + moovWith(0).size() - 16;
  // Fits beside a first table as it was, but not beside one that has grown by eight bytes.
  const uint64_t edge = k4GiB - 1 - shift - 7;
  EditableBox grown = finished(moovWith(edge));
  EXPECT_EQ(offsetsOf(grown, 2), offsetBox({edge + shift + 12}, true));
  EXPECT_EQ(offsetsOf(grown, 1), offsetBox({16 + shift + 12, k4GiB - 1 + shift + 12}, true));
  EditableBox kept = finished(moovWith(edge - 1));
  EXPECT_EQ(offsetsOf(kept, 2), offsetBox({k4GiB - 1}, false));
}

TEST(FinishedHeader, KeepsOffsetsOf64Bits) {
  const std::string moov = movie(track(1, {16, k4GiB + 5}, true));
  EditableBox result = finished(moov);
  const uint64_t shift = 20 + moov.size() - 16;
  EXPECT_EQ(offsetsOf(result, 1), offsetBox({16 + shift, k4GiB + 5 + shift}, true));
}

TEST(FinishedHeader, JoinsStretchesOfMedia) {
  const std::string moov = movie(track(1, {120, 1050}));
  const std::vector<MediaStretch> media = {{100, 200}, {1000, 1100}};
  const auto bytes = finishedMovieHeader(bytesOf(moov), {}, 20, media);
  EditableBox result = EditableBox::parse(std::string(bytes.begin(), bytes.end()));
  const uint64_t front = 20 + moov.size();
  EXPECT_EQ(offsetsOf(result, 1), offsetBox({front + 20, front + 150}, false));
}

TEST(FinishedHeader, RefusesChunksOutsideTheMedia) {
  EXPECT_THROW(finished(movie(track(1, {15}))), DamagedBoxes);
  EXPECT_THROW(finished(movie(track(1, {2 * k4GiB}, true))), DamagedBoxes);
  std::string moov = movie(track(1, {16}));
  moov.replace(moov.find("stco") + 8, 4, bigEndian(0xffffffff, 4));
  EXPECT_THROW(finished(moov), DamagedBoxes);
}

TEST(FinishedHeader, RefusesBoxesWithinBoxesOfTheirKind) {
  std::string nested = "";
  for (int i = 0; i < 3000; ++i)
    nested = box("trak", nested);
  EXPECT_THROW(finished(movie(nested)), DamagedBoxes);
}

/// A real film whose media begin just below 4 GiB, in files that are nearly all hole.
TEST(FinishedHeader, PlaysOnPast4GiB) {
  const TemporaryFolder folder;
  const std::filesystem::path film = folder / "film.mov", out = folder / "out.mov";
  runFfmpeg({"-f", "lavfi", "-i", "testsrc2=s=64x48:r=10:d=2", "-f", "lavfi", "-i", "sine=d=2",
             "-c:v", "libx264", "-pix_fmt", "yuv420p", "-c:a", "aac", film.string()});
  const std::string whole = readFile(film);
  const size_t media = whole.find("mdat") - 4;
  EditableBox header = movieHeaderOf(film);
  const std::string samples = whole.substr(media + 8, whole.find("moov") - 4 - media - 8);
  // As if a hole had stood between the header of the media box and the samples.
  const uint64_t hole = k4GiB - media - 8 - samples.size();
  for (const uint32_t id : {1u, 2u}) {
    std::string& table =
        trackOf(header, id).child("mdia").child("minf").child("stbl").child("stco").payload;
    for (size_t at = 8; at < table.size(); at += 4) {
      const std::string old = table.substr(at, 4);
      uint64_t offset = 0;
      for (const char c : old)
        offset = offset << 8 | static_cast<unsigned char>(c);
      table.replace(at, 4, bigEndian(offset + hole, 4));
    }
  }
  const std::string type = whole.substr(0, whole.find("wide") - 4);
  const MediaStretch stretch{media + 8 + hole, k4GiB};
  // About half of the samples come to stand past 4 GiB.
  const uint64_t place = k4GiB - samples.size() / 2;
  const auto finishedHeader =
      finishedMovieHeader(bytesOf(header.bytes()), {}, place, {&stretch, 1});

  // The header in front of the samples, both behind a hole.
  writeFile(out, type + bigEndian(1, 4) + "free" + bigEndian(place - type.size(), 8));
  std::filesystem::resize_file(out, place);
  std::ofstream stream(out, std::ios::binary | std::ios::app);
  stream.write(reinterpret_cast<const char*>(finishedHeader.data()),
               static_cast<std::streamsize>(finishedHeader.size()));
  stream << samples;
  stream.close();
  ASSERT_GT(std::filesystem::file_size(out), k4GiB);

  for (const char* which : {"v:0", "a:0"}) {
    const auto packets = [which](const std::filesystem::path& path) {
      return runFfprobe({"-select_streams", which, "-show_packets", "-show_data_hash", "md5",
                         "-show_entries", "packet=pts,dts,size,data_hash", "-of", "csv=p=0",
                         path.string()});
    };
    EXPECT_EQ(packets(out), packets(film));
  }
  EXPECT_NE(movieHeaderOf(out).bytes().find("co64"), std::string::npos);
}

TEST(RescaledTicks, RoundsToTheNearest) {
  EXPECT_EQ(rescaledTicks(1, 2, 1), 1);
  EXPECT_EQ(rescaledTicks(1, 3, 1), 0);
  EXPECT_EQ(rescaledTicks(2, 3, 1), 1);
  EXPECT_EQ(rescaledTicks(1001, 30000, 600), 20);
  EXPECT_EQ(rescaledTicks(0, 600, 90000), 0);
}

TEST(RescaledTicks, KeepsToItsRange) {
  constexpr int64_t kMost = std::numeric_limits<int64_t>::max();
  EXPECT_EQ(rescaledTicks(kMost, 1, 1), kMost);
  EXPECT_EQ(rescaledTicks(kMost, 1, 2), kMost);
  EXPECT_EQ(rescaledTicks(kMost, 0xffffffff, 0xffffffff), kMost);
  EXPECT_EQ(rescaledTicks(kMost, 0xffffffff, 1), kMost / 0xffffffff);
}

}  // namespace
}  // namespace vantrel
