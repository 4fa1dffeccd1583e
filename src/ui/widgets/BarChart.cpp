#include "ui/widgets/BarChart.h"

#include <algorithm>

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>

#include "menubar/TabularText.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/theme/Typography.h"
#include "ui/widgets/BarChartLayout.h"
#include "ui/widgets/WidgetAccessibility.h"

namespace quillmeter {
namespace {

constexpr QSize usualSize(360, 180);
constexpr QSize leastSize(160, 110);
constexpr double barRadius = 4;
constexpr double calmShare = 0.62;  // of the tint, in a bar that is neither current nor highlighted

QPainterPath roundedTop(const QRectF& bar) {
  const double radius = std::min({barRadius, bar.width() / 2, bar.height()});
  QPainterPath path;
  path.moveTo(bar.bottomLeft());
  path.lineTo(bar.left(), bar.top() + radius);
  path.quadTo(bar.topLeft(), QPointF(bar.left() + radius, bar.top()));
  path.lineTo(bar.right() - radius, bar.top());
  path.quadTo(bar.topRight(), QPointF(bar.right(), bar.top() + radius));
  path.lineTo(bar.bottomRight());
  path.closeSubpath();
  return path;
}

}  // namespace

// One drawing of the chart.
class BarChart::Painting {
 public:
  Painting(BarChart& chart, QPainter& painter)
      : chart_(chart),
        painter_(painter),
        colors_(ThemeColors::of(chart.palette())),
        tint_(colors_.tint(chart.tint_)),
        font_(fontFor(TextRole::caption)),
        layout_(chart.rect(), chart.bars_, font_) {
    painter_.setFont(font_);
  }

  void paint() {
    scale();
    for (std::size_t index = 0; index < chart_.bars_.size(); ++index) bar(index);
    painter_.setPen(colors_.secondaryText);
    for (const std::size_t index : layout_.labelled())
      TabularText::draw(painter_, layout_.label(index), Qt::AlignCenter, chart_.bars_[index].label);
    headline();
    if (chart_.isEmpty() && !chart_.emptyText_.isEmpty()) {
      painter_.setFont(fontFor(TextRole::body));
      painter_.setPen(colors_.secondaryText);
      painter_.drawText(layout_.plot(), Qt::AlignCenter | Qt::TextWordWrap, chart_.emptyText_);
    }
  }

 private:
  void scale() {
    const double line = Shapes::hairline(painter_);
    const QRectF& plot = layout_.plot();
    const auto draw = [&](double y, const QColor& color) {
      painter_.fillRect(Shapes::onPixels(painter_, QRectF(plot.left(), y, plot.width(), line)), color);
    };
    draw(plot.bottom(), colors_.border);
    if (chart_.isEmpty()) return;
    for (const double value : {layout_.top(), layout_.top() / 2}) {
      draw(layout_.yOf(value), colors_.separator);
    }
  }

  void bar(std::size_t index) {
    const ChartBar& shown = chart_.bars_[index];
    const bool isHighlighted = chart_.highlighted_ == static_cast<int>(index);
    if (isHighlighted) {
      const QRectF column = layout_.slot(index);
      Shapes::panel(painter_, column, barRadius, mixed(colors_.surface, tint_, 0.1));
      if (Shapes::showsFocus(chart_)) Shapes::focusFrame(painter_, column, barRadius, colors_);
    }
    const QRectF place = Shapes::onPixels(painter_, layout_.bar(index, shown.value));
    if (place.height() <= 0) return;
    painter_.setRenderHint(QPainter::Antialiasing);
    painter_.fillPath(roundedTop(place), isHighlighted || shown.isCurrent || colors_.highContrast
                                             ? tint_
                                             : mixed(colors_.surface, tint_, calmShare));
  }

  // What is highlighted, else what the upper line stands for.
  void headline() {
    const QRectF& line = layout_.headline();
    const bool hasScale = chart_.scaleText_ && !chart_.isEmpty();
    const QString top = hasScale ? chart_.scaleText_(layout_.top()) : QString();
    if (chart_.highlighted_) {
      constexpr double gap = 12;
      const ChartBar& shown = chart_.bars_[static_cast<std::size_t>(*chart_.highlighted_)];
      const double taken = hasScale ? TabularText::width(top, font_) + gap : 0;
      painter_.setPen(colors_.text);
      TabularText::draw(painter_, line.adjusted(taken, 0, 0, 0), Qt::AlignRight | Qt::AlignVCenter, shown.description);
    }
    if (!hasScale) return;
    painter_.setPen(colors_.tertiaryText);
    TabularText::draw(painter_, line, Qt::AlignLeft | Qt::AlignVCenter, top);
    const double height = line.height();
    const QRectF middle(line.left(), layout_.yOf(layout_.top() / 2) - height, line.width(), height);
    const QString half = chart_.scaleText_(layout_.top() / 2);
    // Over bars it would not be legible without a ground.
    QRectF ground = middle;
    ground.setWidth(TabularText::width(half, font_) + 4);
    QColor veil = colors_.surface;
    veil.setAlphaF(0.75F);
    painter_.fillRect(ground, veil);
    TabularText::draw(painter_, middle, Qt::AlignLeft | Qt::AlignVCenter, half);
  }

  BarChart& chart_;
  QPainter& painter_;
  const ThemeColors& colors_;
  QColor tint_;
  QFont font_;
  BarChartLayout layout_;
};

BarChart::BarChart(QWidget* parent) : QWidget(parent) {
  WidgetAccessibility::install();
  setMouseTracking(true);
  setFocusPolicy(Qt::TabFocus);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void BarChart::setBars(std::vector<ChartBar> bars) {
  if (bars == bars_) return;
  bars_ = std::move(bars);
  if (highlighted_ && *highlighted_ >= static_cast<int>(bars_.size())) highlighted_.reset();
  setAccessibleDescription(highlighted_ ? bars_[static_cast<std::size_t>(*highlighted_)].description : QString());
  update();
}

void BarChart::setTint(std::string hex) {
  if (hex == tint_) return;
  tint_ = std::move(hex);
  update();
}

void BarChart::setScaleText(std::function<QString(double)> format) {
  scaleText_ = std::move(format);
  update();
}

void BarChart::setEmptyText(const QString& text) {
  if (text == emptyText_) return;
  emptyText_ = text;
  update();
}

void BarChart::setChosen(std::function<void(int index)> chosen) {
  chosen_ = std::move(chosen);
}

bool BarChart::isEmpty() const {
  return std::none_of(bars_.begin(), bars_.end(), [](const ChartBar& bar) { return bar.value > 0; });
}

void BarChart::highlight(std::optional<int> index) {
  if (index == highlighted_) return;
  highlighted_ = index;
  setAccessibleDescription(index ? bars_[static_cast<std::size_t>(*index)].description : QString());
  update();
}

QSize BarChart::sizeHint() const {
  return usualSize;
}

QSize BarChart::minimumSizeHint() const {
  return leastSize;
}

bool BarChart::event(QEvent* event) {
  if (event->type() == QEvent::FocusIn && !highlighted_ && !bars_.empty()) {
    const auto current = std::find_if(bars_.begin(), bars_.end(), [](const ChartBar& bar) { return bar.isCurrent; });
    highlight(current == bars_.end() ? 0 : static_cast<int>(current - bars_.begin()));
  }
  return QWidget::event(event);
}

void BarChart::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  Painting(*this, painter).paint();
}

void BarChart::mouseMoveEvent(QMouseEvent* event) {
  highlight(BarChartLayout(rect(), bars_, fontFor(TextRole::caption)).barAt(event->position()));
}

void BarChart::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
  highlight(BarChartLayout(rect(), bars_, fontFor(TextRole::caption)).barAt(event->position()));
  if (highlighted_ && chosen_) chosen_(*highlighted_);
}

void BarChart::leaveEvent(QEvent*) {
  if (!hasFocus()) highlight(std::nullopt);
}

void BarChart::keyPressEvent(QKeyEvent* event) {
  const int last = static_cast<int>(bars_.size()) - 1;
  const int now = highlighted_.value_or(0);
  if (last < 0) return QWidget::keyPressEvent(event);
  switch (event->key()) {
    case Qt::Key_Left:
      return highlight(std::max(0, now - 1));
    case Qt::Key_Right:
      return highlight(std::min(last, now + 1));
    case Qt::Key_Home:
      return highlight(0);
    case Qt::Key_End:
      return highlight(last);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      if (highlighted_ && chosen_) return chosen_(*highlighted_);
      break;
    default:
      break;
  }
  QWidget::keyPressEvent(event);
}

void BarChart::focusOutEvent(QFocusEvent* event) {
  highlight(std::nullopt);
  QWidget::focusOutEvent(event);
}

}  // namespace quillmeter
