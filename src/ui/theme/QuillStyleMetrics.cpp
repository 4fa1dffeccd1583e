#include <algorithm>

#include <QComboBox>
#include <QStyleOption>

#include "ui/theme/ButtonPainting.h"
#include "ui/theme/FieldPainting.h"
#include "ui/theme/FloatingSurface.h"
#include "ui/theme/MenuPainting.h"
#include "ui/theme/QuillStyle.h"
#include "ui/theme/RangePainting.h"

// The measures and habits of the standard controls.
namespace quillmeter {
namespace {

constexpr int labelFrame = 4;  // room for the focus frame beside the label of a check box

template <typename Option>
const Option* as(const QStyleOption* option) {
  return qstyleoption_cast<const Option*>(option);
}

}  // namespace

QRect QuillStyle::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const {
  switch (element) {
    case SE_PushButtonFocusRect:
      return option->rect;
    case SE_CheckBoxFocusRect:
    case SE_RadioButtonFocusRect:
      return QProxyStyle::subElementRect(element, option, widget).adjusted(-2, -1, labelFrame - 2, 1) & option->rect;
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
    case CT_CheckBox:
    case CT_RadioButton: {
      constexpr int leastHeight = 24;
      const QSize usual = QProxyStyle::sizeFromContents(type, option, contents, widget);
      return {usual.width() + labelFrame, std::max(leastHeight, usual.height())};
    }
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
    case SH_Menu_Mask:
    case SH_ToolTip_Mask: {
      auto* mask = qstyleoption_cast<QStyleHintReturnMask*>(returned);
      if (mask == nullptr || option == nullptr || FloatingSurface::isAlwaysComposited()) return 0;
      mask->region = FloatingSurface::mask(option->rect);
      return 1;
    }
    case SH_ToolTipLabel_Opacity:
      return 255;
    case SH_Slider_AbsoluteSetButtons:
      return Qt::LeftButton;
    case SH_Slider_PageSetButtons:
      return Qt::NoButton;
    default:
      return QProxyStyle::styleHint(hint, option, widget, returned);
  }
}

}  // namespace quillmeter
