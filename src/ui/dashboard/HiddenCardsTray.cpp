#include "ui/dashboard/HiddenCardsTray.h"

#include <algorithm>
#include <utility>

#include <QEvent>
#include <QPainter>
#include <QVBoxLayout>

#include "base/L10n.h"
#include "menubar/SymbolPainter.h"
#include "ui/dashboard/FlowLayout.h"
#include "ui/theme/QtText.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/ThemeColors.h"
#include "ui/theme/Typography.h"
#include "ui/widgets/Paragraph.h"

namespace quillmeter {

namespace {

constexpr int chipHeight = 36;
constexpr int chipInset = 12;
constexpr int symbolEdge = 16;
constexpr int plusEdge = 11;
constexpr int spacing = 8;

}  // namespace

HiddenCardButton::HiddenCardButton(MonitorComponentKind kind, QWidget* parent) : QPushButton(parent), kind_(kind) {
  setObjectName(qtText("dashboard.hidden." + std::string(rawValue(kind))));
  setAttribute(Qt::WA_Hover);
  retranslate();
}

void HiddenCardButton::retranslate() {
  const std::string name = title(kind_);
  setText(qtText(name));
  const QString action = qtText(L10n::format(QM_TR("显示“%@”"), {name}));
  setAccessibleName(action);
  setToolTip(action);
  updateGeometry();
}

QSize HiddenCardButton::sizeHint() const {
  const int textWidth = QFontMetrics(fontFor(TextRole::body)).horizontalAdvance(text());
  return {2 * chipInset + symbolEdge + spacing + textWidth + spacing + plusEdge, lengthForText(chipHeight)};
}

void HiddenCardButton::paintEvent(QPaintEvent*) {
  const ThemeColors& colors = ThemeColors::of(palette());
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  const QRectF area = Shapes::onPixels(painter, QRectF(rect()));
  const QColor ground = isDown() ? colors.selection : underMouse() ? colors.hover : colors.raised;
  Shapes::panel(painter, area, Shapes::controlRadius, ground, colors.border);
  const auto centered = [&](int x, int edge) { return QRectF(x, (height() - edge) / 2.0, edge, edge); };
  SymbolPainter::paint(painter, symbol(kind_), centered(chipInset, symbolEdge), colors.tint(tint(kind_)));
  painter.setFont(fontFor(TextRole::body));
  painter.setPen(colors.text);
  const int left = chipInset + symbolEdge + spacing;
  painter.drawText(QRect(left, 0, width() - left, height()), Qt::AlignLeft | Qt::AlignVCenter, text());
  SymbolPainter::paint(painter, "plus", centered(width() - chipInset - plusEdge, plusEdge), colors.secondaryText);
  if (Shapes::showsFocus(*this)) Shapes::focusFrame(painter, area, Shapes::controlRadius, colors);
}

HiddenCardsTray::HiddenCardsTray(std::function<void(MonitorComponentKind)> show, QWidget* parent)
    : Card(parent), show_(std::move(show)), flow_(new FlowLayout(spacing)), nothing_(nullptr) {
  setObjectName(QStringLiteral("dashboard.hidden"));
  nothing_ = new Paragraph(TextRole::body, TextTone::secondary, this);
  content()->addWidget(nothing_);
  content()->addLayout(flow_);
  retranslate();
}

void HiddenCardsTray::setCards(const std::vector<DashboardCardConfig>& hidden) {
  const bool isSame = std::ranges::equal(hidden, buttons_, {}, &DashboardCardConfig::kind, &HiddenCardButton::kind);
  if (!isSame) {
    // A button that was just pressed is still at work.
    for (HiddenCardButton* gone : std::exchange(buttons_, {})) {
      flow_->removeWidget(gone);
      gone->hide();
      gone->deleteLater();
    }
    for (const DashboardCardConfig& card : hidden) {
      auto* button = new HiddenCardButton(card.kind, this);
      connect(button, &QPushButton::clicked, this, [this, kind = card.kind] { show_(kind); });
      flow_->addWidget(button);
      buttons_.push_back(button);
      button->show();
    }
  }
  nothing_->setVisible(hidden.empty());
}

void HiddenCardsTray::retranslate() {
  setHeader("eye.slash", {}, qtText(QM_TR("隐藏的卡片")));
  nothing_->setText(qtText(QM_TR("所有卡片都已显示。")));
  for (HiddenCardButton* button : buttons_) button->retranslate();
}

void HiddenCardsTray::changeEvent(QEvent* event) {
  if (event->type() == QEvent::LanguageChange) retranslate();
  Card::changeEvent(event);
}

}  // namespace quillmeter
