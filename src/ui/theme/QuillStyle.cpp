#include "ui/theme/QuillStyle.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QApplication>
#include <QComboBox>
#include <QIcon>
#include <QPainter>
#include <QScrollBar>
#include <QStyleOption>

#include "menubar/SymbolPainter.h"
#include "ui/theme/ButtonPainting.h"
#include "ui/theme/FieldPainting.h"
#include "ui/theme/FloatingSurface.h"
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
      MenuPainting::panel(option, painter, FloatingSurface::radius(widget != nullptr && widget->inherits("QTipLabel")));
      return true;
    case PE_FrameMenu:
      return true;
    case PE_Frame:
      Shapes::panel(painter, option.rect, 0, {}, ThemeColors::of(option.palette).border);
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
  if (qobject_cast<QScrollBar*>(widget) != nullptr) {
    widget->setAttribute(Qt::WA_OpaquePaintEvent, false);  // nothing but the thumb is painted
    widget->setContextMenuPolicy(Qt::PreventContextMenu);  // the toolkit's has texts of its own language
  }
  // The container paints the ground of a combo box's list, with its round corners.
  if (widget->inherits("QComboBoxListView"))
    static_cast<QAbstractScrollArea*>(widget)->viewport()->setAutoFillBackground(false);
  if (FloatingSurface::is(*widget) && FloatingSurface::isAlwaysComposited())
    widget->setAttribute(Qt::WA_TranslucentBackground);
}

}  // namespace quillmeter
