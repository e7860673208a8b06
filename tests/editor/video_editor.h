#pragma once

#include <gtest/gtest.h>

#include <QTest>
#include <memory>
#include <string>
#include <vector>

#include "editor/media_loader.h"
#include "support/fake_player.h"
#include "support/film_folder.h"

namespace vantrel::testing {

/// An editor state without a window, whose videos get players that play nothing, and small films
/// that are made once: plain.mp4, odd.mp4, hdr.mov and others.
class VideoEditor : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    s_films = std::make_unique<FilmFolder>();
    s_films->make("plain.mp4");
    s_films->make("odd.mp4", {"-vf", "scale=161:121", "-pix_fmt", "yuv444p", "-an"});
    s_films->makeHdr("hdr.mov", "smpte2084");
    s_films->make("sound.m4a", {"-vn"});
    std::filesystem::copy_file(*s_films / "plain.mp4", *s_films / "nameless");
    writeFile(*s_films / "broken.mov", "no movie at all");
    writeFile(*s_films / "notes.txt", "Only words.");
  }
  static void TearDownTestSuite() { s_films.reset(); }

  static std::filesystem::path film(const char* name) { return *s_films / name; }

  bool waitIdle() {
    return QTest::qWaitFor([this] { return !state.busy(); });
  }
  void load(const std::filesystem::path& path) {
    loader.loadMedia(path);
    ASSERT_TRUE(state.busy());
    ASSERT_TRUE(waitIdle());
  }
  void open(const char* name) {
    load(film(name));
    ASSERT_TRUE(state.loaded());
    ASSERT_EQ(state.file()->path, film(name));
  }
  FakePlayer& player() { return *static_cast<FakePlayer*>(state.player()); }

  static inline std::unique_ptr<FilmFolder> s_films;
  /// The movies that players were asked for.
  std::vector<std::filesystem::path> played;
  EditorState state{[this](const Movie& movie) {
    played.push_back(movie.path());
    return std::make_unique<FakePlayer>();
  }};
  MediaLoader loader{state};
};

}  // namespace vantrel::testing
