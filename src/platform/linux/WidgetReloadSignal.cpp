#include "platform/linux/WidgetReloadSignal.h"

#include <systemd/sd-bus.h>

namespace quillmeter {

void WidgetReloadSignal::reloadAllTimelines() {
  if (!bus_.open()) return;
  bus_.process();  // a bus that went away is noticed here
  if (!bus_.isOpen()) return;
  sd_bus_emit_signal(bus_.handle(), "/com/kesto/Quillmeter", "com.kesto.Quillmeter", "WidgetsChanged", nullptr);
  bus_.process();
}

}  // namespace quillmeter
