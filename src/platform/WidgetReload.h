#pragma once

namespace quillmeter {

// Tells the widgets of the desktop that their record has changed. Main thread; never blocks, a failure is silent.
class WidgetReload {
 public:
  virtual ~WidgetReload() = default;
  virtual void reloadAllTimelines() = 0;
};

}  // namespace quillmeter
