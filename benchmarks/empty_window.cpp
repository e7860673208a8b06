// empty_window: what any program with a window does at its start, and nothing else.

#include <QApplication>
#include <QMainWindow>

int main(int argc, char** argv) {
  const QApplication application(argc, argv);
  QMainWindow window;
  window.resize(1280, 800);
  window.show();
  return QApplication::exec();
}
