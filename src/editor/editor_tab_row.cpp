#include "editor/editor_tab_row.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QToolButton>

#include "controls/symbol_icon.h"
#include "editor/editor_tab_bar.h"
#include "platform/desktop/key_names.h"

namespace vantrel {
namespace {

// Points.
constexpr int kLeftMargin = 8;
constexpr int kRightMargin = 12;
constexpr int kGap = 12;
constexpr QSize kButton{26, 26};

}  // namespace

EditorTabRow::EditorTabRow(QWidget* parent) : QToolBar(parent) {
  setWindowTitle(tr("Tabs"));
  setMovable(false);
  auto* const content = new QWidget(this);
  content->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
  m_tabs = new EditorTabBar(content);
  m_tabs->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  m_newTab = new QToolButton(content);
  m_newTab->setAutoRaise(true);
  m_newTab->setFixedSize(kButton);
  m_newTab->setFocusPolicy(Qt::TabFocus);
  m_newTab->setAccessibleName(tr("New Tab"));
  m_newTab->setToolTip(QStringLiteral("%1 (%2)").arg(tr("New Tab"), keyText(Qt::CTRL | Qt::Key_T)));
  auto* const layout = new QHBoxLayout(content);
  layout->setContentsMargins(kLeftMargin, 0, kRightMargin, 0);
  layout->setSpacing(kGap);
  layout->addWidget(m_tabs);
  layout->addStretch();
  layout->addWidget(m_newTab);
  addWidget(content);
  updateLook();
}

void EditorTabRow::changeEvent(QEvent* event) {
  QToolBar::changeEvent(event);
  const bool isLook =
      event->type() == QEvent::PaletteChange || event->type() == QEvent::StyleChange;
  if (isLook && m_newTab) updateLook();
}

void EditorTabRow::updateLook() {
  // A style leaves room around the buttons of a tool bar; tabs reach its edges.
  layout()->setContentsMargins(0, 0, 0, 0);
  m_newTab->setIcon(symbolIcon(QStringLiteral("plus"), palette()));
}

}  // namespace vantrel
