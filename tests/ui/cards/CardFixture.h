#pragma once

#include <memory>
#include <string>

#include <gtest/gtest.h>
#include <QApplication>
#include <QLabel>
#include <QWidget>

#include "demo/FakeServices.h"
#include "ui/cards/MonitorCard.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/FigureLabel.h"

namespace quillmeter {

// Everything that a widget and its children say at the moment, line by line.
inline std::string shownTexts(const QWidget& widget) {
  std::string texts;
  for (const QWidget* child : widget.findChildren<QWidget*>()) {
    if (!child->isVisibleTo(&widget)) continue;
    const auto* figure = dynamic_cast<const FigureLabel*>(child);
    const auto* label = dynamic_cast<const QLabel*>(child);
    if (figure != nullptr) texts += figure->text().toStdString() + '\n';
    if (label != nullptr) texts += label->text().toStdString() + '\n';
  }
  return texts;
}

class CardTest : public testing::Test {
 protected:
  MonitorCard& show(MonitorComponentKind kind, DashboardCardSize size = DashboardCardSize::small,
                    ComponentPlacement placement = ComponentPlacement::dashboard) {
    card_.reset(makeMonitorCard({kind, size, true}, placement, services_.ui, nullptr));
    card_->resize(cardForm(size, placement) == CardForm::compact ? 164 : 300, 180);
    card_->show();
    QApplication::processEvents();
    return *card_;
  }
  template <typename Widget>
  Widget& part(const char* name) {
    auto* found = dynamic_cast<Widget*>(card_->findChild<QWidget*>(QString::fromUtf8(name)));
    if (found == nullptr) throw std::runtime_error(name);
    return *found;
  }
  std::string text(const char* name) {
    const auto& widget = part<QWidget>(name);
    if (const auto* label = dynamic_cast<const QLabel*>(&widget)) return label->text().toStdString();
    return dynamic_cast<const FigureLabel&>(widget).text().toStdString();
  }
  // Two readings, so that nothing is left of the state before the first one.
  void showQuickStatus() {
    services_.set("settings.menuBar.style", std::string("systemTrio"));
    services_.settle();
    services_.advance(4);
  }

  FakeServices services_;
  std::unique_ptr<MonitorCard> card_;
};

}  // namespace quillmeter
