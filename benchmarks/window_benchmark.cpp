// window_benchmark: the editor's window with files, on the screen. Prints JSON.
//
//   turns FILE…           loads each file, exports a crop of it and opens its review: the longest
//                         turns of the main event loop, in milliseconds
//   growth ROUNDS [FILE]  opens and closes a window, with the file, as many times: the memory of
//                         the process after half of the rounds and after all, in bytes

#include <unistd.h>

#include <QApplication>
#include <QJsonDocument>
#include <QJsonObject>
#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "canvas/canvas_scroll_view.h"
#include "canvas/video_canvas_view.h"
#include "editor/application_windows.h"
#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "platform/gl/picture_surface.h"
#include "platform/gl/surface_format.h"
#include "review/image_review_view.h"
#include "review/review_window.h"
#include "support/turn_watch.h"

namespace vantrel::bench {
namespace {

using testing::TurnWatch;

QJsonObject taken(TurnWatch& watch) {
  const testing::Turn turn = std::exchange(watch, {}).longest();
  return {{QStringLiteral("wall"), turn.wall}, {QStringLiteral("processor"), turn.processor}};
}

void await(TurnWatch& watch, const std::function<bool()>& done) {
  if (!watch.waitFor(done)) throw std::runtime_error("the program does not get there");
}

bool isShown(EditorWindow& editor) {
  return editor.view()->state().loaded() && !editor.view()->state().busy() &&
         editor.view()->canvas()->canvas()->isPictureShown();
}

ReviewWindow* openReview() {
  for (QWidget* widget : QApplication::topLevelWidgets()) {
    if (auto* review = qobject_cast<ReviewWindow*>(widget)) return review;
  }
  return nullptr;
}

bool isShown(ReviewWindow& review) {
  if (const auto* image = qobject_cast<ImageReviewView*>(review.centralWidget())) {
    return image->isImageShown();
  }
  const Player* player = review.document().reviewPlayer();
  return player && player->picture();
}

/// Where an editor stands when a file comes.
EditorWindow* openEditor(ApplicationWindows& windows, TurnWatch& watch) {
  EditorWindow* const editor = windows.openEditor();
  await(watch, [&] { return editor->view()->canvas()->canvas()->hasFrame(); });
  return editor;
}

QJsonObject turnsOf(const char* file) {
  ApplicationWindows windows;
  TurnWatch watch;
  EditorWindow* const editor = openEditor(windows, watch);
  watch = {};
  QJsonObject report;
  watch.run([&] { editor->view()->loader().loadMedia(file); });
  await(watch, [&] { return isShown(*editor); });
  report[QStringLiteral("load")] = taken(watch);

  editor->view()->state().history().setCodec(EncodingSettings::Codec::h264);
  editor->view()->state().history().setCrop({100, 50, 6, 4});
  watch.run([&] { editor->view()->exports().exportMedia(); });
  await(watch, [] { return openReview() != nullptr; });
  report[QStringLiteral("export")] = taken(watch);
  await(watch, [] { return isShown(*openReview()); });
  report[QStringLiteral("review")] = taken(watch);
  delete openReview();
  delete editor;
  return report;
}

double residentBytes() {
  double size = 0, resident = 0;
  std::ifstream("/proc/self/statm") >> size >> resident;
  return resident * static_cast<double>(::sysconf(_SC_PAGESIZE));
}

QJsonObject growthOver(int rounds, const char* file) {
  ApplicationWindows windows;
  TurnWatch watch;
  double before = 0;
  for (int round = 0; round < rounds; ++round) {
    if (round == rounds / 2) before = residentBytes();
    EditorWindow* const editor = openEditor(windows, watch);
    if (file) {
      editor->view()->loader().loadMedia(file);
      await(watch, [&] { return isShown(*editor); });
    }
    editor->close();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  return {{QStringLiteral("before"), before}, {QStringLiteral("after"), residentBytes()}};
}

QJsonObject run(const std::vector<const char*>& arguments) {
  if (arguments.size() < 2) throw std::runtime_error("what, and of which files?");
  // As the program does when its first window stands.
  std::ignore = PictureSurface::isSupported();
  if (arguments[0] == std::string("growth")) {
    return growthOver(std::stoi(arguments[1]), arguments.size() > 2 ? arguments[2] : nullptr);
  }
  QJsonObject report;
  for (size_t index = 1; index < arguments.size(); ++index) {
    report[QString::fromLocal8Bit(arguments[index])] = turnsOf(arguments[index]);
  }
  return report;
}

}  // namespace
}  // namespace vantrel::bench

int main(int argc, char** argv) {
  QSurfaceFormat::setDefaultFormat(vantrel::pictureSurfaceFormat());
  const QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  try {
    const QJsonDocument report(vantrel::bench::run({argv + 1, argv + argc}));
    std::puts(report.toJson(QJsonDocument::Compact).constData());
    return 0;
  } catch (const std::exception& error) {
    std::fprintf(stderr, "window_benchmark: %s\n", error.what());
    return 1;
  }
}
