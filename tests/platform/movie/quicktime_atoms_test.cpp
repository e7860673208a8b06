#include "platform/movie/quicktime_atoms.h"

#include <gtest/gtest.h>

#include <system_error>

#include "support/movie_maker.h"
#include "support/quicktime_maker.h"
#include "support/temporary_folder.h"

namespace vantrel {
namespace {

using namespace testing;

std::vector<uint8_t> bytesOf(const std::string& text) {
  return {text.begin(), text.end()};
}

/// Ten frames a second for one second, with a German sound track.
std::vector<std::string> filmArguments() {
  return {"-f",
          "lavfi",
          "-i",
          "testsrc2=s=64x48:r=10:d=1",
          "-f",
          "lavfi",
          "-i",
          "sine=d=1",
          "-c:v",
          "libx264",
          "-preset",
          "ultrafast",
          "-pix_fmt",
          "yuv420p",
          "-c:a",
          "aac",
          "-metadata:s:a:0",
          "language=deu",
          "-vf",
          colorFilter("bt709", "bt709", "bt709")};
}

class QuickTimeAtoms : public ::testing::Test {
 protected:
  std::filesystem::path film(const std::string& name, const std::vector<std::string>& more = {}) {
    std::vector<std::string> arguments = filmArguments();
    arguments.insert(arguments.end(), more.begin(), more.end());
    arguments.push_back((m_folder / name).string());
    runFfmpeg(arguments);
    return m_folder / name;
  }

  /// A file of the boxes in `moov` alone.
  std::filesystem::path header(const std::string& contents) {
    const std::filesystem::path path = m_folder / "header.mov";
    writeFile(path, box("ftyp", "qt  ") + box("moov", contents));
    return path;
  }

  TemporaryFolder m_folder;
};

std::string movieHeader(uint32_t timescale, uint32_t duration) {
  return fullBox("mvhd", bigEndian(0, 8) + bigEndian(timescale, 4) + bigEndian(duration, 4) +
                             std::string(80, '\0'));
}

std::string trackHeader(uint32_t id, uint32_t flags = 0xf) {
  return fullBox("tkhd",
                 bigEndian(0, 8) + bigEndian(id, 4) + bigEndian(0, 4) + bigEndian(500, 4) +
                     std::string(60, '\0'),
                 flags);
}

std::string mediaHeader(uint32_t timescale) {
  return fullBox("mdhd", bigEndian(0, 8) + bigEndian(timescale, 4) + bigEndian(700, 4) +
                             bigEndian(0x15c7, 2) + bigEndian(0, 2));
}

std::string handler(const std::string& type) {
  return fullBox("hdlr", "mhlr" + type + std::string(13, '\0'));
}

/// A track of one description, with `more` beside its media.
std::string track(const std::string& more = {}, const std::string& description = {},
                  const std::string& moreMedia = {}) {
  const std::string stsd = fullBox("stsd", bigEndian(1, 4) + description);
  return box("trak", trackHeader(1) + more +
                         box("mdia", mediaHeader(600) + moreMedia + handler("vide") +
                                         box("minf", box("stbl", stsd))));
}

std::string videoDescription(const std::string& boxes) {
  return box("avc1", std::string(78, '\0') + boxes);
}

TEST_F(QuickTimeAtoms, ReadsAMovieOfTwoTracks) {
  const auto movie = QuickTimeMovie::read(film("film.mov", {"-movie_timescale", "600"}));
  ASSERT_TRUE(movie);
  EXPECT_EQ(movie->timescale, 600u);
  EXPECT_NEAR(static_cast<double>(movie->duration), 600, 30);
  EXPECT_FALSE(movie->isFragmented);
  ASSERT_EQ(movie->tracks.size(), 2u);
  const QuickTimeTrack& video = movie->tracks[0];
  EXPECT_EQ(video.trackID, 1u);
  EXPECT_TRUE(video.enabled);
  EXPECT_EQ(video.handler, "vide");
  EXPECT_EQ(video.sampleCount, 10u);
  EXPECT_EQ(video.mediaDuration, video.timescale);
  EXPECT_EQ(video.duration, 600u);
  EXPECT_EQ(video.descriptions, (std::vector<ColorTags>{{1, 1, 1}}));
  EXPECT_FALSE(video.extendedLanguageTag);
  EXPECT_TRUE(video.metadata.empty());
  const QuickTimeTrack& audio = movie->tracks[1];
  EXPECT_EQ(audio.handler, "soun");
  EXPECT_EQ(audio.timescale, 44100u);
  EXPECT_EQ(audio.descriptions, std::vector<ColorTags>(1));
  ASSERT_EQ(audio.edits.size(), 1u);
  EXPECT_EQ(audio.edits[0].mediaTime, 1024);
  EXPECT_EQ(movie->track(2), &audio);
  EXPECT_EQ(movie->track(3), nullptr);
}

TEST_F(QuickTimeAtoms, ReadsEveryFileOfTheFamily) {
  for (const char* name : {"film.mp4", "film.m4v", "film.3gp"}) {
    const auto movie = QuickTimeMovie::read(film(name));
    ASSERT_TRUE(movie) << name;
    ASSERT_EQ(movie->tracks.size(), 2u) << name;
    EXPECT_EQ(movie->tracks[0].sampleCount, 10u) << name;
    // Five bits a letter, counted from 0x60: d, e, u.
    EXPECT_EQ(movie->tracks[1].language, 0x10b5) << name;
  }
}

TEST_F(QuickTimeAtoms, FindsTheMovieHeaderInFront) {
  const auto movie = QuickTimeMovie::read(film("film.mp4", {"-movflags", "faststart"}));
  ASSERT_TRUE(movie);
  EXPECT_EQ(movie->tracks.size(), 2u);
}

TEST_F(QuickTimeAtoms, ReadsAFragmentedMovie) {
  const auto movie =
      QuickTimeMovie::read(film("film.mp4", {"-movflags", "frag_keyframe+empty_moov", "-g", "5"}));
  ASSERT_TRUE(movie);
  EXPECT_TRUE(movie->isFragmented);
  ASSERT_EQ(movie->tracks.size(), 2u);
  EXPECT_EQ(movie->tracks[0].sampleCount, 0u);
}

TEST_F(QuickTimeAtoms, TakesTheLongerDurationOfAFragmentedMovie) {
  const std::string extends = box("mvex", fullBox("mehd", bigEndian(90000, 4)));
  const auto movie = QuickTimeMovie::read(header(movieHeader(600, 10) + extends));
  ASSERT_TRUE(movie);
  EXPECT_TRUE(movie->isFragmented);
  EXPECT_EQ(movie->duration, 90000u);
}

TEST_F(QuickTimeAtoms, LeavesFilesOfOtherKindsAlone) {
  EXPECT_FALSE(QuickTimeMovie::read(film("film.mkv")));
  for (const std::string& bytes :
       {std::string(), std::string("moov"), std::string(100, '\0'), std::string(100, '\xff'),
        box("ftyp", "qt  "), box("ftyp", "heic") + box("meta", "")}) {
    writeFile(m_folder / "other.mov", bytes);
    EXPECT_FALSE(QuickTimeMovie::read(m_folder / "other.mov"));
  }
}

TEST_F(QuickTimeAtoms, ReportsAFileThatCannotBeRead) {
  EXPECT_THROW(QuickTimeMovie::read(m_folder / "missing.mov"), std::system_error);
  EXPECT_THROW(QuickTimeMovie::read(m_folder.path()), std::system_error);
}

TEST_F(QuickTimeAtoms, ReadsHeadersOf64Bits) {
  const std::string mvhd = fullBox(
      "mvhd", bigEndian(0, 16) + bigEndian(600, 4) + bigEndian(uint64_t{1} << 40, 8), 1u << 24);
  const std::string tkhd = fullBox("tkhd",
                                   bigEndian(0, 16) + bigEndian(7, 4) + bigEndian(0, 4) +
                                       bigEndian(uint64_t{1} << 41, 8) + std::string(60, '\0'),
                                   1u << 24);
  const std::string mdhd = fullBox(
      "mdhd",
      bigEndian(0, 16) + bigEndian(1000, 4) + bigEndian(uint64_t{1} << 42, 8) + bigEndian(0, 4),
      1u << 24);
  const std::string elst = fullBox("elst",
                                   bigEndian(2, 4) + bigEndian(5, 8) + bigEndian(~0ull, 8) +
                                       bigEndian(0x10000, 4) + bigEndian(uint64_t{1} << 40, 8) +
                                       bigEndian(uint64_t{1} << 33, 8) + bigEndian(0x8000, 4),
                                   1u << 24);
  const auto movie = QuickTimeMovie::read(
      header(mvhd + box("trak", tkhd + box("edts", elst) + box("mdia", mdhd + handler("soun")))));
  ASSERT_TRUE(movie);
  EXPECT_EQ(movie->duration, uint64_t{1} << 40);
  const QuickTimeTrack* read = movie->track(7);
  ASSERT_TRUE(read);
  EXPECT_FALSE(read->enabled);
  EXPECT_EQ(read->duration, uint64_t{1} << 41);
  EXPECT_EQ(read->mediaDuration, uint64_t{1} << 42);
  const std::vector<QuickTimeEdit> expected = {{5, -1, 0x10000},
                                               {int64_t{1} << 40, int64_t{1} << 33, 0x8000}};
  EXPECT_EQ(read->edits, expected);
}

TEST_F(QuickTimeAtoms, ReadsBoxesWith64BitSizesAndTheLastWithNone) {
  const std::string contents = movieHeader(600, 10) + track();
  const std::string wide = bigEndian(1, 4) + "mdat" + bigEndian(20, 8) + "data";
  writeFile(m_folder / "film.mov", wide + bigEndian(0, 4) + "moov" + contents);
  const auto movie = QuickTimeMovie::read(m_folder / "film.mov");
  ASSERT_TRUE(movie);
  EXPECT_EQ(movie->tracks.size(), 1u);
}

TEST_F(QuickTimeAtoms, ReadsEmptyEdits) {
  const std::string list =
      fullBox("elst", bigEndian(2, 4) + bigEndian(30, 4) + bigEndian(0xffffffff, 4) +
                          bigEndian(0x10000, 4) + bigEndian(40, 4) + bigEndian(8, 4) +
                          bigEndian(0x10000, 4));
  const auto movie = QuickTimeMovie::read(header(movieHeader(600, 10) + track(box("edts", list))));
  ASSERT_TRUE(movie && movie->tracks.size() == 1);
  EXPECT_EQ(movie->tracks[0].edits, (std::vector<QuickTimeEdit>{{30, -1}, {40, 8}}));
}

TEST_F(QuickTimeAtoms, ReadsTheEnabledFlagAndTheExtendedLanguage) {
  const std::filesystem::path path = film("film.mov");
  setTrackEnabled(path, 2, false);
  setExtendedLanguage(path, 2, "de-AT");
  const auto movie = QuickTimeMovie::read(path);
  ASSERT_TRUE(movie && movie->tracks.size() == 2);
  EXPECT_TRUE(movie->tracks[0].enabled);
  EXPECT_FALSE(movie->tracks[1].enabled);
  EXPECT_EQ(movie->tracks[1].extendedLanguageTag, "de-AT");
}

TEST_F(QuickTimeAtoms, ReadsTheColourOfEachDescription) {
  const auto tags = [](int primaries, int transfer, int matrix) {
    return bigEndian(static_cast<uint64_t>(primaries), 2) +
           bigEndian(static_cast<uint64_t>(transfer), 2) +
           bigEndian(static_cast<uint64_t>(matrix), 2);
  };
  const std::string four = videoDescription(box("colr", "nclc" + tags(1, 1, 6))) +
                           videoDescription(box("colr", "prof" + std::string(20, 'x')) +
                                            box("colr", "nclx" + tags(9, 18, 9) + '\0')) +
                           videoDescription(box("pasp", bigEndian(1, 8))) +
                           videoDescription(box("colr", "nclc" + bigEndian(1, 2)));
  const std::string stsd = fullBox("stsd", bigEndian(4, 4) + four);
  const auto movie = QuickTimeMovie::read(
      header(movieHeader(600, 10) +
             box("trak", trackHeader(1) + box("mdia", mediaHeader(600) + handler("vide") +
                                                          box("minf", box("stbl", stsd))))));
  ASSERT_TRUE(movie && movie->tracks.size() == 1);
  EXPECT_EQ(movie->tracks[0].descriptions,
            (std::vector<ColorTags>{{1, 1, 6}, {9, 18, 9}, {2, 2, 2}, {2, 2, 2}}));
}

TEST_F(QuickTimeAtoms, ReadsADensityRecordAsNamedNumbers) {
  const std::filesystem::path path = film("film.mov");
  addToTrack(
      path, 1,
      metadataBox({{"com.apple.quicktime.title", "Kite", 1}, densityItem(2880, 1800, 1440, 900)}));
  const auto movie = QuickTimeMovie::read(path);
  ASSERT_TRUE(movie);
  const MetadataDictionary density = {
      {"widthPixels", 2880}, {"heightPixels", 1800}, {"widthPoints", 1440}, {"heightPoints", 900}};
  EXPECT_EQ(movie->tracks[0].items,
            (std::vector<MovieMetadataItem>{{"mdta/com.apple.quicktime.title", 1, bytesOf("Kite")},
                                            {MovieMetadataItem::kPixelDensity, 30, density}}));
}

TEST_F(QuickTimeAtoms, KeepsADensityRecordOfAnotherLengthAsBytes) {
  const std::filesystem::path path = film("film.mov");
  MadeItem shorter = densityItem(1, 2, 3, 4), longer = shorter;
  shorter.value.pop_back();
  longer.value += 'x';
  addToTrack(path, 1, metadataBox({shorter, longer}));
  const auto movie = QuickTimeMovie::read(path);
  ASSERT_TRUE(movie);
  EXPECT_EQ(movie->tracks[0].items,
            (std::vector<MovieMetadataItem>{
                {MovieMetadataItem::kPixelDensity, 30, bytesOf(shorter.value)},
                {MovieMetadataItem::kPixelDensity, 30, bytesOf(longer.value)}}));
}

TEST_F(QuickTimeAtoms, GivesMetadataInTheFormOfMoviesWhereverItStood) {
  const std::vector<MadeItem> items = {densityItem(200, 100, 100, 50)};
  for (const bool isFullBox : {false, true}) {
    const auto movie =
        QuickTimeMovie::read(header(movieHeader(600, 10) + track(metadataBox(items, isFullBox))));
    ASSERT_TRUE(movie && movie->tracks.size() == 1);
    EXPECT_EQ(movie->tracks[0].metadata, bytesOf(metadataBox(items)));
    EXPECT_EQ(movie->tracks[0].items.size(), 1u);
  }
}

TEST_F(QuickTimeAtoms, GivesUserDataWholeWithItsMetadataInTheSameForm) {
  const std::string name = box("name", "Left"), end = bigEndian(0, 4);
  const auto movie = QuickTimeMovie::read(header(
      movieHeader(600, 10) + track(box("udta", name + metadataBox({{"k", "v"}}, true) + end))));
  ASSERT_TRUE(movie && movie->tracks.size() == 1);
  EXPECT_EQ(movie->tracks[0].userData,
            bytesOf(box("udta", name + metadataBox({{"k", "v"}}) + end)));
}

TEST_F(QuickTimeAtoms, SkipsKeysOfOtherNamespacesAndItemsWithoutKey) {
  std::string meta = metadataBox({{"a", "1", 1, "udta"}, {"b", "2"}});
  const auto movie = QuickTimeMovie::read(header(movieHeader(600, 10) + track(meta)));
  ASSERT_TRUE(movie && movie->tracks.size() == 1);
  EXPECT_EQ(movie->tracks[0].items, (std::vector<MovieMetadataItem>{{"mdta/b", 1, bytesOf("2")}}));
}

TEST_F(QuickTimeAtoms, WritesMetadataThatItReadsBack) {
  const std::vector<MovieMetadataItem> items = {
      {MovieMetadataItem::kPixelDensity, 30,
       MetadataDictionary{{"widthPixels", 1000},
                          {"heightPixels", 600},
                          {"widthPoints", 500},
                          {"heightPoints", 300}}},
      {"mdta/note", 1, bytesOf("hello")},
      {"mdta/nothing", std::nullopt, std::vector<uint8_t>{}}};
  const std::vector<uint8_t> meta = quickTimeMetadataBox(items);
  const auto movie = QuickTimeMovie::read(
      header(movieHeader(600, 10) + track(std::string(meta.begin(), meta.end()))));
  ASSERT_TRUE(movie && movie->tracks.size() == 1);
  EXPECT_EQ(movie->tracks[0].metadata, meta);
  EXPECT_EQ(movie->tracks[0].items, items);
  EXPECT_TRUE(quickTimeMetadataBox({}).empty());
}

TEST_F(QuickTimeAtoms, WritesDensityNumbersThatFit) {
  const MetadataDictionary odd = {
      {"heightPoints", 1e12}, {"widthPixels", -3}, {"widthPoints", 2.9}};
  const std::vector<uint8_t> meta =
      quickTimeMetadataBox({{MovieMetadataItem::kPixelDensity, std::nullopt, odd}});
  const auto movie = QuickTimeMovie::read(
      header(movieHeader(600, 10) + track(std::string(meta.begin(), meta.end()))));
  ASSERT_TRUE(movie && movie->tracks.size() == 1);
  const MetadataDictionary expected = {
      {"widthPixels", 0}, {"heightPixels", 0}, {"widthPoints", 2}, {"heightPoints", 0xffffffff}};
  EXPECT_EQ(movie->tracks[0].items,
            (std::vector<MovieMetadataItem>{{MovieMetadataItem::kPixelDensity, 30, expected}}));
}

TEST_F(QuickTimeAtoms, KnowsNoMovieWithoutAPlainHeader) {
  EXPECT_FALSE(QuickTimeMovie::read(header(box("cmov", box("dcom", "zlib")))));
  EXPECT_FALSE(QuickTimeMovie::read(header(track())));
  EXPECT_FALSE(QuickTimeMovie::read(header(movieHeader(0, 10) + track())));
  EXPECT_FALSE(QuickTimeMovie::read(header(box("mvhd", "short"))));
}

TEST_F(QuickTimeAtoms, TakesDurationsThatAreNotKnownForNone) {
  const auto movie = QuickTimeMovie::read(header(movieHeader(600, 0xffffffff)));
  ASSERT_TRUE(movie);
  EXPECT_EQ(movie->duration, 0u);
}

TEST_F(QuickTimeAtoms, TakesWhatFitsOfCountsThatExceedTheirBox) {
  const std::string list = fullBox("elst", bigEndian(0xffffffff, 4) + bigEndian(30, 4) +
                                               bigEndian(0, 4) + bigEndian(0x10000, 4));
  const std::string meta = metadataBox({{"k", "v"}});
  std::string keys = meta;
  keys.replace(keys.find("keys") + 8, 4, bigEndian(0xffffffff, 4));
  const auto movie = QuickTimeMovie::read(
      header(movieHeader(600, 10) + track(box("edts", list) + keys, videoDescription({}))));
  ASSERT_TRUE(movie && movie->tracks.size() == 1);
  EXPECT_EQ(movie->tracks[0].edits.size(), 1u);
  EXPECT_EQ(movie->tracks[0].items.size(), 1u);
  EXPECT_EQ(movie->tracks[0].descriptions.size(), 1u);
}

TEST_F(QuickTimeAtoms, RepeatsALongKeyOnlyWithinReason) {
  std::string values;
  for (int i = 0; i < 10000; ++i)
    values += box("data", bigEndian(1, 8));
  const std::string key(size_t{1} << 20, 'k');
  const std::string meta =
      box("meta", fullBox("hdlr", bigEndian(0, 4) + "mdta" + std::string(13, '\0')) +
                      fullBox("keys", bigEndian(1, 4) + box("mdta", key)) +
                      box("ilst", box(bigEndian(1, 4), values)));
  const auto movie = QuickTimeMovie::read(header(movieHeader(600, 10) + track(meta)));
  ASSERT_TRUE(movie && movie->tracks.size() == 1);
  EXPECT_GT(movie->tracks[0].items.size(), 0u);
  EXPECT_LT(movie->tracks[0].items.size(), 8u);
}

TEST_F(QuickTimeAtoms, ReadsNoMoreTracksThanMakeSense) {
  std::string tracks;
  for (int i = 0; i < 5000; ++i)
    tracks += track();
  const auto movie = QuickTimeMovie::read(header(movieHeader(600, 10) + tracks));
  ASSERT_TRUE(movie);
  EXPECT_EQ(movie->tracks.size(), 1024u);
}

TEST_F(QuickTimeAtoms, DropsEditListsThatMakeNoSense) {
  const std::string list = fullBox("elst", bigEndian(1, 4) + bigEndian(30, 4) +
                                               bigEndian(0x80000000, 4) + bigEndian(0x10000, 4));
  const auto movie = QuickTimeMovie::read(header(movieHeader(600, 10) + track(box("edts", list))));
  ASSERT_TRUE(movie && movie->tracks.size() == 1);
  EXPECT_TRUE(movie->tracks[0].edits.empty());
}

TEST_F(QuickTimeAtoms, LoadsNoMoreThanAHeaderNeeds) {
  const std::filesystem::path path = m_folder / "sparse.mov";
  const uint64_t huge = uint64_t{3} << 32;
  const auto wide = [](const char* type, uint64_t payload) {
    return bigEndian(1, 4) + type + bigEndian(payload + 16, 8);
  };
  const std::string front = trackHeader(1) + box("mdia", mediaHeader(600) + handler("vide"));
  const std::string trak = wide("trak", front.size() + 16 + huge) + front + wide("udta", huge);
  const std::string mvhd = movieHeader(600, 10);
  writeFile(path, wide("moov", mvhd.size() + trak.size() + huge) + mvhd + trak);
  std::filesystem::resize_file(path, std::filesystem::file_size(path) + huge);
  const auto movie = QuickTimeMovie::read(path);
  ASSERT_TRUE(movie && movie->tracks.size() == 1);
  EXPECT_TRUE(movie->tracks[0].userData.empty());
}

}  // namespace
}  // namespace vantrel
