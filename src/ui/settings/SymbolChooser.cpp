#include "ui/settings/SymbolChooser.h"

#include <algorithm>
#include <array>

#include <QtGui/QPainter>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QButtonGroup>

#include "base/L10n.h"
#include "menubar/SymbolPainter.h"
#include "menubar/model/CompactIconOptions.h"
#include "ui/theme/QtText.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"

namespace quillmeter {

namespace {

constexpr int columns = 8;
constexpr int cellHeight = 44;
constexpr int gap = 4;
constexpr int rows = static_cast<int>(CompactIconOptions::symbols.size()) / columns;
static_assert(rows * columns == static_cast<int>(CompactIconOptions::symbols.size()));

// In the order of the symbols.
constexpr std::array<std::string_view, CompactIconOptions::symbols.size()> names = {QM_TR_NOOP("脉搏"),
                                                                                    QM_TR_NOOP("爪印"),
                                                                                    QM_TR_NOOP("猫"),
                                                                                    QM_TR_NOOP("星光"),
                                                                                    QM_TR_NOOP("处理器"),
                                                                                    QM_TR_NOOP("内存"),
                                                                                    QM_TR_NOOP("仪表"),
                                                                                    QM_TR_NOOP("柱状图"),
                                                                                    QM_TR_NOOP("闪电"),
                                                                                    QM_TR_NOOP("叶子"),
                                                                                    QM_TR_NOOP("爱心"),
                                                                                    QM_TR_NOOP("星星"),
                                                                                    QM_TR_NOOP("月亮"),
                                                                                    QM_TR_NOOP("太阳"),
                                                                                    QM_TR_NOOP("云"),
                                                                                    QM_TR_NOOP("火焰"),
                                                                                    QM_TR_NOOP("原子"),
                                                                                    QM_TR_NOOP("网络"),
                                                                                    "Wi-Fi",
                                                                                    QM_TR_NOOP("耳机"),
                                                                                    QM_TR_NOOP("耳塞"),
                                                                                    QM_TR_NOOP("手柄"),
                                                                                    QM_TR_NOOP("笔记本"),
                                                                                    QM_TR_NOOP("终端")};

class SymbolChoice final : public QAbstractButton {
 public:
  SymbolChoice(std::string_view symbol, QWidget* parent) : QAbstractButton(parent), symbol_(symbol) {
    setCheckable(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
  }
  QSize sizeHint() const override { return {cellHeight, cellHeight}; }

 protected:
  void paintEvent(QPaintEvent*) override {
    constexpr double edge = 20;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const ThemeColors& colors = ThemeColors::of(palette());
    if (isChecked()) {
      Shapes::panel(painter, rect(), Shapes::controlRadius, colors.selection, colors.accent);
    } else if (underMouse()) {
      Shapes::panel(painter, rect(), Shapes::controlRadius, colors.hover);
    }
    const QRectF box((width() - edge) / 2, (height() - edge) / 2, edge, edge);
    SymbolPainter::paint(painter, symbol_, box, isChecked() ? colors.accent : colors.text);
    if (Shapes::showsFocus(*this)) Shapes::focusFrame(painter, rect(), Shapes::controlRadius, colors);
  }

 private:
  const std::string_view symbol_;
};

}  // namespace

SymbolChooser::SymbolChooser(QWidget* parent) : QWidget(parent), group_(new QButtonGroup(this)) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  for (std::size_t index = 0; index < CompactIconOptions::symbols.size(); ++index) {
    auto* choice = new SymbolChoice(CompactIconOptions::symbols[index], this);
    choice->setObjectName("settings.menuBar.symbol." + qtText(CompactIconOptions::symbols[index]));
    group_->addButton(choice, static_cast<int>(index));
  }
  connect(group_, &QButtonGroup::idClicked, this, [this](int id) {
    if (handler_) handler_(CompactIconOptions::symbols[static_cast<std::size_t>(id)]);
  });
  retranslate();
}

void SymbolChooser::setChosen(std::string_view symbol) {
  const auto& symbols = CompactIconOptions::symbols;
  const auto found = std::ranges::find(symbols, symbol);
  // Tab goes to the one that is chosen, or to the first.
  const auto reached = found == symbols.end() ? symbols.begin() : found;
  for (QAbstractButton* button : group_->buttons()) {
    button->setFocusPolicy(group_->id(button) == reached - symbols.begin() ? Qt::StrongFocus : Qt::ClickFocus);
  }
  if (found != symbols.end()) return group_->button(static_cast<int>(found - symbols.begin()))->setChecked(true);
  QAbstractButton* chosen = group_->checkedButton();
  if (chosen == nullptr) return;
  group_->setExclusive(false);
  chosen->setChecked(false);
  group_->setExclusive(true);
}

void SymbolChooser::retranslate() {
  for (std::size_t index = 0; index < names.size(); ++index) {
    const QString name = qtText(L10n::string(names[index]));
    group_->button(static_cast<int>(index))->setAccessibleName(name);
    group_->button(static_cast<int>(index))->setToolTip(name);
  }
}

QSize SymbolChooser::sizeHint() const {
  return {columns * cellHeight + (columns - 1) * gap + 2 * margin_, rows * cellHeight + (rows - 1) * gap + 2 * margin_};
}

void SymbolChooser::resizeEvent(QResizeEvent*) {
  const double cellWidth = static_cast<double>(width() - 2 * margin_ - (columns - 1) * gap) / columns;
  for (int index = 0; index < rows * columns; ++index) {
    const double left = margin_ + (index % columns) * (cellWidth + gap);
    const int top = margin_ + (index / columns) * (cellHeight + gap);
    group_->button(index)->setGeometry(qRound(left), top, qRound(cellWidth), cellHeight);
  }
}

}  // namespace quillmeter
