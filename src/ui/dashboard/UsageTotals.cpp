#include "ui/dashboard/UsageTotals.h"

#include <QEvent>
#include <QGridLayout>
#include <QVBoxLayout>

#include "base/L10n.h"
#include "core/model/MetricFormatter.h"
#include "preferences/MonitorComponentKind.h"
#include "ui/theme/QtText.h"
#include "ui/theme/Typography.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/WidgetAccessibility.h"

namespace quillmeter {

namespace {

constexpr int oneLineFrom = 640;  // width of the card
constexpr std::array<const char*, 5> partNames = {"input", "output", "cached", "sessions", "hitRate"};

void setFigure(FigureLabel& value, const FigureLabel& label, const QString& text) {
  value.setText(text);
  WidgetAccessibility::setName(value, QStringLiteral("%1 %2").arg(label.text(), text));
}

}  // namespace

UsageTotals::UsageTotals(QWidget* parent) : Card(parent), grid_(new QWidget(this)) {
  setObjectName(QStringLiteral("dashboard.agents.totals"));
  total_ = makeFigure("total", true);
  for (std::size_t i = 0; i < parts_.size(); ++i) parts_[i] = makeFigure(partNames[i], false);
  auto* cells = new QGridLayout(grid_);
  cells->setContentsMargins(0, 0, 0, 0);
  cells->setHorizontalSpacing(20);
  cells->setVerticalSpacing(14);
  content()->addWidget(grid_);
  place(true);
  retranslate();
}

UsageTotals::Figure UsageTotals::makeFigure(const char* name, bool isLarge) {
  Figure figure;
  figure.widget = new QWidget(grid_);
  figure.value = new FigureLabel(isLarge ? TextRole::largeFigure : TextRole::figure, TextTone::primary, figure.widget);
  figure.value->setObjectName(QStringLiteral("dashboard.agents.totals.%1").arg(QLatin1String(name)));
  figure.label = new FigureLabel(TextRole::caption, TextTone::secondary, figure.widget);
  auto* column = new QVBoxLayout(figure.widget);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(2);
  column->addStretch(1);
  column->addWidget(figure.value);
  column->addWidget(figure.label);
  return figure;
}

// All in one line, or the total before two lines of the others.
void UsageTotals::place(bool isOneLine) {
  if (isOneLine_ == isOneLine) return;
  isOneLine_ = isOneLine;
  auto* cells = dynamic_cast<QGridLayout*>(grid_->layout());
  while (QLayoutItem* item = cells->takeAt(0)) delete item;
  const int columns = isOneLine ? static_cast<int>(parts_.size()) : 3;
  cells->addWidget(total_.widget, 0, 0, isOneLine ? 1 : 2, 1, isOneLine ? Qt::Alignment() : Qt::AlignTop);
  for (int i = 0; i < static_cast<int>(parts_.size()); ++i) {
    cells->addWidget(parts_[static_cast<std::size_t>(i)].widget, i / columns, 1 + i % columns);
  }
  for (int column = 0; column <= static_cast<int>(parts_.size()); ++column) {
    cells->setColumnStretch(column, column > columns ? 0 : column == 0 ? 3 : 2);
  }
}

void UsageTotals::resizeEvent(QResizeEvent* event) {
  place(width() >= lengthForText(oneLineFrom));
  Card::resizeEvent(event);
}

void UsageTotals::setMetrics(const std::optional<AgentTokenMetrics>& metrics) {
  const QString unknown = QStringLiteral("—");
  const auto tokens = [&](std::int64_t AgentTokenMetrics::*count) {
    return metrics ? qtText(MetricFormatter::tokens((*metrics).*count)) : unknown;
  };
  const auto rate = metrics ? metrics->cacheHitRate() : std::nullopt;
  const std::array<QString, 5> texts = {
      tokens(&AgentTokenMetrics::inputTokens), tokens(&AgentTokenMetrics::outputTokens),
      tokens(&AgentTokenMetrics::cachedTokens), metrics ? QString::number(metrics->sessionCount) : unknown,
      rate ? qtText(MetricFormatter::percent(*rate)) : unknown};
  setFigure(*total_.value, *total_.label, tokens(&AgentTokenMetrics::totalTokens));
  for (std::size_t i = 0; i < parts_.size(); ++i) setFigure(*parts_[i].value, *parts_[i].label, texts[i]);
}

void UsageTotals::setTitle(const QString& title) {
  setHeader(std::string(symbol(MonitorComponentKind::agentTokens)),
            std::string(quillmeter::tint(MonitorComponentKind::agentTokens)), title);
}

void UsageTotals::retranslate() {
  total_.label->setText(qtText(QM_TR("总计")));
  const std::array<std::string, 5> labels = {QM_TR("输入"), QM_TR("输出"), QM_TR("缓存"), QM_TR("会话"),
                                             QM_TR("缓存命中")};
  for (std::size_t i = 0; i < parts_.size(); ++i) parts_[i].label->setText(qtText(labels[i]));
  // What is read aloud names the label as well.
  setFigure(*total_.value, *total_.label, total_.value->text());
  for (const Figure& part : parts_) setFigure(*part.value, *part.label, part.value->text());
}

void UsageTotals::changeEvent(QEvent* event) {
  if (event->type() == QEvent::LanguageChange) retranslate();
  if (event->type() == QEvent::FontChange) place(width() >= lengthForText(oneLineFrom));
  Card::changeEvent(event);
}

}  // namespace quillmeter
