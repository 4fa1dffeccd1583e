#pragma once

#include <memory>
#include <vector>

#include <QWidget>

#include "base/Observers.h"
#include "platform/TimerFactory.h"
#include "ui/UiServices.h"

namespace quillmeter {

// The sessions of the agents that were active in the last five minutes, newest first, with a button that scans again.
// Hears changes while it is visible; sessions leave the list as they grow old.
class ActiveSessionsView : public QWidget {
 public:
  // At most so many lines, then "+N"; 0 shows all.
  ActiveSessionsView(const UiServices& services, int maximumLines, QWidget* parent = nullptr);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void refresh();
  const UiServices& services_;
  const int maximumLines_;
  std::vector<Subscription> subscriptions_;
  std::unique_ptr<Timer> aging_;
};

}  // namespace quillmeter
