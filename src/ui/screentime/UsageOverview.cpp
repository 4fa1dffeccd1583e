#include "ui/screentime/UsageOverview.h"

#include <algorithm>
#include <string>

#include <QHBoxLayout>
#include <QVBoxLayout>

#include "base/L10n.h"
#include "ui/screentime/ActivityText.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/BarChart.h"
#include "ui/widgets/FigureLabel.h"

namespace quillmeter {
namespace {

constexpr std::string_view tintHex = "4C8DFF";
constexpr int labelledEveryHours = 3;
constexpr double secondsOfHour = 3'600;

QString described(const QString& when, double seconds) {
  return qtText(L10n::format("%@ · %@", {when.toStdString(), ActivityText::duration(seconds).toStdString()}));
}

// "共 3 个应用", or how much of a week it makes a day.
QString totalNote(const ActivitySummary& summary, bool isWeek) {
  if (!(summary.total > 0)) return {};
  if (!isWeek && summary.apps.size() == 1) return qtText(QM_TR("共 1 个应用"));
  if (!isWeek) return qtText(L10n::format(QM_TR("共 %d 个应用"), {std::to_string(summary.apps.size())}));
  const auto used = std::ranges::count_if(summary.buckets, [](const auto& bucket) { return bucket.seconds > 0; });
  const double average = summary.total / static_cast<double>(used);
  return qtText(L10n::format(QM_TR("有记录日均 %@"), {ActivityText::duration(average).toStdString()}));
}

// The name last: it is what may be cut where there is no room.
QString longestNote(const ActivitySpan& span, bool isWeek, const Calendar& calendar) {
  const std::string when = ActivityText::clockRange(span.start, span.end, calendar).toStdString();
  if (!isWeek) return qtText(L10n::format("%@ · %@", {when, ActivityText::name(span.app).toStdString()}));
  return qtText(L10n::format("%@ %@ · %@", {ActivityText::weekday(span.start, calendar).toStdString(), when,
                                            ActivityText::name(span.app).toStdString()}));
}

}  // namespace

UsageOverview::UsageOverview(QWidget* parent) : Card(parent) {
  setObjectName("screenTime.overview");
  auto* figures = new QHBoxLayout;
  figures->setSpacing(24);
  figures->addWidget(makeFigure(totalTitle_, total_, totalNote_), 1);
  figures->addWidget(makeFigure(longestTitle_, longest_, longestNote_), 1);
  total_->setObjectName("screenTime.total");
  longest_->setObjectName("screenTime.longest");
  content()->addLayout(figures);
  content()->addSpacing(8);
  chart_ = new BarChart(this);
  chart_->setObjectName("screenTime.chart");
  chart_->setTint(std::string(tintHex));
  chart_->setScaleText([](double hours) { return ActivityText::scale(hours * secondsOfHour); });
  chart_->setChosen([this](int index) {
    if (isWeek_ && dayChosen_ && index >= 0 && static_cast<std::size_t>(index) < barStarts_.size())
      dayChosen_(barStarts_[static_cast<std::size_t>(index)]);
  });
  content()->addWidget(chart_);
  retranslate();
}

QWidget* UsageOverview::makeFigure(FigureLabel*& title, FigureLabel*& figure, FigureLabel*& note) {
  auto* group = new QWidget(this);
  auto* column = new QVBoxLayout(group);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  title = new FigureLabel(TextRole::body, TextTone::secondary, group);
  figure = new FigureLabel(TextRole::figure, TextTone::primary, group);
  note = new FigureLabel(TextRole::caption, TextTone::secondary, group);
  for (FigureLabel* label : {title, figure, note}) column->addWidget(label);
  return group;
}

void UsageOverview::setUse(const ActivitySummary& summary, bool isWeek, Date now, const Calendar& calendar) {
  isWeek_ = isWeek;
  total_->setText(ActivityText::duration(summary.total));
  totalNote_->setText(totalNote(summary, isWeek));
  const ActivitySpan* longest = summary.longestSpan();
  longest_->setText(longest != nullptr ? ActivityText::duration(longest->seconds()) : QStringLiteral("—"));
  longestNote_->setText(longest != nullptr ? longestNote(*longest, isWeek, calendar) : QString());
  showBars(summary, now, calendar);
}

void UsageOverview::showBars(const ActivitySummary& summary, Date now, const Calendar& calendar) {
  std::vector<ChartBar> bars;
  barStarts_.clear();
  for (const ActivitySummary::Bucket& bucket : summary.buckets) {
    ChartBar bar;
    bar.value = bucket.seconds / secondsOfHour;  // so that the scale's lines are at round times
    bar.isCurrent = bucket.start <= now && now < bucket.end;
    if (isWeek_) {
      bar.label = ActivityText::weekday(bucket.start, calendar);
      bar.description = described(ActivityText::longDay(bucket.start, calendar), bucket.seconds);
    } else {
      if (calendar.components(bucket.start).hour % labelledEveryHours == 0)
        bar.label = ActivityText::clock(bucket.start, calendar);
      bar.description = described(ActivityText::clockRange(bucket.start, bucket.end, calendar), bucket.seconds);
    }
    bars.push_back(std::move(bar));
    barStarts_.push_back(bucket.start);
  }
  chart_->setAccessibleName(qtText(isWeek_ ? QM_TR("每天") : QM_TR("每小时")));
  chart_->setBars(std::move(bars));
}

void UsageOverview::retranslate() {
  setAccessibleName(qtText(QM_TR("有效使用时间")));
  totalTitle_->setText(qtText(QM_TR("有效使用时间")));
  longestTitle_->setText(qtText(QM_TR("最长连续使用")));
  chart_->setEmptyText(qtText(QM_TR("这段时间没有使用记录。")));
}

}  // namespace quillmeter
