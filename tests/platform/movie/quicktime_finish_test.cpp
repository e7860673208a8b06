#include "platform/movie/quicktime_finish.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <system_error>

#include "base/cancelled.h"
#include "platform/movie/movie_error.h"
#include "support/movie_maker.h"
#include "support/ordinary_user.h"
#include "support/quicktime_maker.h"
#include "support/temporary_folder.h"
#include "support/write_failures.h"

namespace vantrel {
namespace {

using namespace testing;

/// One line for each packet of a stream: times in ticks, size, what it holds.
std::string packetsOf(const std::filesystem::path& path, const std::string& stream) {
  return runFfprobe({"-ignore_editlist", "1", "-select_streams", stream, "-show_packets",
                     "-show_data_hash", "md5", "-show_entries", "packet=pts,dts,size,data_hash",
                     "-of", "csv=p=0", path.string()});
}

/// What ffprobe says of one entry, such as "stream=duration_ts".
std::string entryOf(const std::filesystem::path& path, const std::string& stream,
                    const std::string& entry) {
  std::string text = runFfprobe({"-select_streams", stream, "-show_entries", entry, "-of",
                                 "default=nw=1:nk=1", path.string()});
  return text.substr(0, text.find('\n'));
}

/// The types of the boxes of the file itself, in their order.
std::vector<std::string> boxesOf(const std::filesystem::path& path) {
  const std::string bytes = readFile(path);
  std::vector<std::string> types;
  for (size_t at = 0; at + 8 <= bytes.size();) {
    types.push_back(bytes.substr(at + 4, 4));
    uint32_t size = 0;
    for (size_t i = 0; i < 4; ++i)
      size = size << 8 | static_cast<unsigned char>(bytes[at + i]);
    at += size;
  }
  return types;
}

QuickTimeTrackChange changeOf(uint32_t trackID) {
  QuickTimeTrackChange change;
  change.trackID = trackID;
  return change;
}

class QuickTimeFinishTest : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_folder = std::make_unique<TemporaryFolder>();
    make("film.mov", {"-bf", "0"});
    make("reordered.mov", {"-bf", "2", "-g", "30", "-metadata", "title=Kite"});
  }
  static void TearDownTestSuite() { s_folder.reset(); }

  /// Twelve frames, one every tenth of a second, with two sound tracks.
  static void make(const std::string& name, const std::vector<std::string>& more) {
    std::vector<std::string> arguments = {"-f",
                                          "lavfi",
                                          "-i",
                                          "testsrc2=s=64x48:r=10:d=1.2",
                                          "-f",
                                          "lavfi",
                                          "-i",
                                          "sine=d=1.2",
                                          "-map",
                                          "0:v",
                                          "-map",
                                          "1:a",
                                          "-map",
                                          "1:a",
                                          "-c:v",
                                          "libx264",
                                          "-x264-params",
                                          "scenecut=0:b-adapt=0",
                                          "-pix_fmt",
                                          "yuv420p",
                                          "-c:a",
                                          "aac",
                                          "-movie_timescale",
                                          "1000",
                                          "-video_track_timescale",
                                          "600"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    arguments.push_back((*s_folder / name).string());
    runFfmpeg(arguments);
  }

  /// The finished film; under the same name for each test.
  std::filesystem::path finish(const QuickTimeFinish& change,
                               const std::string& name = "film.mov") {
    finishQuickTimeMovie(*s_folder / name, m_folder / "out.mov", change);
    return m_folder / "out.mov";
  }

  static inline std::unique_ptr<TemporaryFolder> s_folder;
  TemporaryFolder m_folder;
};

TEST_F(QuickTimeFinishTest, PutsTheHeaderInFrontAndKeepsEveryPacket) {
  for (const char* name : {"film.mov", "reordered.mov"}) {
    const std::filesystem::path out = finish({}, name);
    EXPECT_EQ(boxesOf(out), (std::vector<std::string>{"ftyp", "moov", "mdat"}));
    for (const char* stream : {"v:0", "a:0", "a:1"}) {
      const std::string packets = packetsOf(out, stream);
      EXPECT_GT(packets.size(), 300u);
      EXPECT_EQ(packets, packetsOf(*s_folder / name, stream)) << name << stream;
    }
  }
}

TEST_F(QuickTimeFinishTest, KeepsTracksThatAreNotNamed) {
  const auto before = QuickTimeMovie::read(*s_folder / "film.mov");
  const auto after = QuickTimeMovie::read(finish({}));
  ASSERT_TRUE(before && after);
  EXPECT_EQ(after->timescale, before->timescale);
  EXPECT_EQ(after->duration, before->duration);
  ASSERT_EQ(after->tracks.size(), 3u);
  for (size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(after->tracks[i].edits, before->tracks[i].edits);
    EXPECT_EQ(after->tracks[i].duration, before->tracks[i].duration);
    EXPECT_EQ(after->tracks[i].mediaDuration, before->tracks[i].mediaDuration);
    EXPECT_EQ(after->tracks[i].enabled, before->tracks[i].enabled);
  }
}

TEST_F(QuickTimeFinishTest, DescribesTracksAsTold) {
  const std::string userData = box("udta", box("name", "Left"));
  const std::string metadata = metadataBox({{"com.example.note", "hello"}});
  QuickTimeTrackChange change = changeOf(2);
  change.enabled = false;
  change.language = 0x10b5;  // deu
  change.extendedLanguageTag = "de-AT";
  change.userData.assign(userData.begin(), userData.end());
  change.metadata.assign(metadata.begin(), metadata.end());
  const std::filesystem::path out = finish({0, {change}});
  const auto movie = QuickTimeMovie::read(out);
  ASSERT_TRUE(movie);
  const QuickTimeTrack* track = movie->track(2);
  ASSERT_TRUE(track);
  EXPECT_FALSE(track->enabled);
  EXPECT_TRUE(movie->track(1)->enabled);
  EXPECT_EQ(track->extendedLanguageTag, "de-AT");
  EXPECT_EQ(track->userData, change.userData);
  EXPECT_EQ(track->metadata, change.metadata);
  EXPECT_EQ(entryOf(out, "a:0", "stream_tags=language"), "deu");
  EXPECT_EQ(entryOf(out, "a:0", "stream_disposition=default"), "0");
  EXPECT_EQ(packetsOf(out, "a:0"), packetsOf(*s_folder / "film.mov", "a:0"));
}

TEST_F(QuickTimeFinishTest, TakesAwayWhatATrackIsNotToHave) {
  const std::filesystem::path source = m_folder / "source.mov";
  std::filesystem::copy(*s_folder / "film.mov", source);
  setExtendedLanguage(source, 2, "de-AT");
  addToTrack(source, 2, box("udta", box("name", "Left")));
  addToTrack(source, 2, metadataBox({{"com.example.note", "hello"}}));
  finishQuickTimeMovie(source, m_folder / "out.mov", {0, {changeOf(2)}});
  const auto movie = QuickTimeMovie::read(m_folder / "out.mov");
  ASSERT_TRUE(movie && movie->track(2));
  EXPECT_FALSE(movie->track(2)->extendedLanguageTag);
  EXPECT_TRUE(movie->track(2)->userData.empty());
  EXPECT_TRUE(movie->track(2)->metadata.empty());
}

TEST_F(QuickTimeFinishTest, CarriesNeitherMetadataOfTheMovieNorOldFrameSizes) {
  const std::filesystem::path source = m_folder / "source.mov";
  std::filesystem::copy(*s_folder / "reordered.mov", source);
  addToTrack(source, 1,
             box("tapt", fullBox("clef", bigEndian(64 << 16, 4) + bigEndian(48 << 16, 4))));
  editMovieHeader(source, [](EditableBox& moov) {
    moov.children.push_back(EditableBox::parse(metadataBox({{"com.example.note", "hello"}})));
  });
  ASSERT_EQ(entryOf(source, "v:0", "format_tags=title"), "Kite");
  finishQuickTimeMovie(source, m_folder / "out.mov", {});
  EditableBox moov = movieHeaderOf(m_folder / "out.mov");
  EXPECT_FALSE(moov.has("udta"));
  EXPECT_FALSE(moov.has("meta"));
  EXPECT_FALSE(trackOf(moov, 1).has("tapt"));
  EXPECT_EQ(entryOf(m_folder / "out.mov", "v:0", "format_tags=title"), "");
  EXPECT_EQ(entryOf(m_folder / "out.mov", "v:0", "format_tags=encoder"), "");
}

TEST_F(QuickTimeFinishTest, ReplacesEditsAndCountsTheirLength) {
  QuickTimeTrackChange change = changeOf(1);
  change.edits = {{250, -1}, {1000, 60}};
  const auto movie = QuickTimeMovie::read(finish({0, {change}}));
  ASSERT_TRUE(movie && movie->track(1));
  EXPECT_EQ(movie->track(1)->edits, *change.edits);
  EXPECT_EQ(movie->track(1)->duration, 1250u);
  EXPECT_EQ(movie->duration, 1250u);
}

TEST_F(QuickTimeFinishTest, WritesLongEditsIn64Bits) {
  QuickTimeTrackChange change = changeOf(2);
  change.edits = {{int64_t{1} << 33, -1}, {7, int64_t{1} << 32}};
  const auto movie = QuickTimeMovie::read(finish({0, {change}}));
  ASSERT_TRUE(movie && movie->track(2));
  EXPECT_EQ(movie->track(2)->edits, *change.edits);
  EXPECT_EQ(movie->track(2)->duration, (uint64_t{1} << 33) + 7);
  EXPECT_EQ(movie->duration, (uint64_t{1} << 33) + 7);
}

TEST_F(QuickTimeFinishTest, ShowsAllOfATrackThatIsToHaveNoEdits) {
  QuickTimeTrackChange change = changeOf(1);
  change.edits.emplace();
  const auto movie = QuickTimeMovie::read(finish({0, {change}}));
  ASSERT_TRUE(movie && movie->track(1));
  EXPECT_TRUE(movie->track(1)->edits.empty());
  EXPECT_EQ(movie->track(1)->mediaDuration, 720u);
  EXPECT_EQ(movie->track(1)->duration, 1200u);
}

TEST_F(QuickTimeFinishTest, EndsTheLastSampleWhereTold) {
  for (const int64_t end : {660 + 1, 720, 720 + 864}) {
    QuickTimeTrackChange change = changeOf(1);
    change.mediaEnd = end;
    const std::filesystem::path out = finish({600, {change}});
    const auto movie = QuickTimeMovie::read(out);
    ASSERT_TRUE(movie && movie->track(1));
    const auto ticks = static_cast<uint64_t>(end);
    EXPECT_EQ(movie->track(1)->mediaDuration, ticks);
    EXPECT_EQ(movie->track(1)->duration, ticks);
    EXPECT_EQ(movie->track(1)->edits, (std::vector<QuickTimeEdit>{{end, 0}}));
    EXPECT_EQ(movie->duration, std::max<uint64_t>(ticks, movie->track(2)->duration));
    const std::string durations = runFfprobe({"-select_streams", "v:0", "-show_entries",
                                              "packet=duration", "-of", "csv=p=0", out.string()});
    std::string expected;
    for (int i = 0; i < 11; ++i)
      expected += "60\n";
    EXPECT_EQ(durations, expected + std::to_string(end - 660) + "\n");
    EXPECT_EQ(packetsOf(out, "v:0"), packetsOf(*s_folder / "film.mov", "v:0"));
  }
}

TEST_F(QuickTimeFinishTest, EndsReorderedSamplesOnTheLineOfShownTimes) {
  const auto before = QuickTimeMovie::read(*s_folder / "reordered.mov");
  ASSERT_TRUE(before && before->track(1) && before->track(1)->edits.size() == 1);
  const int64_t first = before->track(1)->edits[0].mediaTime;
  ASSERT_GT(first, 0);
  QuickTimeTrackChange change = changeOf(1);
  change.mediaEnd = first + 720 + 301;
  const std::filesystem::path out = finish({600, {change}}, "reordered.mov");
  const auto movie = QuickTimeMovie::read(out);
  ASSERT_TRUE(movie && movie->track(1));
  EXPECT_EQ(movie->track(1)->mediaDuration, static_cast<uint64_t>(*change.mediaEnd));
  EXPECT_EQ(movie->track(1)->edits, (std::vector<QuickTimeEdit>{{720 + 301, first}}));
  EXPECT_EQ(movie->track(1)->duration, 720u + 301u);
  EXPECT_EQ(packetsOf(out, "v:0"), packetsOf(*s_folder / "reordered.mov", "v:0"));
  EXPECT_EQ(entryOf(out, "v:0", "stream=start_pts"), "0");
}

TEST_F(QuickTimeFinishTest, LetsGivenEditsStandBesideAnEndOfTheMedia) {
  QuickTimeTrackChange change = changeOf(1);
  change.mediaEnd = 900;
  change.edits = {{100, 60}};
  const auto movie = QuickTimeMovie::read(finish({0, {change}}));
  ASSERT_TRUE(movie && movie->track(1));
  EXPECT_EQ(movie->track(1)->edits, *change.edits);
  EXPECT_EQ(movie->track(1)->mediaDuration, 900u);
  EXPECT_EQ(movie->track(1)->duration, 100u);
}

TEST_F(QuickTimeFinishTest, ConvertsDurationsToTheNewTimescale) {
  const std::filesystem::path source = m_folder / "source.mov";
  std::filesystem::copy(*s_folder / "film.mov", source);
  setEdits(source, 1, {{250, -1}, {1101, 60}});
  finishQuickTimeMovie(source, m_folder / "out.mov", {90000, {}});
  const auto movie = QuickTimeMovie::read(m_folder / "out.mov");
  ASSERT_TRUE(movie && movie->track(1));
  EXPECT_EQ(movie->timescale, 90000u);
  EXPECT_EQ(movie->track(1)->edits, (std::vector<QuickTimeEdit>{{22500, -1}, {99090, 60}}));
  EXPECT_EQ(movie->track(1)->duration, 22500u + 99090u);
  EXPECT_EQ(movie->duration, 22500u + 99090u);
}

TEST_F(QuickTimeFinishTest, RefusesWhatMakesNoSense) {
  const std::filesystem::path source = m_folder / "source.mov", out = m_folder / "out.mov";
  const std::string whole = readFile(*s_folder / "film.mov");
  const size_t header = whole.find("moov") - 4;
  const std::vector<std::string> files = {"", whole.substr(0, header),
                                          whole.substr(0, whole.size() - 1), whole.substr(header),
                                          whole.substr(0, header) + box("moov", "")};
  for (const std::string& bytes : files) {
    writeFile(source, bytes);
    EXPECT_THROW(finishQuickTimeMovie(source, out, {}), MovieError) << bytes.size();
  }
  writeFile(source, whole);
  EXPECT_THROW(finishQuickTimeMovie(source, out, {0, {changeOf(9)}}), MovieError);
  QuickTimeTrackChange change = changeOf(1);
  change.userData = {1, 2, 3};
  EXPECT_THROW(finishQuickTimeMovie(source, out, {0, {change}}), MovieError);
  change.userData.clear();
  change.mediaEnd = int64_t{1} << 40;
  EXPECT_THROW(finishQuickTimeMovie(source, out, {0, {change}}), MovieError);
  EXPECT_FALSE(std::filesystem::exists(out));
}

TEST_F(QuickTimeFinishTest, RefusesSampleTimesBeyondAllNumbers) {
  const std::filesystem::path source = m_folder / "source.mov";
  for (const uint32_t runs : {1u, 3u}) {
    std::filesystem::copy(*s_folder / "film.mov", source,
                          std::filesystem::copy_options::overwrite_existing);
    editTrack(source, 1, [runs](EditableBox& trak) {
      std::string times = bigEndian(0, 4) + bigEndian(runs, 4);
      for (uint32_t i = 0; i < runs; ++i)
        times += bigEndian(0xffffffff, 4) + bigEndian(0xffffffff, 4);
      trak.child("mdia").child("minf").child("stbl").child("stts").payload = times;
    });
    QuickTimeTrackChange change = changeOf(1);
    change.mediaEnd = std::numeric_limits<int64_t>::max();
    EXPECT_THROW(finishQuickTimeMovie(source, m_folder / "out.mov", {0, {change}}), MovieError);
  }
}

TEST_F(QuickTimeFinishTest, RefusesAMovieInFragments) {
  make("fragments.mov", {"-g", "5", "-movflags", "frag_keyframe"});
  EXPECT_THROW(finish({}, "fragments.mov"), MovieError);
}

TEST_F(QuickTimeFinishTest, ReportsFilesThatCannotBeReadOrMade) {
  const std::filesystem::path source = *s_folder / "film.mov";
  EXPECT_THROW(finishQuickTimeMovie(m_folder / "missing.mov", m_folder / "out.mov", {}),
               std::system_error);
  EXPECT_THROW(finishQuickTimeMovie(source, m_folder / "missing" / "out.mov", {}),
               std::system_error);
  std::filesystem::create_directory(m_folder / "closed");
  std::filesystem::permissions(m_folder / "closed", std::filesystem::perms(0555));
  std::filesystem::permissions(s_folder->path(), std::filesystem::perms(0755));
  const OrdinaryUser user;
  EXPECT_THROW(finishQuickTimeMovie(source, m_folder / "closed" / "out.mov", {}),
               std::system_error);
}

TEST_F(QuickTimeFinishTest, ReportsAFullDiskInHeaderAndMedia) {
  const auto size = std::filesystem::file_size(*s_folder / "film.mov");
  for (const uint64_t room : {uint64_t{0}, uint64_t{1000}, size / 2, size - 3000}) {
    const FileSizeLimit limit(room);
    try {
      finish({});
      ADD_FAILURE() << room;
    } catch (const std::system_error& error) {
      EXPECT_STREQ(error.what(), "“out.mov” could not be saved: File too large");
    }
  }
}

TEST_F(QuickTimeFinishTest, StopsWhenAsked) {
  // More than a chunk of the copy, so that there is one after the first byte has come out.
  const std::filesystem::path source = m_folder / "long.mov";
  const std::string whole = readFile(*s_folder / "film.mov");
  const size_t media = whole.find("mdat") - 4;
  writeFile(source, whole.substr(0, media) + box("mdat", std::string(size_t{8} << 20, 'x')) +
                        whole.substr(media));
  std::stop_source stop;
  {
    const WatchedPipe pipe(m_folder / "pipe", [&stop] { stop.request_stop(); });
    EXPECT_THROW(finishQuickTimeMovie(source, pipe.path(), {}, stop.get_token()), Cancelled);
  }
  EXPECT_THROW(finishQuickTimeMovie(source, m_folder / "out.mov", {}, stop.get_token()), Cancelled);
  EXPECT_FALSE(std::filesystem::exists(m_folder / "out.mov"));
}

TEST_F(QuickTimeFinishTest, CopiesMediaThatStandApart) {
  const std::filesystem::path source = m_folder / "apart.mov";
  const std::string whole = readFile(*s_folder / "film.mov");
  writeFile(source, whole + box("free", "left over") + box("mdat", std::string(5000, 'x')));
  finishQuickTimeMovie(source, m_folder / "out.mov", {});
  EXPECT_EQ(boxesOf(m_folder / "out.mov"),
            (std::vector<std::string>{"ftyp", "moov", "mdat", "mdat"}));
  for (const char* stream : {"v:0", "a:1"})
    EXPECT_EQ(packetsOf(m_folder / "out.mov", stream), packetsOf(source, stream));
}

}  // namespace
}  // namespace vantrel
