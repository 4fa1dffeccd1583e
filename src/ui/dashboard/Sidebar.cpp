#include "ui/dashboard/Sidebar.h"

#include <algorithm>
#include <utility>

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "core/model/ClockTexts.h"
#include "menubar/SymbolPainter.h"
#include "ui/theme/QtText.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/theme/Typography.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/ProgramGlyph.h"
#include "ui/widgets/SymbolButton.h"

namespace quillmeter {

namespace {

constexpr int entryHeight = 38;
constexpr int entryInset = 12;
constexpr int symbolEdge = 18;
constexpr int symbolGap = 10;
constexpr int margin = 12;
constexpr int topMargin = 20;
constexpr int iconEdge = 30;

}  // namespace

SidebarEntry::SidebarEntry(std::string page, std::string symbol, QWidget* parent)
    : QRadioButton(parent), page_(std::move(page)), symbol_(std::move(symbol)) {
  setObjectName(qtText("dashboard.sidebar." + page_));
  setAttribute(Qt::WA_Hover);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void SidebarEntry::setTitle(const QString& title, const QString& keys) {
  setText(title);
  setAccessibleName(title);
  setToolTip(QStringLiteral("%1 (%2)").arg(title, keys));
  update();
}

void SidebarEntry::setNarrow(bool isNarrow) {
  isNarrow_ = isNarrow;
  updateGeometry();
  update();
}

QSize SidebarEntry::sizeHint() const {
  if (isNarrow_) return {Sidebar::narrowWidth - 2 * margin, lengthForText(entryHeight)};
  const int textWidth = QFontMetrics(fontFor(TextRole::strong)).horizontalAdvance(text());
  return {2 * entryInset + symbolEdge + symbolGap + textWidth, lengthForText(entryHeight)};
}

void SidebarEntry::paintEvent(QPaintEvent*) {
  const ThemeColors& colors = ThemeColors::of(palette());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF area = Shapes::onPixels(painter, QRectF(rect()));
  if (isChecked()) {
    Shapes::panel(painter, area, Shapes::controlRadius, colors.selection);
  } else if (underMouse()) {
    Shapes::panel(painter, area, Shapes::controlRadius, colors.hover);
  }
  const int left = isNarrow_ ? (width() - symbolEdge) / 2 : entryInset;
  const QRectF box(left, (height() - symbolEdge) / 2.0, symbolEdge, symbolEdge);
  SymbolPainter::paint(painter, symbol_, box, isChecked() ? colors.accent : colors.secondaryText);
  if (!isNarrow_) {
    painter.setFont(fontFor(isChecked() ? TextRole::strong : TextRole::body));
    painter.setPen(colors.text);
    const int textLeft = entryInset + symbolEdge + symbolGap;
    painter.drawText(QRect(textLeft, 0, width() - textLeft, height()), Qt::AlignLeft | Qt::AlignVCenter, text());
  }
  if (Shapes::showsFocus(*this)) Shapes::focusFrame(painter, area, Shapes::controlRadius, colors);
}

Sidebar::Sidebar(const UiServices& services, Handlers handlers, QWidget* parent)
    : QWidget(parent), services_(services), handlers_(std::move(handlers)) {
  setObjectName(QStringLiteral("dashboard.sidebar"));
  icon_ = new ProgramGlyph(iconEdge, this);
  name_ = new FigureLabel(TextRole::heading, TextTone::primary, this);
  name_->setText(QStringLiteral("Quillmeter"));
  sampled_ = new FigureLabel(TextRole::caption, TextTone::secondary, this);
  sampled_->setObjectName(QStringLiteral("dashboard.sidebar.sampled"));
  scanned_ = new FigureLabel(TextRole::caption, TextTone::secondary, this);
  scanned_->setObjectName(QStringLiteral("dashboard.sidebar.scanned"));
  settings_ = new SymbolButton("gearshape", this);
  settings_->setObjectName(QStringLiteral("dashboard.sidebar.settings"));
  connect(settings_, &QAbstractButton::clicked, this, [this] { handlers_.settings(); });

  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(margin, topMargin, margin, margin);
  column->setSpacing(2);
  brand_ = new QHBoxLayout;
  brand_->setSpacing(symbolGap - (iconEdge - symbolEdge) / 2);
  brand_->addWidget(icon_, 0, Qt::AlignLeft);
  brand_->addWidget(name_, 1);
  column->addLayout(brand_);
  column->addSpacing(18);
  addEntry(pages[0], "square.grid.2x2", *column);
  addEntry(pages[1], "sparkles", *column);
  addEntry(pages[2], "hourglass", *column);
  column->addStretch(1);
  auto* freshness = new QVBoxLayout;
  freshness->setContentsMargins(entryInset, 0, 0, 0);
  freshness->setSpacing(2);
  freshness->addWidget(sampled_);
  freshness->addWidget(scanned_);
  column->addLayout(freshness);
  column->addSpacing(8);
  column->addWidget(settings_);
  brand_->setContentsMargins(entryInset - (iconEdge - symbolEdge) / 2, 0, 0, 0);
  retranslate();
}

void Sidebar::addEntry(const char* page, const char* symbol, QVBoxLayout& column) {
  auto* entry = new SidebarEntry(page, symbol, this);
  connect(entry, &QRadioButton::clicked, this, [this, entry] { handlers_.chosen(entry->page()); });
  column.addWidget(entry);
  entries_.push_back(entry);
}

void Sidebar::setChosen(std::string_view page) {
  for (SidebarEntry* entry : entries_) {
    if (entry->page() == page) entry->setChecked(true);
  }
}

void Sidebar::setNarrow(bool isNarrow) {
  if (isNarrow == isNarrow_) return;
  isNarrow_ = isNarrow;
  for (SidebarEntry* entry : entries_) entry->setNarrow(isNarrow);
  for (FigureLabel* label : {name_, sampled_, scanned_}) label->setVisible(!isNarrow);
  const int iconInset = isNarrow ? (narrowWidth - iconEdge) / 2 - margin : entryInset - (iconEdge - symbolEdge) / 2;
  brand_->setContentsMargins(iconInset, 0, 0, 0);
  layout()->setAlignment(settings_, isNarrow ? Qt::AlignHCenter : Qt::Alignment());
  retranslate();
}

void Sidebar::retranslate() {
  const QString titles[] = {qtText(QM_TR("总览")), qtText(QM_TR("Agent")), qtText(QM_TR("屏幕使用时间"))};
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    entries_[i]->setTitle(titles[i], QStringLiteral("Ctrl+%1").arg(i + 1));
  }
  const QString settings = qtText(QM_TR("设置"));
  settings_->setText(isNarrow_ ? QString() : settings);
  settings_->setDescription(settings);
  fitWidth();
  showFreshness();
}

void Sidebar::showFreshness() {
  const Calendar calendar = services_.currentCalendar();
  const auto line = [&](Date date, const std::string& format) {
    if (date <= Date::distantPast()) return QString();
    return qtText(L10n::format(format, {clockText(date, calendar)}));
  };
  sampled_->setText(line(services_.store.system().updatedAt, QM_TR("采样于 %@")));
  scanned_->setText(line(services_.store.agents().lastUpdated, QM_TR("日志读取于 %@")));
}

void Sidebar::showEvent(QShowEvent* event) {
  subscriptions_.clear();
  subscriptions_.push_back(services_.store.onSystemChange([this] { showFreshness(); }));
  subscriptions_.push_back(services_.store.onAgentsChange([this] { showFreshness(); }));
  showFreshness();
  QWidget::showEvent(event);
}

void Sidebar::hideEvent(QHideEvent* event) {
  subscriptions_.clear();
  QWidget::hideEvent(event);
}

// Always the same, but for text that is too large for it.
void Sidebar::fitWidth() {
  int wanted = isNarrow_ ? narrowWidth : wideWidth;
  for (const SidebarEntry* entry : entries_) wanted = std::max(wanted, entry->sizeHint().width() + 2 * margin);
  setFixedWidth(wanted);
}

void Sidebar::changeEvent(QEvent* event) {
  if (event->type() == QEvent::LanguageChange) retranslate();
  if (event->type() == QEvent::FontChange) fitWidth();
  QWidget::changeEvent(event);
}

void Sidebar::paintEvent(QPaintEvent*) {
  const ThemeColors& colors = ThemeColors::of(palette());
  QPainter painter(this);
  painter.fillRect(rect(), colors.sidebar);
  const double line = Shapes::hairline(painter);
  painter.fillRect(QRectF(width() - line, 0, line, height()), colors.separator);
}

}  // namespace quillmeter
