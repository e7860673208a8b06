#include "editor/quiet_style.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QDialogButtonBox>
#include <QPainter>
#include <QStyleOption>
#include <QToolButton>
#include <QWidget>

#include "controls/look_palette.h"
#include "controls/plate.h"
#include "controls/symbol_icon.h"
#include "editor/quiet_dialog.h"
#include "editor/quiet_menu.h"
#include "editor/quiet_slider.h"
#include "editor/quiet_tab.h"

namespace vantrel {
namespace {

// Points.
constexpr double kFieldRadius = 5;
constexpr double kButtonRadius = 7;
constexpr double kFocusWidth = 2;
constexpr int kToolIcon = 18;
constexpr int kToolButton = 32;
constexpr int kToolBarMargin = 8;
constexpr int kToolBarSpacing = 8;
constexpr int kMenuBarMargin = 2;
constexpr int kMenuBarItemHeight = 26, kMenuBarItemExtra = 6;
constexpr int kTabPadding = 12;
constexpr int kOpaque = 255;
constexpr int kLeastButton = 48, kLeastDialogButton = 80, kButtonPadding = 16;
constexpr int kFieldPadding = 5;
constexpr int kTipPadding = 5;

constexpr double kDisabledOpacity = 0.45;
constexpr int kColoredSaturation = 128;
constexpr float kToolHover = 0.08F;
constexpr float kToolPress = 0.14F;

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

void drawButton(const QStyleOption* option, QPainter* painter) {
  const QStyle::State state = option->state;
  const QPalette& palette = option->palette;
  const bool enabled = state.testFlag(QStyle::State_Enabled);
  Touch touch = Touch::none;
  if (enabled && state.testFlag(QStyle::State_Sunken)) {
    touch = Touch::press;
  } else if (enabled && state.testFlag(QStyle::State_MouseOver)) {
    touch = Touch::hover;
  }
  const bool focused =
      state.testFlag(QStyle::State_HasFocus) && state.testFlag(QStyle::State_KeyboardFocusChange);
  const auto* button = qstyleoption_cast<const QStyleOptionButton*>(option);
  const bool marked =
      focused || (button && button->features.testFlag(QStyleOptionButton::DefaultButton));
  // White gets no lighter.
  const QColor resting =
      touch == Touch::hover ? outlineColor(palette) : palette.color(QPalette::Mid);
  const QColor edge = marked && enabled ? palette.color(QPalette::Highlight) : resting;
  painter->save();
  if (!enabled) painter->setOpacity(kDisabledOpacity);
  // A coloured button needs no border.
  const bool plain = palette.color(QPalette::Button).saturation() < kColoredSaturation;
  const double border = focused ? kFocusWidth : (plain ? 1 : 0);
  drawPlate(painter, option->rect, kButtonRadius, buttonFill(palette, touch), edge, border);
  painter->restore();
}

void drawToolButton(const QStyleOption* option, QPainter* painter) {
  const QStyle::State state = option->state;
  if (!state.testFlag(QStyle::State_Enabled)) return;
  const bool pressed = state.testFlag(QStyle::State_Sunken) || state.testFlag(QStyle::State_On);
  if (!pressed && !state.testFlag(QStyle::State_MouseOver)) return;
  QColor fill = option->palette.color(QPalette::WindowText);
  fill.setAlphaF(pressed ? kToolPress : kToolHover);
  drawPlate(painter, option->rect, kButtonRadius, fill, {}, 0);
}

void drawFocusRing(const QStyleOption& option, const QRect& rect, QPainter* painter) {
  if (!option.state.testFlag(QStyle::State_KeyboardFocusChange)) return;
  drawPlate(painter, rect, kButtonRadius, Qt::transparent,
            option.palette.color(QPalette::Highlight), kFocusWidth);
}

void drawBar(const QStyleOption* option, QPainter* painter, bool bottomLine) {
  painter->fillRect(option->rect, option->palette.color(QPalette::AlternateBase));
  if (!bottomLine) return;
  QRect line = option->rect;
  line.setTop(line.bottom());
  painter->fillRect(line, option->palette.color(QPalette::Midlight));
}

void drawMenuBarItem(const QStyleOptionMenuItem& item, QPainter* painter, const QStyle& style,
                     bool hasKeyboard) {
  painter->fillRect(item.rect, item.palette.color(QPalette::AlternateBase));
  if (item.state.testFlag(QStyle::State_Selected)) {
    QColor fill = item.palette.color(QPalette::WindowText);
    fill.setAlphaF(kToolHover);
    drawPlate(painter, item.rect.adjusted(1, 2, -1, -2), kFieldRadius, fill,
              item.palette.color(QPalette::Highlight), hasKeyboard ? kFocusWidth : 0);
  }
  const int flags =
      Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextDontClip | Qt::TextSingleLine |
      (style.styleHint(QStyle::SH_UnderlineShortcut, &item) ? 0 : Qt::TextHideMnemonic);
  style.drawItemText(painter, item.rect, flags, item.palette,
                     item.state.testFlag(QStyle::State_Enabled), item.text, QPalette::WindowText);
}

/// The buttons of a dialog are of one size, whatever stands on them.
int leastWidth(const QWidget* button) {
  return button && qobject_cast<const QDialogButtonBox*>(button->parentWidget())
             ? kLeastDialogButton
             : kLeastButton;
}

/// The names of the drawings that stand for those of the toolkit: in dialogs of files, and in bars
/// that are too short.
QString symbolOf(QStyle::StandardPixmap which) {
  switch (which) {
    case QStyle::SP_ToolBarHorizontalExtensionButton:
      return QStringLiteral("ellipsis");
    case QStyle::SP_DirIcon:
    case QStyle::SP_DirClosedIcon:
    case QStyle::SP_DirHomeIcon:
    case QStyle::SP_DirLinkIcon:
      return QStringLiteral("folder");
    case QStyle::SP_DirOpenIcon:
      return QStringLiteral("folder-open");
    case QStyle::SP_FileIcon:
    case QStyle::SP_FileLinkIcon:
      return QStringLiteral("file");
    case QStyle::SP_ComputerIcon:
    case QStyle::SP_DriveHDIcon:
      return QStringLiteral("monitor");
    case QStyle::SP_ArrowBack:
    case QStyle::SP_FileDialogBack:
      return QStringLiteral("arrow-left");
    case QStyle::SP_ArrowForward:
      return QStringLiteral("arrow-right");
    case QStyle::SP_FileDialogToParent:
      return QStringLiteral("arrow-up");
    case QStyle::SP_FileDialogNewFolder:
      return QStringLiteral("folder-plus");
    case QStyle::SP_FileDialogListView:
      return QStringLiteral("layout-grid");
    case QStyle::SP_FileDialogDetailedView:
      return QStringLiteral("list");
    default:
      return {};
  }
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
      drawButton(option, painter);
      return;
    case PE_PanelButtonTool:
      if (option->state.testFlag(State_AutoRaise)) {
        drawToolButton(option, painter);
      } else {
        drawButton(option, painter);
      }
      return;
    case PE_FrameFocusRect:
      if (qobject_cast<const QToolButton*>(widget)) drawFocusRing(*option, widget->rect(), painter);
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
      drawBar(option, painter, false);
      return;
    case CE_HeaderSection:
    case CE_HeaderEmptyArea:
      QuietDialog::drawHeader(*option, *painter);
      return;
    case CE_Splitter:
    case CE_SizeGrip:
      return;
    case CE_ToolBar:
      drawBar(option, painter, true);
      return;
    case CE_MenuItem:
      if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
        QuietMenu::drawItem(*item, *painter, *this);
        return;
      }
      break;
    case CE_MenuBarItem:
      if (const auto* item = qstyleoption_cast<const QStyleOptionMenuItem*>(option)) {
        drawMenuBarItem(*item, painter, *this, widget && widget->hasFocus());
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
    drawButton(option, painter);
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
      return {std::max(contents.width() + 2 * kButtonPadding, leastWidth(widget)), size.height()};
    case CT_ToolButton:
      return size.expandedTo({kToolButton, kToolButton});
    case CT_MenuBarItem:
      return {size.width() + kMenuBarItemExtra, std::max(size.height(), kMenuBarItemHeight)};
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
      return kToolIcon;
    case PM_ToolBarItemMargin:
      return kToolBarMargin;
    case PM_ToolBarItemSpacing:
      return kToolBarSpacing;
    case PM_MenuBarHMargin:
      return kMenuBarMargin;
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
  const QString symbol = symbolOf(which);
  if (!symbol.isEmpty()) {
    return symbolIcon(symbol, widget ? widget->palette() : QApplication::palette());
  }
  return QProxyStyle::standardIcon(which, option, widget);
}

}  // namespace vantrel
