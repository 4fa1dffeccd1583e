#pragma once

#include "agents/model/AgentUsageSnapshot.h"
#include "base/Clock.h"
#include "core/model/SystemSnapshot.h"
#include "platform/PreferenceDomain.h"

namespace quillmeter {

// Writes the widget's record into the suite that widgets share with this program. Owned by the composition, called by
// the monitor store alone, on the main thread. Every failure is silent: the widget keeps the record before, whose date
// tells its age.
class SharedSnapshotStore {
 public:
  // `suite` is null where the shared suite cannot be opened; then nothing is written.
  SharedSnapshotStore(PreferenceDomain* suite, const Clock& clock) : suite_(suite), clock_(clock) {}

  void save(const SystemSnapshot& system, const AgentUsageSnapshot& agents);

 private:
  PreferenceDomain* suite_;
  const Clock& clock_;
};

}  // namespace quillmeter
