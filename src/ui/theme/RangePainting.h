#pragma once

#include <QRect>
#include <QStyle>

class QPainter;
class QStyleOptionSlider;

namespace quillmeter {

// Sliders and scroll bars. The filled part of a slider has the palette's highlight colour, so that an owner can tint
// it.
namespace RangePainting {

constexpr int knobSize = 18;
constexpr int scrollBarExtent = 10;

void slider(const QStyleOptionSlider& option, QPainter& painter);
void scrollBar(const QStyleOptionSlider& option, QPainter& painter);
QRect sliderPart(const QStyleOptionSlider& option, QStyle::SubControl part);
QRect scrollBarPart(const QStyleOptionSlider& option, QStyle::SubControl part);

}  // namespace RangePainting

}  // namespace quillmeter
