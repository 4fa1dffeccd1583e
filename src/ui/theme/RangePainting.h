#pragma once

#include <QRect>
#include <QStyle>

class QPainter;
class QStyleOptionProgressBar;
class QStyleOptionSlider;

namespace quillmeter {

// Sliders, scroll bars and progress bars. The filled part of a slider and of a progress bar has the palette's highlight
// colour, so that an owner can tint it.
namespace RangePainting {

constexpr int knobSize = 18;
constexpr int scrollBarExtent = 10;

void slider(const QStyleOptionSlider& option, QPainter& painter);
void scrollBar(const QStyleOptionSlider& option, QPainter& painter);
void progressGroove(const QStyleOptionProgressBar& option, QPainter& painter);
void progressContents(const QStyleOptionProgressBar& option, QPainter& painter);
QRect sliderPart(const QStyleOptionSlider& option, QStyle::SubControl part);
QRect scrollBarPart(const QStyleOptionSlider& option, QStyle::SubControl part);

}  // namespace RangePainting

}  // namespace quillmeter
