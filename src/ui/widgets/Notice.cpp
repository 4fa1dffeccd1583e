#include "ui/widgets/Notice.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>

#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/widgets/Paragraph.h"
#include "ui/widgets/SymbolView.h"
#include "ui/widgets/WidgetAccessibility.h"

namespace quillmeter {
namespace {

constexpr int symbolPoints = 18;

const char* symbolOf(Notice::Kind kind) {
  switch (kind) {
    case Notice::Kind::information:
      return "info.circle";
    case Notice::Kind::success:
      return "checkmark.circle";
    case Notice::Kind::warning:
      return "exclamationmark.triangle";
    case Notice::Kind::error:
      return "xmark.circle";
  }
  return "info.circle";
}

// The same, as strong as a large ground needs it when it is laid on thinly.
QColor vividColorOf(Notice::Kind kind) {
  switch (kind) {
    case Notice::Kind::information:
      return QColor::fromRgb(0x4C8DFF);
    case Notice::Kind::success:
      return QColor::fromRgb(0x38B887);
    case Notice::Kind::warning:
      return QColor::fromRgb(0xFFAA1F);
    case Notice::Kind::error:
      return QColor::fromRgb(0xFF5A4E);
  }
  return QColor::fromRgb(0x4C8DFF);
}

QColor colorOf(Notice::Kind kind, const ThemeColors& colors) {
  switch (kind) {
    case Notice::Kind::information:
      return colors.accent;
    case Notice::Kind::success:
      return colors.success;
    case Notice::Kind::warning:
      return colors.warning;
    case Notice::Kind::error:
      return colors.danger;
  }
  return colors.accent;
}

}  // namespace

Notice::Notice(QWidget* parent) : QWidget(parent) {
  WidgetAccessibility::install();
  symbol_ = new SymbolView(symbolOf(kind_), {}, symbolPoints, this);
  text_ = new Paragraph(TextRole::body, TextTone::primary, this);
  text_->setAlignment(Qt::AlignLeft | Qt::AlignVCenter);
  auto* line = new QHBoxLayout(this);
  line->setContentsMargins(14, 9, 10, 9);
  line->setSpacing(10);
  line->addWidget(symbol_);
  line->addWidget(text_, 1);
  QSizePolicy policy(QSizePolicy::Preferred, QSizePolicy::Preferred);
  policy.setHeightForWidth(true);
  setSizePolicy(policy);
  hide();
}

void Notice::show(Kind kind, const QString& text) {
  if (text.isEmpty()) return clear();
  const bool isNew = kind != kind_ || text != text_->text() || isHidden();
  kind_ = kind;
  symbol_->setSymbol(symbolOf(kind));
  adopt();
  text_->setText(text);
  WidgetAccessibility::setName(*this, text);
  setVisible(true);
  if (!isNew) return;
  update();
  WidgetAccessibility::alert(*this);
}

void Notice::clear() {
  text_->clear();
  setAccessibleName({});
  hide();
}

QString Notice::text() const {
  return text_->text();
}

void Notice::setAction(const QString& title, std::function<void()> action) {
  act_ = std::move(action);
  if (action_ == nullptr) {
    action_ = new QPushButton(this);
    action_->setObjectName(QStringLiteral("action"));
    action_->setAutoDefault(false);
    connect(action_, &QPushButton::clicked, this, [this] {
      if (const auto act = act_) act();
    });
    layout()->addWidget(action_);
  }
  action_->setText(title);
  action_->show();
}

void Notice::removeAction() {
  act_ = nullptr;
  if (action_ != nullptr) action_->hide();
}

void Notice::adopt() {
  const QColor color = colorOf(kind_, ThemeColors::of(palette()));
  symbol_->setTint(color.name().mid(1).toStdString());
}

void Notice::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::PaletteChange) adopt();
}

void Notice::paintEvent(QPaintEvent*) {
  const ThemeColors& colors = ThemeColors::of(palette());
  const QColor color = vividColorOf(kind_);
  QPainter painter(this);
  constexpr double radius = 10;
  Shapes::panel(painter, rect(), radius, mixed(colors.surface, color, 0.1),
                colors.highContrast ? colorOf(kind_, colors) : mixed(colors.surface, color, 0.32));
}

}  // namespace quillmeter
