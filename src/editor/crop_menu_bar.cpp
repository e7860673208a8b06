#include "editor/crop_menu_bar.h"

#include <QActionGroup>
#include <QApplication>
#include <QKeySequence>
#include <QMenu>

#include "editor/editor_view.h"
#include "editor/text_editing.h"

namespace vantrel {

CropMenuBar::CropMenuBar(QWidget* parent) : QMenuBar(parent) {
  buildFileMenu();
  buildEditMenu();
  buildViewMenu();
  buildCropMenu();
  connect(qApp, &QApplication::focusChanged, this, &CropMenuBar::updateCommands);
  updateCommands();
}

CropMenuBar::~CropMenuBar() = default;

void CropMenuBar::setEditor(EditorView* editor) {
  if (m_editor) disconnect(m_editor, nullptr, this, nullptr);
  m_editor = editor;
  if (editor) connect(editor, &EditorView::updated, this, &CropMenuBar::updateCommands);
  updateCommands();
}

void CropMenuBar::buildFileMenu() {
  QMenu* menu = addMenu(tr("&File"));
  menu->addAction(tr("New Window"), Qt::CTRL | Qt::Key_N, this, &CropMenuBar::newWindowRequested);
  menu->addSeparator();
  m_open = menu->addAction(tr("Open…"), Qt::CTRL | Qt::Key_O, this,
                           [this] { m_editor->windowActions().open(); });
  m_closeFile = menu->addAction(tr("Close File"), Qt::CTRL | Qt::ALT | Qt::Key_W, this,
                                [this] { m_editor->windowActions().close(); });
  menu->addAction(tr("Close Window"), Qt::CTRL | Qt::Key_W, this, &CropMenuBar::closeRequested);
  menu->addSeparator();
  m_export = menu->addAction(tr("Export Crop…"), Qt::CTRL | Qt::SHIFT | Qt::Key_E, this,
                             [this] { m_editor->windowActions().exportMedia(); });
  menu->addSeparator();
  QAction* quit =
      menu->addAction(tr("Quit"), Qt::CTRL | Qt::Key_Q, this, &CropMenuBar::quitRequested);
  quit->setMenuRole(QAction::QuitRole);
}

void CropMenuBar::buildEditMenu() {
  QMenu* menu = addMenu(tr("&Edit"));
  m_undo = menu->addAction(tr("Undo"), Qt::CTRL | Qt::Key_Z, this,
                           [this] { m_editor->state().undoEdit(); });
  m_redo = menu->addAction(tr("Redo"), Qt::CTRL | Qt::SHIFT | Qt::Key_Z, this,
                           [this] { m_editor->state().redoEdit(); });
}

void CropMenuBar::buildViewMenu() {
  QMenu* menu = addMenu(tr("&View"));
  m_viewing = new QActionGroup(this);
  QAction* larger =
      menu->addAction(tr("Zoom In"), this, [this] { m_editor->windowActions().zoomIn(); });
  // On many keyboards the plus sign is the upper half of the equals key.
  larger->setShortcuts({Qt::CTRL | Qt::Key_Plus, Qt::CTRL | Qt::Key_Equal});
  m_viewing->addAction(larger);
  m_viewing->addAction(menu->addAction(tr("Zoom Out"), Qt::CTRL | Qt::Key_Minus, this,
                                       [this] { m_editor->windowActions().zoomOut(); }));
  m_viewing->addAction(menu->addAction(tr("Zoom to Fit"), Qt::CTRL | Qt::Key_0, this,
                                       [this] { m_editor->windowActions().fit(); }));
  m_viewing->addAction(menu->addAction(tr("Actual Size"), Qt::CTRL | Qt::Key_1, this,
                                       [this] { m_editor->windowActions().actualSize(); }));
  menu->addSeparator();
  m_inspector = menu->addAction(tr("Show Inspector"), Qt::CTRL | Qt::ALT | Qt::Key_I, this,
                                [this] { m_editor->windowActions().inspector(); });
  m_viewing->addAction(m_inspector);
}

void CropMenuBar::buildCropMenu() {
  QMenu* menu = addMenu(tr("&Crop"));
  m_preview = menu->addAction(tr("Preview Crop"), Qt::CTRL | Qt::Key_P, this,
                              [this] { m_editor->windowActions().preview(); });
  m_viewing->addAction(m_preview);
}

void CropMenuBar::updateCommands() {
  const CropWindowActions actions = m_editor ? m_editor->windowActions() : CropWindowActions();
  const EditHistory* const history = m_editor ? &m_editor->state().history() : nullptr;
  m_open->setEnabled(actions.canOpen);
  m_closeFile->setEnabled(actions.canEdit);
  m_export->setEnabled(actions.canExport);
  m_undo->setEnabled(actions.canEdit && (history->canUndo() || isEditingText()));
  m_redo->setEnabled(actions.canEdit && (history->canRedo() || isEditingText()));
  m_viewing->setEnabled(actions.canEdit);
  m_preview->setText(actions.previewing ? tr("Exit Preview") : tr("Preview Crop"));
  m_inspector->setText(actions.inspecting ? tr("Hide Inspector") : tr("Show Inspector"));
}

}  // namespace vantrel
