#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <QSize>
#include <QWidget>

namespace quillmeter {

class FakeServices;

// One picture: a window of the program in a certain state.
struct Shot {
  std::string name;  // "settings-general"
  QSize size;        // empty: the window's own
  std::function<std::unique_ptr<QWidget>(FakeServices& services)> open;
  // Brings the visible window into the state; may be empty.
  std::function<void(QWidget& window, FakeServices& services)> prepare;
};

std::vector<Shot> windowShots();
std::vector<Shot> trayShots();

}  // namespace quillmeter
