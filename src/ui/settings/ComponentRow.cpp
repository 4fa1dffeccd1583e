#include "ui/settings/ComponentRow.h"

#include <string>
#include <utility>

#include <QtGui/QAccessible>
#include <QtGui/QKeyEvent>
#include <QtGui/QMouseEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QVBoxLayout>

#include "base/L10n.h"
#include "menubar/SymbolPainter.h"
#include "ui/theme/CapitalizedText.h"
#include "ui/theme/QtText.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/theme/Typography.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/SegmentedControl.h"
#include "ui/widgets/SymbolView.h"
#include "ui/widgets/ToggleSwitch.h"

namespace quillmeter {

namespace {

constexpr int margin = 16;
constexpr int gripEdge = 14;
constexpr int gap = 12;

const std::string smallId = "small";
const std::string largeId = "large";

}  // namespace

ComponentRow::ComponentRow(MonitorComponentKind kind, Handlers handlers, QWidget* parent)
    : QWidget(parent), kind_(kind), handlers_(std::move(handlers)) {
  setObjectName("settings.components." + qtText(rawValue(kind)));
  setFocusPolicy(Qt::StrongFocus);
  buildContent();
}

int ComponentRow::rowHeight() {
  return lengthForText(56);
}

void ComponentRow::buildContent() {
  constexpr int symbolPoints = 16;
  const std::string tintText(tint(kind_));
  auto* symbolView = new SymbolView(std::string(symbol(kind_)), tintText, symbolPoints);
  symbolView->setHasGround(true);
  title_ = new FigureLabel(TextRole::body);
  subtitle_ = new FigureLabel(TextRole::caption, TextTone::secondary);
  size_ = new SegmentedControl;
  size_->setObjectName(objectName() + ".size");
  size_->setHandler([this](const std::string& id) {
    handlers_.resize(id == largeId ? DashboardCardSize::large : DashboardCardSize::small);
  });
  switch_ = new ToggleSwitch;
  switch_->setObjectName(objectName() + ".enabled");
  connect(switch_, &QAbstractButton::clicked, this, [this](bool on) { handlers_.enable(on); });
  auto* names = new QVBoxLayout;
  names->setSpacing(0);
  names->addStretch();
  names->addWidget(title_);
  names->addWidget(subtitle_);
  names->addStretch();
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(margin + gripEdge + gap, 0, margin, 0);
  layout->setSpacing(gap);
  layout->addWidget(symbolView);
  layout->addLayout(names, 1);
  layout->addWidget(size_);
  layout->addWidget(switch_);
}

void ComponentRow::show(const DashboardCardConfig& card, int place, int count) {
  const bool isSame = card == card_ && place == place_ && count == count_;
  card_ = card;
  place_ = place;
  count_ = count;
  size_->setChosen(card.size == DashboardCardSize::large ? largeId : smallId);
  switch_->setChecked(card.isEnabled);
  size_->setEnabled(card.isEnabled);
  title_->setTone(card.isEnabled ? TextTone::primary : TextTone::secondary);
  setCursor(card.isEnabled ? Qt::OpenHandCursor : Qt::ArrowCursor);
  if (isSame) return;
  showName();
  update();
}

void ComponentRow::showName() {
  const std::string name = title(kind_);
  const std::string text = place_ == 0 ? L10n::format(QM_TR("%@，未显示"), {name})
                                       : L10n::format(QM_TR("%@，第 %d 个，共 %d 个"),
                                                      {name, std::to_string(place_), std::to_string(count_)});
  if (accessibleName() == qtText(text)) return;
  setAccessibleName(qtText(text));
  if (!QAccessible::isActive()) return;
  QAccessibleEvent event(this, QAccessible::NameChanged);
  QAccessible::updateAccessibility(&event);
}

void ComponentRow::retranslate() {
  title_->setText(qtText(title(kind_)));
  const auto second = subtitle(kind_);
  subtitle_->setText(qtText(second.value_or("")));
  subtitle_->setVisible(second.has_value());
  size_->setSegments({{smallId, capitalizedText(QM_TR("小"))}, {largeId, capitalizedText(QM_TR("大"))}});
  size_->setAccessibleName(qtText(L10n::format(QM_TR("%@ 的大小"), {title(kind_)})));
  switch_->setAccessibleName(qtText(L10n::format(QM_TR("显示 %@"), {title(kind_)})));
  showName();
}

void ComponentRow::setDragged(bool isDragged) {
  if (isDragged_ == isDragged) return;
  isDragged_ = isDragged;
  if (isDragged) {
    raise();
    setCursor(Qt::ClosedHandCursor);
  } else {
    setCursor(card_.isEnabled ? Qt::OpenHandCursor : Qt::ArrowCursor);
  }
  update();
}

void ComponentRow::setHasSeparator(bool hasSeparator) {
  if (hasSeparator_ == hasSeparator) return;
  hasSeparator_ = hasSeparator;
  update();
}

void ComponentRow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const ThemeColors& colors = ThemeColors::of(palette());
  if (isDragged_) {
    Shapes::panel(painter, rect(), Shapes::controlRadius, colors.raised, colors.accent);
  } else if (hasSeparator_) {
    const double line = Shapes::hairline(painter);
    const double left = margin + gripEdge + gap;
    painter.fillRect(QRectF(left, height() - line, width() - left - margin, line), colors.separator);
  }
  if (card_.isEnabled) {
    const QRectF grip(margin, (height() - gripEdge) / 2, gripEdge, gripEdge);
    SymbolPainter::paint(painter, "line.3.horizontal", grip, colors.tertiaryText);
  }
  if (Shapes::showsFocus(*this)) Shapes::focusFrame(painter, rect(), Shapes::controlRadius, colors);
}

void ComponentRow::keyPressEvent(QKeyEvent* event) {
  const bool isUp = event->key() == Qt::Key_Up;
  if (isUp || event->key() == Qt::Key_Down) {
    const int step = isUp ? -1 : 1;
    if (event->modifiers().testFlag(Qt::ControlModifier)) return handlers_.moveBy(step);
    return handlers_.focusBy(step);
  }
  if (event->key() == Qt::Key_Escape && isPressed_) {
    isPressed_ = false;
    return handlers_.released(false);
  }
  QWidget::keyPressEvent(event);
}

void ComponentRow::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !card_.isEnabled) return QWidget::mousePressEvent(event);
  isPressed_ = true;
  handlers_.pressed(event->globalPosition().toPoint());
}

void ComponentRow::mouseMoveEvent(QMouseEvent* event) {
  if (isPressed_) handlers_.dragged(event->globalPosition().toPoint());
}

void ComponentRow::mouseReleaseEvent(QMouseEvent*) {
  if (!std::exchange(isPressed_, false)) return;
  handlers_.released(true);
}

}  // namespace quillmeter
