#include "ui/theme/QuillStyle.h"

#include <algorithm>

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QGuiApplication>
#include <QIcon>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyleFactory>
#include <QStyleOption>

#include "menubar/SymbolPainter.h"
#include "ui/theme/ButtonPainting.h"
#include "ui/theme/FieldPainting.h"
#include "ui/theme/MenuPainting.h"
#include "ui/theme/RangePainting.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"

namespace quillmeter {
namespace {

template <typename Option>
const Option* as(const QStyleOption* option) {
  return qstyleoption_cast<const Option*>(option);
}

bool isFloating(const QWidget& widget) {
  return widget.inherits("QMenu") || widget.inherits("QComboBoxPrivateContainer") || widget.inherits("QTipLabel");
}

// Where windows are always composited, a translucent one costs nothing and gives soft corners; an X server may have no
// compositor, which would leave the corners black.
bool isAlwaysComposited() {
  const QString platform = QGuiApplication::platformName();
  return platform.startsWith(QLatin1String("wayland")) || platform == QLatin1String("offscreen");
}

double floatingRadius(const QWidget* widget) {
  if (!isAlwaysComposited()) return 0;
  constexpr double tipRadius = 7;
  return widget != nullptr && widget->inherits("QTipLabel") ? tipRadius : MenuPainting::panelRadius;
}

QIcon messageIcon(std::string_view symbol, const QColor& color) {
  constexpr double points = 32;
  QIcon icon;
  for (const double ratio : {1.0, 2.0}) {
    icon.addPixmap(QPixmap::fromImage(SymbolPainter::image(symbol, points, color, ratio)));
  }
  return icon;
}

}  // namespace

QuillStyle::QuillStyle() : QProxyStyle(QStringLiteral("fusion")) {
  setObjectName(QStringLiteral("quillmeter"));
}

bool QuillStyle::drawIndicator(PrimitiveElement element, const QStyleOption& option, QPainter& painter) const {
  const QPointF center = QRectF(option.rect).center();
  const ThemeColors& colors = ThemeColors::of(option.palette);
  const QColor arrow = option.state & State_Enabled ? colors.secondaryText : colors.tertiaryText;
  switch (element) {
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
      ButtonPainting::checkBox(option, painter);
      return true;
    case PE_IndicatorRadioButton:
      ButtonPainting::radioButton(option, painter);
      return true;
    case PE_IndicatorMenuCheckMark:
      if (option.state & State_On) ButtonPainting::checkMark(option, painter);
      return true;
    case PE_IndicatorArrowDown:
      Shapes::chevron(painter, center, arrow);
      return true;
    case PE_IndicatorArrowUp:
      Shapes::chevron(painter, center, arrow, 180);
      return true;
    case PE_IndicatorArrowLeft:
      Shapes::chevron(painter, center, arrow, 90);
      return true;
    case PE_IndicatorArrowRight:
      Shapes::chevron(painter, center, arrow, -90);
      return true;
    default:
      return false;
  }
}

bool QuillStyle::drawPanel(PrimitiveElement element, const QStyleOption& option, QPainter& painter,
                           const QWidget* widget) const {
  switch (element) {
    case PE_PanelButtonTool:
      ButtonPainting::toolPanel(option, painter);
      return true;
    case PE_PanelLineEdit:
      if (const auto* frame = as<QStyleOptionFrame>(&option); frame != nullptr && frame->lineWidth > 0)
        FieldPainting::frame(option, painter, option.state & State_HasFocus);
      return true;
    case PE_FrameLineEdit:
      return true;  // its panel has drawn it
    case PE_PanelMenu:
    case PE_PanelTipLabel:
      MenuPainting::panel(option, painter, floatingRadius(widget));
      return true;
    case PE_FrameMenu:
      return true;
    case PE_Frame:
      Shapes::panel(painter, option.rect, 0, {}, ThemeColors::of(option.palette).border);
      return true;
    case PE_PanelItemViewItem:
      if (const auto* item = as<QStyleOptionViewItem>(&option)) MenuPainting::row(*item, painter);
      return true;
    case PE_PanelItemViewRow:
      return true;
    default:
      return false;
  }
}

void QuillStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                               const QWidget* widget) const {
  if (element == PE_FrameFocusRect) {
    constexpr double radius = 6;
    if (option->state & State_KeyboardFocusChange)
      Shapes::focusFrame(*painter, option->rect, radius, ThemeColors::of(option->palette));
    return;
  }
  if (drawIndicator(element, *option, *painter) || drawPanel(element, *option, *painter, widget)) return;
  QProxyStyle::drawPrimitive(element, option, painter, widget);
}

void QuillStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                             const QWidget* widget) const {
  if (const auto* button = as<QStyleOptionButton>(option)) {
    if (element == CE_PushButton) {
      ButtonPainting::bevel(*button, *painter);
      ButtonPainting::label(*button, *painter);
      if (option->state & State_HasFocus && option->state & State_KeyboardFocusChange)
        ButtonPainting::focus(*button, *painter);
      return;
    }
    if (element == CE_PushButtonBevel) return ButtonPainting::bevel(*button, *painter);
    if (element == CE_PushButtonLabel) return ButtonPainting::label(*button, *painter);
  }
  if (const auto* combo = as<QStyleOptionComboBox>(option); combo != nullptr && element == CE_ComboBoxLabel)
    return FieldPainting::comboBoxLabel(*combo, *painter);
  if (const auto* item = as<QStyleOptionMenuItem>(option); item != nullptr && element == CE_MenuItem)
    return MenuPainting::item(*item, *painter);
  if (element == CE_MenuEmptyArea) return;
  if (const auto* bar = as<QStyleOptionProgressBar>(option)) {
    if (element == CE_ProgressBarGroove) return RangePainting::progressGroove(*bar, *painter);
    if (element == CE_ProgressBarContents && bar->maximum > bar->minimum)
      return RangePainting::progressContents(*bar, *painter);
  }
  if (const auto* header = as<QStyleOptionHeader>(option)) {
    if (element == CE_HeaderSection) return MenuPainting::headerSection(*header, *painter);
    QStyleOptionHeader quiet = *header;
    quiet.palette.setColor(QPalette::ButtonText, ThemeColors::of(option->palette).secondaryText);
    if (element == CE_HeaderLabel) return QProxyStyle::drawControl(element, &quiet, painter, widget);
  }
  if (const auto* item = as<QStyleOptionViewItem>(option); item != nullptr && element == CE_ItemViewItem) {
    QStyleOptionViewItem legible = *item;
    legible.palette.setColor(QPalette::HighlightedText, ThemeColors::of(option->palette).text);
    return QProxyStyle::drawControl(element, &legible, painter, widget);
  }
  QProxyStyle::drawControl(element, option, painter, widget);
}

void QuillStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                    const QWidget* widget) const {
  if (const auto* slider = as<QStyleOptionSlider>(option)) {
    if (control == CC_Slider) return RangePainting::slider(*slider, *painter);
    if (control == CC_ScrollBar) return RangePainting::scrollBar(*slider, *painter);
  }
  if (const auto* combo = as<QStyleOptionComboBox>(option); combo != nullptr && control == CC_ComboBox)
    return FieldPainting::comboBox(*combo, *painter);
  if (const auto* spin = as<QStyleOptionSpinBox>(option); spin != nullptr && control == CC_SpinBox)
    return FieldPainting::spinBox(*spin, *painter);
  QProxyStyle::drawComplexControl(control, option, painter, widget);
}

QRect QuillStyle::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const {
  switch (element) {
    case SE_PushButtonFocusRect:
      return option->rect;
    case SE_LineEditContents: {
      const auto* frame = as<QStyleOptionFrame>(option);
      const int inset = frame != nullptr && frame->lineWidth > 0 ? FieldPainting::horizontalPadding - 2 : 4;
      return option->rect.adjusted(inset, 1, -inset, -1);
    }
    default:
      return QProxyStyle::subElementRect(element, option, widget);
  }
}

QRect QuillStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                 const QWidget* widget) const {
  if (const auto* slider = as<QStyleOptionSlider>(option)) {
    if (control == CC_Slider && part != SC_SliderTickmarks) return RangePainting::sliderPart(*slider, part);
    if (control == CC_ScrollBar) return RangePainting::scrollBarPart(*slider, part);
  }
  if (const auto* combo = as<QStyleOptionComboBox>(option); combo != nullptr && control == CC_ComboBox)
    return FieldPainting::comboBoxPart(*combo, part);
  if (const auto* spin = as<QStyleOptionSpinBox>(option); spin != nullptr && control == CC_SpinBox)
    return FieldPainting::spinBoxPart(*spin, part);
  return QProxyStyle::subControlRect(control, option, part, widget);
}

QSize QuillStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                   const QWidget* widget) const {
  using ButtonPainting::controlHeight;
  constexpr int verticalPadding = 10;
  const int height = std::max(controlHeight, contents.height() + verticalPadding);
  switch (type) {
    case CT_PushButton: {
      constexpr int padding = 14;
      const auto* button = as<QStyleOptionButton>(option);
      const bool isTextless = button != nullptr && button->text.isEmpty();
      constexpr int minimumWidth = 64;
      return {isTextless ? std::max(controlHeight, contents.width() + 8)
                         : std::max(minimumWidth, contents.width() + 2 * padding),
              height};
    }
    case CT_ComboBox:
      return {contents.width() + FieldPainting::horizontalPadding + FieldPainting::arrowWidth + 2, height};
    case CT_LineEdit:
      return {contents.width() + 2 * FieldPainting::horizontalPadding, height};
    case CT_SpinBox:
      return {contents.width() + FieldPainting::horizontalPadding + FieldPainting::arrowWidth,
              std::max(controlHeight, contents.height())};  // the edit in it has its padding
    case CT_MenuItem:
      if (const auto* item = as<QStyleOptionMenuItem>(option))
        return MenuPainting::itemSize(*item, contents, qobject_cast<const QComboBox*>(widget) != nullptr);
      break;
    default:
      break;
  }
  return QProxyStyle::sizeFromContents(type, option, contents, widget);
}

int QuillStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
  switch (metric) {
    case PM_ScrollBarExtent:
      return RangePainting::scrollBarExtent;
    case PM_ScrollBarSliderMin:
      return 32;
    case PM_ScrollView_ScrollBarSpacing:
    case PM_ScrollView_ScrollBarOverlap:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
    case PM_ButtonDefaultIndicator:
    case PM_MenuPanelWidth:
      return 0;
    case PM_SliderThickness:
    case PM_SliderControlThickness:
      return RangePainting::knobSize + 6;
    case PM_SliderLength:
      return RangePainting::knobSize;
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
      return ButtonPainting::indicatorSize;
    case PM_CheckBoxLabelSpacing:
    case PM_RadioButtonLabelSpacing:
      return 8;
    case PM_MenuHMargin:
    case PM_MenuVMargin:
      return MenuPainting::panelMargin;
    case PM_ToolTipLabelFrameWidth:
      return 6;
    default:
      return QProxyStyle::pixelMetric(metric, option, widget);
  }
}

int QuillStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                          QStyleHintReturn* returned) const {
  switch (hint) {
    case SH_Widget_Animation_Duration:
      return reducedMotion_ ? 0 : 200;
    case SH_Widget_Animate:
      return reducedMotion_ ? 0 : 1;
    case SH_EtchDisabledText:
    case SH_UnderlineShortcut:
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_MessageBox_CenterButtons:
    case SH_ScrollBar_Transient:
      return 0;
    case SH_ToolTipLabel_Opacity:
      return 255;
    case SH_Slider_AbsoluteSetButtons:
      return Qt::LeftButton;
    case SH_Slider_PageSetButtons:
      return Qt::NoButton;
    case SH_Table_GridLineColor:
      return static_cast<int>(
          ThemeColors::of(option != nullptr ? option->palette : QApplication::palette()).separator.rgba());
    default:
      return QProxyStyle::styleHint(hint, option, widget, returned);
  }
}

QIcon QuillStyle::standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const {
  const ThemeColors& colors = ThemeColors::of(widget != nullptr ? widget->palette() : QApplication::palette());
  switch (icon) {
    case SP_MessageBoxInformation:
      return messageIcon("info.circle", colors.accent);
    case SP_MessageBoxQuestion:
      return messageIcon("questionmark", colors.accent);
    case SP_MessageBoxWarning:
      return messageIcon("exclamationmark.triangle", colors.warning);
    case SP_MessageBoxCritical:
      return messageIcon("xmark.circle", colors.danger);
    default:
      return QProxyStyle::standardIcon(icon, option, widget);
  }
}

// What the toolkit falls back to when it adopts a new style: the colours that are in force.
QPalette QuillStyle::standardPalette() const {
  return qApp != nullptr ? ThemeColors::of(QApplication::palette()).palette() : ThemeColors::of(false, false).palette();
}

void QuillStyle::polish(QWidget* widget) {
  QProxyStyle::polish(widget);
  if (qobject_cast<QAbstractButton*>(widget) != nullptr || qobject_cast<QComboBox*>(widget) != nullptr ||
      qobject_cast<QAbstractSpinBox*>(widget) != nullptr || qobject_cast<QAbstractSlider*>(widget) != nullptr ||
      widget->inherits("QLineEdit"))
    widget->setAttribute(Qt::WA_Hover);
  // Nothing but the thumb is painted.
  if (qobject_cast<QScrollBar*>(widget) != nullptr) widget->setAttribute(Qt::WA_OpaquePaintEvent, false);
  // The container paints the ground of a combo box's list, with its round corners.
  if (widget->inherits("QComboBoxListView"))
    static_cast<QAbstractScrollArea*>(widget)->viewport()->setAutoFillBackground(false);
  if (isFloating(*widget) && isAlwaysComposited()) widget->setAttribute(Qt::WA_TranslucentBackground);
}

}  // namespace quillmeter
