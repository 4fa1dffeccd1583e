#include "ui/screentime/TimelineCard.h"

#include <algorithm>
#include <map>
#include <string_view>

#include <QGridLayout>

#include "base/L10n.h"
#include "menubar/TabularText.h"
#include "screentime/model/ActivityTimelineGroup.h"
#include "ui/screentime/ActivityPalette.h"
#include "ui/screentime/ActivityText.h"
#include "ui/screentime/TimelineStrip.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/FigureLabel.h"

namespace quillmeter {
namespace {

constexpr std::size_t namedApps = 3;
constexpr int hoursBetweenTicks = 3;

// The marks of a day of 23, 24 or 25 hours stand where its hours are.
std::vector<TimelineTick> ticksOf(const DateInterval& day, const Calendar& calendar) {
  std::vector<TimelineTick> ticks;
  const double length = day.end.secondsSince(day.start);
  for (int hour = 0;; ++hour) {
    const Date at = calendar.adding(hour, CalendarUnit::hour, day.start).value_or(day.end);
    if (at >= day.end) break;
    if (calendar.components(at).hour % hoursBetweenTicks == 0)
      ticks.push_back({at.secondsSince(day.start) / length, ActivityText::clock(at, calendar)});
  }
  ticks.push_back({1.0, QStringLiteral("24:00")});
  return ticks;
}

// The most used ones, as many as asked for.
QString namesOf(const ActivityTimelineGroup& group, std::size_t count) {
  QString names;
  for (std::size_t index = 0; index < std::min(group.apps.size(), count); ++index) {
    const ActivitySummary::AppTotal& total = group.apps[index];
    if (index > 0) names += QStringLiteral("   ");
    names += qtText(L10n::format(
        "%@ %@", {ActivityText::duration(total.seconds).toStdString(), ActivityText::name(total.app).toStdString()}));
  }
  return group.apps.size() > count ? names + QStringLiteral(" …") : names;
}

// From all that are named down to one, for narrower and narrower places.
std::vector<QString> namesOf(const ActivityTimelineGroup& group) {
  std::vector<QString> choices;
  for (std::size_t count = std::min(namedApps, group.apps.size()); count > 0; --count)
    choices.push_back(namesOf(group, count));
  return choices;
}

}  // namespace

// A strip; in a week with the day and its use beside it.
class TimelineCard::Line : public QWidget {
 public:
  explicit Line(QWidget* parent) : QWidget(parent) {
    day_ = new FigureLabel(TextRole::body, TextTone::primary, this);
    total_ = new FigureLabel(TextRole::caption, TextTone::secondary, this);
    apps_ = new FigureLabel(TextRole::caption, TextTone::secondary, this);
    strip_ = new TimelineStrip(this);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(gap);
    grid->setVerticalSpacing(2);
    grid->addWidget(day_, 0, 0);
    grid->addWidget(total_, 1, 0);
    grid->addWidget(strip_, 0, 1);
    grid->addWidget(apps_, 1, 1);
    grid->setColumnStretch(1, 1);
  }

  // `apps` holds one text for each width, the widest first.
  void showDay(const QString& day, const QString& total, std::vector<QString> apps) {
    day_->setText(day);
    strip_->setAccessibleName(day);
    total_->setText(total);
    appTexts_ = std::move(apps);
    chooseAppText();
    alignStrips();
    for (QWidget* label : {day_, total_, apps_}) label->setVisible(true);
  }
  void showStripAlone() {
    strip_->setAccessibleName(qtText(QM_TR("时间线")));
    for (QWidget* label : {day_, total_, apps_}) label->setVisible(false);
  }
  TimelineStrip* strip() const { return strip_; }

 protected:
  void resizeEvent(QResizeEvent*) override { chooseAppText(); }
  void changeEvent(QEvent* event) override {
    QWidget::changeEvent(event);
    if (event->type() != QEvent::FontChange || appTexts_.empty()) return;
    alignStrips();
    chooseAppText();
  }

 private:
  // One width for all lines, so that the strips stand below each other.
  void alignStrips() {
    for (QWidget* label : {day_, total_}) label->setFixedWidth(dayWidth());
  }
  void chooseAppText() {
    const double room = width() - dayWidth() - gap;
    const QFont font = fontFor(TextRole::caption);
    const auto fits = [&](const QString& text) { return TabularText::width(text, font) <= room; };
    const auto chosen = std::ranges::find_if(appTexts_, fits);
    if (chosen != appTexts_.end()) {
      apps_->setText(*chosen);
    } else if (!appTexts_.empty()) {
      apps_->setText(appTexts_.back());
    }
  }
  int dayWidth() const { return fontMetrics().averageCharWidth() * 15; }

  static constexpr int gap = 14;

  std::vector<QString> appTexts_;
  FigureLabel* day_;
  FigureLabel* total_;
  FigureLabel* apps_;
  TimelineStrip* strip_;
};

TimelineCard::TimelineCard(ActivityPalette& palette, QWidget* parent) : Card(parent), palette_(palette) {
  setObjectName("screenTime.timeline");
  retranslate();
  described_ = new FigureLabel(TextRole::body, TextTone::secondary, this);
  described_->setObjectName("screenTime.timeline.described");
  described_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  addHeaderControl(described_);
}

void TimelineCard::setUse(const ActivitySummary& summary, bool isWeek, const Calendar& calendar) {
  calendar_ = calendar;
  apps_.clear();
  for (const ActivitySummary::AppTotal& total : summary.apps) apps_.push_back(total.app);
  if (summary.spans.empty()) return keepLines(0);
  isWeek ? showWeek(summary, calendar) : showDay(summary, calendar);
}

void TimelineCard::keepLines(std::size_t count) {
  while (lines_.size() < count) {
    auto* line = new Line(this);
    line->strip()->setDescribed([this, line](const TimelineBlock* block) {
      const QString text = block != nullptr ? description(*block) : QString();
      described_->setText(text);
      line->strip()->setAccessibleDescription(text);
    });
    content()->addWidget(line);
    lines_.push_back(line);
  }
  for (std::size_t index = 0; index < lines_.size(); ++index) lines_[index]->setVisible(index < count);
}

namespace {

// Blocks and tints of a part of the summary, with the applications counted as the summary lists them.
class BlockMaker {
 public:
  BlockMaker(const ActivitySummary& summary, ActivityPalette& palette) {
    for (std::size_t index = 0; index < summary.apps.size(); ++index) {
      indexes_.emplace(summary.apps[index].app.id, index);
      tints_.push_back(palette.tint(summary.apps[index].app.id));
    }
  }
  void fill(TimelineStrip& strip, const DateInterval& interval, const std::vector<ActivitySpan>& spans) const {
    std::vector<TimelineBlock> blocks;
    blocks.reserve(spans.size());
    for (const ActivitySpan& span : spans) blocks.push_back({span.start, span.end, indexes_.at(span.app.id)});
    strip.setUse(interval, std::move(blocks), tints_);
  }

 private:
  std::map<std::string_view, std::size_t> indexes_;
  std::vector<std::string> tints_;
};

}  // namespace

void TimelineCard::showDay(const ActivitySummary& summary, const Calendar& calendar) {
  keepLines(1);
  const DateInterval day{summary.buckets.front().start, summary.buckets.back().end};
  lines_.front()->showStripAlone();
  lines_.front()->strip()->setTicks(ticksOf(day, calendar));
  BlockMaker(summary, palette_).fill(*lines_.front()->strip(), day, summary.spans);
}

void TimelineCard::showWeek(const ActivitySummary& summary, const Calendar& calendar) {
  const std::vector<ActivityTimelineGroup> groups = ActivityTimelineGroup::make(summary);
  const BlockMaker maker(summary, palette_);
  keepLines(groups.size());
  for (std::size_t index = 0; index < groups.size(); ++index) {
    const ActivityTimelineGroup& group = groups[index];
    Line* line = lines_[index];
    line->showDay(ActivityText::longDay(group.start, calendar), ActivityText::duration(group.total), namesOf(group));
    line->strip()->setTicks({});
    maker.fill(*line->strip(), {group.start, group.end}, group.spans);
  }
}

QString TimelineCard::description(const TimelineBlock& block) const {
  const std::string when = ActivityText::clockRange(block.start, block.end, calendar_).toStdString();
  const std::string duration = ActivityText::duration(block.end.secondsSince(block.start)).toStdString();
  return qtText(
      L10n::format("%@ · %@ · %@", {when, duration, ActivityText::name(apps_[block.application]).toStdString()}));
}

void TimelineCard::retranslate() {
  setHeader("clock", "4C8DFF", qtText(QM_TR("时间线")));
}

}  // namespace quillmeter
