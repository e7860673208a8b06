#include "review/review_window.h"

#include <QAbstractButton>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>

#include "controls/message_layout.h"
#include "controls/window_title.h"
#include "review/image_review_view.h"
#include "review/save_dialog.h"
#include "review/save_progress_dialog.h"
#include "review/video_review_view.h"

namespace vantrel {
namespace {

/// Of what the window shows, below its menus.
constexpr QSize kContentSize{800, 600};

}  // namespace

ReviewWindow::ReviewWindow(std::unique_ptr<ExportReviewDocument> document, QWidget* parent)
    : QMainWindow(parent), m_document(std::move(document)) {
  setAttribute(Qt::WA_DeleteOnClose);
  if (m_document->showsImage()) {
    setCentralWidget(
        new ImageReviewView(m_document->temporaryExportPath(), m_document->summary(), this));
  } else {
    showVideo();
  }
  const int menus = menuBar()->isNativeMenuBar() ? 0 : menuBar()->sizeHint().height();
  const QRect place = placeIn(screen()->availableGeometry(), kContentSize + QSize(0, menus));
  resize(place.size());
  move(place.topLeft());
  updateTitle();
  new SaveProgressDialog(*m_document, this);
  connect(m_document.get(), &ExportReviewDocument::savingChanged, this, &ReviewWindow::updateTitle);
  connect(m_document.get(), &ExportReviewDocument::saved, this, &ReviewWindow::finishSave);
  connect(m_document.get(), &ExportReviewDocument::saveFailed, this,
          &ReviewWindow::showSaveFailure);
  connect(m_document.get(), &ExportReviewDocument::saveCancelled, this, &ReviewWindow::refuseClose);
}

void ReviewWindow::showVideo() {
  m_video = new VideoReviewView(*m_document, this);
  setCentralWidget(m_video);
  m_video->setFocus();
  connect(m_video, &VideoReviewView::fullScreenRequested, this, &ReviewWindow::setFullScreen);
}

void ReviewWindow::setFullScreen(bool isFullScreen) {
  setWindowState(windowState().setFlag(Qt::WindowFullScreen, isFullScreen));
}

void ReviewWindow::changeEvent(QEvent* event) {
  QMainWindow::changeEvent(event);
  if (event->type() != QEvent::WindowStateChange || !m_video) return;
  if (menuWidget()) menuWidget()->setVisible(!isFullScreen());
  m_video->setFullScreen(isFullScreen());
}

ReviewWindow::~ReviewWindow() {
  // The view is of the document.
  delete takeCentralWidget();
}

QRect ReviewWindow::placeIn(const QRect& room, const QSize& size) {
  QRect place(QPoint(0, 0), size.boundedTo(room.size()));
  place.moveCenter(room.center());
  return place;
}

void ReviewWindow::updateTitle() {
  setWindowTitle(windowTitleOf(m_document->displayName()) + QStringLiteral("[*]"));
  setWindowModified(m_document->isUnsaved());
}

void ReviewWindow::save() {
  if (m_document->isSaving() || m_choosing) return;
  m_choosing = true;
  auto* dialog = new SaveDialog(*m_document, this);
  dialog->setAttribute(Qt::WA_DeleteOnClose);
  connect(dialog, &QDialog::accepted, this, [this, dialog] { m_document->save(dialog->chosen()); });
  connect(dialog, &QDialog::finished, this, [this] { m_choosing = false; });
  connect(dialog, &QDialog::rejected, this, &ReviewWindow::refuseClose);
  dialog->open();
}

void ReviewWindow::finishSave() {
  updateTitle();
  if (m_closeAfterSave) close();
}

void ReviewWindow::showSaveFailure(const QString& message) {
  refuseClose();
  auto* alert = new QMessageBox(QMessageBox::NoIcon, tr("Could Not Save File"),
                                tr("Could Not Save File"), QMessageBox::Ok, this);
  alert->setInformativeText(message);
  layOutMessage(*alert);
  alert->setAttribute(Qt::WA_DeleteOnClose);
  alert->open();
}

void ReviewWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Escape && isFullScreen()) {
    setFullScreen(false);
  } else {
    QMainWindow::keyPressEvent(event);
  }
}

void ReviewWindow::closeEvent(QCloseEvent* event) {
  if (m_document->isSaving() || m_choosing) {
    m_closeAfterSave = true;
    event->ignore();
  } else if (m_document->isUnsaved() && !m_discard) {
    askBeforeClosing();
    event->ignore();
  } else {
    m_document->close();
    event->accept();
  }
}

void ReviewWindow::askBeforeClosing() {
  if (m_asking) return;
  m_asking = true;
  auto* question =
      new QMessageBox(QMessageBox::NoIcon, tr("Save Export"),
                      tr("Do you want to save “%1”?").arg(m_document->displayName()),
                      QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, this);
  question->setInformativeText(tr("It is deleted if you don’t save it."));
  layOutMessage(*question);
  question->button(QMessageBox::Discard)->setText(tr("Don’t Save"));
  question->setDefaultButton(QMessageBox::Save);
  question->setEscapeButton(QMessageBox::Cancel);
  question->setAttribute(Qt::WA_DeleteOnClose);
  connect(question, &QDialog::finished, this, [this](int answer) {
    m_asking = false;
    if (answer == QMessageBox::Save) {
      m_closeAfterSave = true;
      save();
    } else if (answer == QMessageBox::Discard) {
      m_discard = true;
      close();
    } else {
      refuseClose();
    }
  });
  question->open();
}

void ReviewWindow::refuseClose() {
  m_closeAfterSave = false;
  Q_EMIT closeRefused();
}

}  // namespace vantrel
