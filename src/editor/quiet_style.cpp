#include "editor/quiet_style.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QPainter>
#include <QStyleOption>
#include <QToolButton>
#include <QWidget>

#include "controls/look_palette.h"
#include "controls/plate.h"
#include "controls/symbol_icon.h"
#include "editor/quiet_bar.h"
#include "editor/quiet_button.h"
#include "editor/quiet_dialog.h"
#include "editor/quiet_menu.h"
#include "editor/quiet_slider.h"
#include "editor/quiet_symbols.h"
#include "editor/quiet_tab.h"

namespace vantrel {
namespace {

// Points.
constexpr double kFieldRadius = 5;
constexpr int kTabPadding = 12;
constexpr int kOpaque = 255;
constexpr int kFieldPadding = 5;
constexpr int kTipPadding = 5;

/// The field of a spin box has the frame and the room of the box.
bool isInSpinBox(const QWidget* widget) {
  return widget && qobject_cast<const QAbstractSpinBox*>(widget->parentWidget());
}

void drawField(const QStyleOption* option, QPainter* painter) {
  const QPalette& palette = option->palette;
  const bool focused = option->state.testFlag(QStyle::State_HasFocus);
  drawPlate(painter, option->rect, kFieldRadius, palette.color(QPalette::Base),
            focused ? palette.color(QPalette::Highlight) : outlineColor(palette),
            focused ? kFocusWidth : 1);
}

}  // namespace

QuietStyle::QuietStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void QuietStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option,
                               QPainter* painter, const QWidget* widget) const {
  switch (element) {
    case PE_PanelLineEdit:
    case PE_FrameLineEdit:
      if (isInSpinBox(widget)) return;
      if (widget && !widget->isEnabled()) painter->setOpacity(kDisabledOpacity);
      if (element == PE_PanelLineEdit) drawField(option, painter);
      painter->setOpacity(1);
      return;
    case PE_PanelButtonCommand:
      QuietButton::draw(*option, *painter);
      return;
    case PE_PanelButtonTool:
      if (option->state.testFlag(State_AutoRaise)) {
        QuietButton::drawTool(*option, *painter);
      } else {
        QuietButton::draw(*option, *painter);
      }
      return;
    case PE_FrameFocusRect:
      if (qobject_cast<const QToolButton*>(widget)) {
        QuietButton::drawFocusRing(*option, widget->rect(), *painter);
      }
      return;
    case PE_PanelMenu:
      QuietMenu::drawPanel(*option, *painter);
      return;
    case PE_FrameMenu:
      QuietMenu::drawFrame(*option, *painter);
      return;
    case PE_Frame:
      QuietDialog::drawListFrame(*option, *painter);
      return;
    case PE_IndicatorHeaderArrow:
      if (const auto* header = qstyleoption_cast<const QStyleOptionHeader*>(option)) {
        const bool isUp = header->sortIndicator == QStyleOptionHeader::SortDown;
        QuietDialog::drawChevron(*option, option->rect, isUp, *painter);
      }
      return;
    case PE_PanelTipLabel:
      painter->fillRect(option->rect, option->palette.color(QPalette::ToolTipBase));
      QuietMenu::drawFrame(*option, *painter);
      return;
    case PE_IndicatorTabClose:
      QuietTab::drawCloseButton(*option, *painter);
      return;
    case PE_IndicatorTabTearLeft:
    case PE_IndicatorTabTearRight:
    case PE_PanelMenuBar:
    case PE_FrameStatusBarItem:
      return;
    default:
      QProxyStyle::drawPrimitive(element, option, painter, widget);
  }
}

void QuietStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
  switch (element) {
    case CE_MenuBarEmptyArea:
      QuietBar::drawMenuBar(*option, *painter);
      return;
    case CE_HeaderSection:
    case CE_HeaderEmptyArea:
      QuietDialog::drawHeader(*option, *painter);
      return;
    case CE_Splitter:
    case CE_SizeGrip:
      return;
    case CE_ToolBar:
      QuietBar::drawToolBar(*option, *painter);
      return;
    case CE_MenuItem:
      if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
        QuietMenu::drawItem(*item, *painter, *this);
        return;
      }
      break;
    case CE_MenuBarItem:
      if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
        QuietBar::drawMenuTitle(*item, *painter, *this, widget && widget->hasFocus());
        return;
      }
      break;
    case CE_TabBarTabShape:
    case CE_TabBarTabLabel:
      if (const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option)) {
        if (element == CE_TabBarTabShape) {
          QuietTab::drawShape(*tab, *painter);
        } else {
          QuietTab::drawLabel(*tab, *this, *painter);
        }
        return;
      }
      break;
    default:
      break;
  }
  QProxyStyle::drawControl(element, option, painter, widget);
}

void QuietStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                                    QPainter* painter, const QWidget* widget) const {
  const auto part = [&](SubControl which) {
    return subControlRect(control, option, which, widget);
  };
  if (const auto* slider = qstyleoption_cast<const QStyleOptionSlider*>(option)) {
    if (control == CC_Slider && slider->orientation == Qt::Horizontal) {
      QuietSlider::draw(*slider, part(SC_SliderHandle), *painter);
      return;
    }
    if (control == CC_ScrollBar) {
      QuietDialog::drawScrollBar(*slider, *painter);
      return;
    }
  }
  if (const auto* box = qstyleoption_cast<const QStyleOptionSpinBox*>(option)) {
    drawField(option, painter);
    QuietDialog::drawSteps(*box, part(SC_SpinBoxUp), part(SC_SpinBoxDown), *painter);
    return;
  }
  const auto* choice = qstyleoption_cast<const QStyleOptionComboBox*>(option);
  if (choice && !choice->editable) {
    QuietButton::draw(*option, *painter);
    QuietDialog::drawChevron(*option, part(SC_ComboBoxArrow), false, *painter);
    return;
  }
  QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QRect QuietStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option,
                                 SubControl part, const QWidget* widget) const {
  const auto* bar = qstyleoption_cast<const QStyleOptionSlider*>(option);
  if (control == CC_ScrollBar && bar) return QuietDialog::scrollBarPart(*bar, part);
  return QProxyStyle::subControlRect(control, option, part, widget);
}

QSize QuietStyle::sizeFromContents(ContentsType type, const QStyleOption* option,
                                   const QSize& contents, const QWidget* widget) const {
  const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
  switch (type) {
    case CT_PushButton:
      return QuietButton::sizeAround(contents, size.height(), widget);
    case CT_ToolButton:
      return size.expandedTo({QuietButton::kTool, QuietButton::kTool});
    case CT_MenuBarItem:
      return QuietBar::menuTitleSize(size);
    case CT_MenuItem:
      if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
        return QuietMenu::itemSize(*item, contents);
      }
      return size;
    case CT_TabBarTab:
      return {size.width(),
              std::max(QuietTab::kHeight, option->fontMetrics.height() + kTabPadding)};
    default:
      return size;
  }
}

QRect QuietStyle::subElementRect(SubElement element, const QStyleOption* option,
                                 const QWidget* widget) const {
  switch (element) {
    case SE_LineEditContents:
      if (isInSpinBox(widget)) break;
      return option->rect.adjusted(kFieldPadding, 1, -kFieldPadding, -1);
    case SE_TabBarTabText:
      if (const auto* tab = qstyleoption_cast<const QStyleOptionTab*>(option)) {
        return QuietTab::textRect(*tab);
      }
      break;
    case SE_TabBarTabRightButton:
      return QuietTab::closeRect(option->rect);
    default:
      break;
  }
  return QProxyStyle::subElementRect(element, option, widget);
}

int QuietStyle::pixelMetric(PixelMetric metric, const QStyleOption* option,
                            const QWidget* widget) const {
  switch (metric) {
    case PM_ToolBarIconSize:
      return QuietButton::kToolIcon;
    case PM_ToolBarItemMargin:
      return QuietBar::kToolMargin;
    case PM_ToolBarItemSpacing:
      return QuietBar::kToolSpacing;
    case PM_MenuBarHMargin:
      return QuietBar::kMenuMargin;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
      return QuietMenu::kMargin;
    case PM_MenuPanelWidth:
      return 1;
    case PM_SubMenuOverlap:
      // Beside the frame, not over it.
      return QuietMenu::kMargin + 1;
    case PM_ToolTipLabelFrameWidth:
      return kTipPadding;
    case PM_TabCloseIndicatorWidth:
    case PM_TabCloseIndicatorHeight:
      return QuietTab::kCloseSide;
    case PM_TabBarScrollButtonWidth:
      return QuietTab::kScrollButton;
    case PM_ScrollBarExtent:
      return QuietDialog::kScrollBar;
    case PM_ListViewIconSize:
      return QuietDialog::kListIcon;
    case PM_SliderLength:
    case PM_SliderThickness:
    case PM_SliderControlThickness:
      return QuietSlider::kKnob;
    case PM_ToolBarFrameWidth:
    case PM_MenuBarVMargin:
    case PM_MenuBarPanelWidth:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
      return 0;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int QuietStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* returned) const {
  switch (hint) {
    case SH_Widget_Animation_Duration:
      return m_showsMotion ? QProxyStyle::styleHint(hint, option, widget, returned) : 0;
    case SH_Slider_AbsoluteSetButtons:
      return Qt::LeftButton;
    case SH_ToolTipLabel_Opacity:
      return kOpaque;
    case SH_UnderlineShortcut:
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_EtchDisabledText:
    case SH_BlinkCursorWhenTextSelected:
      return 0;
    default:
      return QProxyStyle::styleHint(hint, option, widget, returned);
  }
}

QIcon QuietStyle::standardIcon(StandardPixmap which, const QStyleOption* option,
                               const QWidget* widget) const {
  // Every menu bar and tool bar has one; the icon themes of the desktop are not searched for it.
  const QString symbol = quietSymbol(which);
  if (!symbol.isEmpty()) {
    return symbolIcon(symbol, widget ? widget->palette() : QApplication::palette());
  }
  return QProxyStyle::standardIcon(which, option, widget);
}

}  // namespace vantrel
