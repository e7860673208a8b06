#include "editor/crop_window_registry.h"

#include <QApplication>
#include <QEvent>

#include "editor/editor_view.h"
#include "editor/editor_window.h"
#include "review/review_window.h"

namespace vantrel {

CropWindowRegistry& CropWindowRegistry::shared() {
  static CropWindowRegistry registry;
  return registry;
}

CropWindowRegistry::CropWindowRegistry() {
  qApp->installEventFilter(this);
}

CropWindowRegistry::~CropWindowRegistry() = default;

void CropWindowRegistry::requestTab(const QUuid& identity, EditorWindow* parent) {
  m_tabParents.insert(identity, parent);
}

bool CropWindowRegistry::attach(EditorView* editor) {
  EditorWindow* const parent = m_tabParents.take(editor->windowIdentity());
  if (!parent || parent->isClosing() || parent == editor->window()) return false;
  parent->addEditor(editor);
  return true;
}

ExportReviewDocument* CropWindowRegistry::activeReview() const {
  return m_activeReview ? &m_activeReview->document() : nullptr;
}

ReviewWindow* CropWindowRegistry::activeReviewWindow() const {
  return m_activeReview;
}

bool CropWindowRegistry::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::WindowActivate && watched->isWidgetType()) {
    auto* const widget = static_cast<QWidget*>(watched);
    if (widget->isWindow()) setActiveReview(qobject_cast<ReviewWindow*>(widget));
  }
  return false;
}

void CropWindowRegistry::setActiveReview(ReviewWindow* window) {
  if (window && window->document().isClosed()) window = nullptr;
  if (window == m_activeReview) return;
  disconnect(m_closed);
  m_activeReview = window;
  if (window) {
    m_closed = connect(&window->document(), &ExportReviewDocument::closed, this,
                       [this] { setActiveReview(nullptr); });
  }
  Q_EMIT activeReviewChanged();
}

}  // namespace vantrel
