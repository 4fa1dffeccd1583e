#include "ui/screentime/ApplicationList.h"

#include <algorithm>

#include <QGridLayout>
#include <QPushButton>
#include <QVBoxLayout>

#include "base/L10n.h"
#include "core/model/MetricFormatter.h"
#include "ui/screentime/ActivityPalette.h"
#include "ui/screentime/ActivityText.h"
#include "ui/screentime/ApplicationIconView.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/LevelBar.h"

namespace quillmeter {
namespace {

constexpr int iconPoints = 30;

// One width for all lines, so that the bars end below each other.
QString widestDuration() {
  constexpr double seconds = 99 * 3'600 + 59 * 60;
  return ActivityText::duration(seconds);
}

}  // namespace

class ApplicationList::Row : public QWidget {
 public:
  Row(ApplicationIcons& icons, QWidget* parent) : QWidget(parent) {
    icon_ = new ApplicationIconView(icons, iconPoints, this);
    name_ = new FigureLabel(TextRole::body, TextTone::primary, this);
    share_ = new FigureLabel(TextRole::caption, TextTone::secondary, this);
    share_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    share_->setWidestText(QStringLiteral("100%"));
    duration_ = new FigureLabel(TextRole::body, TextTone::primary, this);
    duration_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    bar_ = new LevelBar(this);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(0, 6, 0, 6);
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(4);
    grid->addWidget(icon_, 0, 0, 2, 1, Qt::AlignVCenter);
    grid->addWidget(name_, 0, 1);
    grid->addWidget(duration_, 0, 2);
    grid->addWidget(bar_, 1, 1);
    grid->addWidget(share_, 1, 2);
    grid->setColumnStretch(1, 1);
  }

  // The bar is measured by the most used application, the percentage by the whole.
  void show(const ActivitySummary::AppTotal& total, const std::string& tint, double longest, double whole) {
    icon_->setApplication(total.app, tint);
    name_->setText(ActivityText::name(total.app));
    duration_->setWidestText(widestDuration());
    duration_->setText(ActivityText::duration(total.seconds));
    share_->setText(qtText(MetricFormatter::percent(whole > 0 ? total.seconds / whole : 0)));
    bar_->setTint(tint);
    bar_->setFraction(longest > 0 ? total.seconds / longest : 0);
    setAccessibleName(name_->text());
    setAccessibleDescription(duration_->text());
  }

 private:
  ApplicationIconView* icon_;
  FigureLabel* name_;
  FigureLabel* share_;
  FigureLabel* duration_;
  LevelBar* bar_;
};

ApplicationList::ApplicationList(ApplicationIcons& icons, ActivityPalette& palette, QWidget* parent)
    : Card(parent), icons_(icons), palette_(palette) {
  setObjectName("screenTime.applications");
  lines_ = new QVBoxLayout;
  lines_->setSpacing(0);
  content()->addLayout(lines_);
  more_ = new QPushButton(this);
  more_->setObjectName("screenTime.applications.more");
  more_->setFlat(true);
  content()->addWidget(more_, 0, Qt::AlignHCenter);
  QObject::connect(more_, &QPushButton::clicked, this, [this] {
    showsAll_ = !showsAll_;
    fill();
  });
  retranslate();
}

void ApplicationList::setUse(const std::vector<ActivitySummary::AppTotal>& apps, double total) {
  if (apps == apps_ && total == total_) return;
  apps_ = apps;
  total_ = total;
  fill();
}

void ApplicationList::retranslate() {
  setHeader("circle.grid.2x3", "4C8DFF", qtText(QM_TR("应用")));
  fill();
}

void ApplicationList::fill() {
  const std::size_t shown = showsAll_ ? apps_.size() : std::min(apps_.size(), firstShown);
  while (rows_.size() < shown) {
    rows_.push_back(new Row(icons_, this));
    lines_->addWidget(rows_.back());
  }
  for (std::size_t index = 0; index < rows_.size(); ++index) {
    rows_[index]->setVisible(index < shown);
    if (index >= shown) continue;
    const ActivitySummary::AppTotal& total = apps_[index];
    rows_[index]->show(total, palette_.tint(total.app.id), apps_.front().seconds, total_);
  }
  more_->setVisible(apps_.size() > firstShown);
  more_->setText(
      qtText(showsAll_ ? QM_TR("收起") : L10n::format(QM_TR("显示全部 %d 个应用"), {std::to_string(apps_.size())})));
}

}  // namespace quillmeter
