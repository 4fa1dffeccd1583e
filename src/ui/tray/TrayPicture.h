#pragma once

#include <cstdint>
#include <variant>

#include "agents/model/AgentUsageSnapshot.h"
#include "core/model/SystemSnapshot.h"
#include "menubar/CompactIconDrawing.h"
#include "menubar/MenuBarLabelRenderer.h"
#include "menubar/model/CompactIconOptions.h"
#include "preferences/MonitorComponentKind.h"
#include "quickstatus/model/QuickStatusSnapshot.h"

class QImage;

namespace quillmeter {

class PreferenceStore;

// What the tray's icon looks like at this moment, at every size. A tray gives all items the same square, so the size
// that the user set counts up to the usual one only: a smaller icon stands in the middle of the square, and lines grow
// and shrink with the square. Owned by the tray item; main thread.
class TrayPicture {
 public:
  static constexpr int usualPixels = 22;  // of a square at normal scale

  explicit TrayPicture(const PreferenceStore& preferences) : preferences_(preferences) {}

  // Takes over what is to be seen; true when the icon looks different from before.
  bool update(const SystemSnapshot& system, const AgentUsageSnapshot& agents, const QuickStatusSnapshot& quick,
              bool darkPanel);
  // A square of so many device pixels, painted anew with each call.
  QImage paint(int pixels) const;
  int paintCount() const { return paintCount_; }

 private:
  using Look = std::variant<std::monostate, CompactIconDrawing, MenuBarLabel>;

  void readSettings();
  Look look(int pixels) const;

  const PreferenceStore& preferences_;
  std::uint64_t settingsRevision_ = 0;
  MenuBarStyle style_ = defaultMenuBarStyle;
  MonitorComponentKind metric_ = MonitorComponentKind::cpu;
  CompactIconOptions options_;
  // As of the last update() that changed the look.
  SystemSnapshot system_;
  QuickStatusSnapshot quick_;
  MenuBarLabelEntry entry_;
  bool dark_ = false;
  Look shown_;
  mutable int paintCount_ = 0;
};

}  // namespace quillmeter
