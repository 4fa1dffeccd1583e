#pragma once

#include <QProxyStyle>

namespace quillmeter {

// How the standard controls look: flat, rounded, from the theme's colours, over the toolkit's own plain style. The
// application owns it. It keeps nothing of the widgets, so that it costs nothing while no window is open.
class QuillStyle : public QProxyStyle {
 public:
  QuillStyle();

  void setReducedMotion(bool reducedMotion) { reducedMotion_ = reducedMotion; }

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget) const override;
  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget) const override;
  QRect subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                         const QWidget* widget) const override;
  int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
  int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                QStyleHintReturn* returned) const override;
  QIcon standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const override;
  QPalette standardPalette() const override;
  using QProxyStyle::polish;
  void polish(QWidget* widget) override;

 private:
  bool drawIndicator(PrimitiveElement element, const QStyleOption& option, QPainter& painter) const;
  bool drawPanel(PrimitiveElement element, const QStyleOption& option, QPainter& painter, const QWidget* widget) const;

  bool reducedMotion_ = false;
};

}  // namespace quillmeter
