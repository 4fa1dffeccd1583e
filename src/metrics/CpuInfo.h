#pragma once

#include <optional>
#include <string>
#include <vector>

#include "base/LocaleConventions.h"
#include "platform/ProcessorTicks.h"

namespace quillmeter {

// Cumulative ticks summed over all processors.
struct CpuLoadSnapshot {
  double user = 0;
  double system = 0;
  double idle = 0;
  double nice = 0;
  friend bool operator==(const CpuLoadSnapshot&, const CpuLoadSnapshot&) = default;
};

// Shares of one interval, in percent 0 ... 100 with two decimals.
struct CpuMetrics {
  double usage = 0;  // everything but idle
  double system = 0;
  double user = 0;  // nice time included
  double idle = 0;
  friend bool operator==(const CpuMetrics&, const CpuMetrics&) = default;
};

// The machine's processor load between two updates. The first update only primes it; an update that learns nothing (no
// ticks passed, no answer) shows the last valid figures again. Owned by the executable, updated by the store on the
// main thread.
class CpuInfo {
 public:
  CpuInfo(ProcessorTicks& ticks, LocaleConventions locale);

  void update();

  double percentage() const { return percentage_; }      // percent 0 ... 100
  const std::string& system() const { return system_; }  // "12.50 %"; empty before the first update
  const std::string& user() const { return user_; }
  const std::string& idle() const { return idle_; }

 private:
  std::optional<CpuLoadSnapshot> takeSnapshot();
  void show(const CpuMetrics& metrics);
  void applyFallbackMetrics();

  ProcessorTicks& ticks_;
  LocaleConventions locale_;
  std::vector<ProcessorTickCounts> processors_;  // kept, so that an update allocates nothing
  double percentage_ = 0;
  std::string system_, user_, idle_;
  std::optional<CpuLoadSnapshot> previousSnapshot_;
  std::optional<CpuMetrics> lastValidMetrics_;
};

}  // namespace quillmeter
