#include "ui/widgets/Card.h"

#include <algorithm>

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/SymbolView.h"
#include "ui/widgets/WidgetAccessibility.h"

namespace quillmeter {
namespace {

constexpr int padding = 16;
constexpr int spacing = 12;
constexpr int symbolPoints = 16;
constexpr int groundHeight = 28;
constexpr int headerHeight = 32;  // of its controls, so that the titles of neighbours stand in line

}  // namespace

class Card::Header : public QWidget {
 public:
  explicit Header(QWidget* parent)
      : QWidget(parent),
        symbol_(new SymbolView({}, {}, symbolPoints, this)),
        title_(new FigureLabel(TextRole::heading, TextTone::primary, this)),
        note_(new FigureLabel(TextRole::body, TextTone::secondary, this)),
        line_(new QHBoxLayout(this)) {
    constexpr int gap = 10;
    line_->setContentsMargins(0, 0, 0, 0);
    line_->setSpacing(gap);
    symbol_->setHasGround(true);
    note_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    note_->setKeepsWhole(true);
    note_->hide();
    line_->addWidget(symbol_);
    line_->addWidget(title_, 1);
    line_->addWidget(note_);
    line_->addStrut(headerHeight);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  }
  void show(std::string symbol, std::string tint, const QString& title) {
    symbol_->setVisible(!symbol.empty());
    symbol_->setSymbol(std::move(symbol));
    symbol_->setTint(std::move(tint));
    title_->setText(title);
  }
  void setNote(const QString& note) {
    note_->setText(note);
    note_->setVisible(!note.isEmpty());
  }
  void add(QWidget* control) { line_->addWidget(control); }

 private:
  SymbolView* symbol_;
  FigureLabel* title_;
  FigureLabel* note_;
  QHBoxLayout* line_;
};

Card::Card(QWidget* parent) : QWidget(parent) {
  WidgetAccessibility::install();
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(padding, padding, padding, padding);
  column->setSpacing(spacing);
  content_ = new QVBoxLayout;
  content_->setSpacing(spacing);
  column->addLayout(content_, 1);
}

Card::Header& Card::header() {
  if (header_ == nullptr) {
    // The symbol's ground, which is lower than the line, keeps the padding above it.
    QMargins margins = layout()->contentsMargins();
    margins.setTop(std::max(0, margins.top() - (headerHeight - groundHeight) / 2));
    layout()->setContentsMargins(margins);
    header_ = new Header(this);
    static_cast<QVBoxLayout*>(layout())->insertWidget(0, header_);
  }
  return *header_;
}

void Card::setHeader(std::string symbol, std::string tint, const QString& title) {
  header().show(std::move(symbol), std::move(tint), title);
  WidgetAccessibility::setName(*this, title);
}

void Card::setHeaderNote(const QString& note) {
  header().setNote(note);
}

void Card::addHeaderControl(QWidget* control) {
  header().add(control);
}

void Card::setPadding(int points) {
  layout()->setContentsMargins(points, points, points, points);
}

void Card::paintEvent(QPaintEvent*) {
  const ThemeColors& colors = ThemeColors::of(palette());
  QPainter painter(this);
  Shapes::panel(painter, rect(), Shapes::cardRadius, colors.surface, colors.border);
}

}  // namespace quillmeter
