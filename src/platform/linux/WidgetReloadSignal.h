#pragma once

#include "platform/WidgetReload.h"
#include "platform/linux/BusConnection.h"

namespace quillmeter {

// The signal com.kesto.Quillmeter.WidgetsChanged on the session bus, from the object /com/kesto/Quillmeter. The bus is
// opened with the first one.
class WidgetReloadSignal final : public WidgetReload {
 public:
  explicit WidgetReloadSignal(DescriptorWatcher* watcher) : bus_(BusConnection::Bus::session, watcher) {}
  void reloadAllTimelines() override;

 private:
  BusConnection bus_;
};

}  // namespace quillmeter
