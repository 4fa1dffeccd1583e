// What one fast tick costs: processor, memory, network, heat and the battery's quick fields, read from this machine and
// formatted, and the widget's record written into a file in memory (below /dev/shm).
//
//   fast_tick_bench             time and processor time of a tick and of its parts
//   strace -c fast_tick_bench N   system calls of N ticks (the difference of two N tells those of a tick)
#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

#include "agents/model/AgentUsageSnapshot.h"
#include "base/Clock.h"
#include "core/MachineMetrics.h"
#include "core/SharedSnapshotStore.h"
#include "core/SystemSampler.h"
#include "platform/linux/JsonPreferenceDomain.h"
#include "platform/linux/LinuxPlatform.h"
#include "preferences/SettingsKeys.h"

namespace {

using namespace quillmeter;

// A folder in memory, as the runtime directory is.
class MemoryFolder {
 public:
  MemoryFolder() {
    std::string pattern = "/dev/shm/quillmeter-bench-XXXXXX";
    if (mkdtemp(pattern.data()) == nullptr) {
      std::perror("cannot make a folder below /dev/shm");
      std::exit(1);
    }
    path_ = pattern;
  }
  MemoryFolder(const MemoryFolder&) = delete;
  MemoryFolder& operator=(const MemoryFolder&) = delete;
  ~MemoryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  std::filesystem::path file() const { return path_ / "group.com.kesto.Quillmeter.json"; }

 private:
  std::filesystem::path path_;
};

Platform linuxPlatform(const MonotonicClock& uptime) {
  Platform platform;
  addLinuxPlatform(platform, uptime);
  return platform;
}

struct Machine {
  Machine() { sample(SampleDepth::slow); }

  void sample(SampleDepth depth) { system = sampler.sample(system, depth, clock.now()); }
  void persist() { shared.save(system, agents); }
  void tick() {
    sample(SampleDepth::fastWithBattery);
    persist();
  }

  SystemClock clock;
  SystemMonotonicClock uptime;
  Platform platform = linuxPlatform(uptime);
  MachineMetrics metrics{platform, clock, {}};
  SystemSampler sampler{metrics.sources()};
  MemoryFolder folder;
  JsonPreferenceDomain suite{std::string(SettingsKeys::sharedSuiteName), folder.file(), clock, {.synchronize = false}};
  SharedSnapshotStore shared{&suite, clock};
  SystemSnapshot system;
  AgentUsageSnapshot agents = AgentUsageSnapshot::empty();
};

template <typename Read>
void measure(benchmark::State& state, Read read) {
  Machine machine;
  machine.tick();
  for (auto _ : state) read(machine);
  if (!std::filesystem::exists(machine.folder.file())) state.SkipWithError("the widget's record was not written");
}
BENCHMARK_CAPTURE(measure, fastTick, [](Machine& machine) { machine.tick(); })->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(measure, sample, [](Machine& machine) {
  machine.sample(SampleDepth::fastWithBattery);
})->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(measure, processor, [](Machine& machine) {
  machine.metrics.cpu.update();
})->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(measure, memory, [](Machine& machine) {
  machine.metrics.memory.update();
})->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(measure, network, [](Machine& machine) {
  machine.metrics.network.sample();
})->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(measure, heat, [](Machine& machine) {
  benchmark::DoNotOptimize(machine.metrics.thermal.level());
})->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(measure, record, [](Machine& machine) { machine.persist(); })->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  if (argc == 2 && argv[1][0] != '-') {
    Machine machine;
    for (int i = std::atoi(argv[1]); i > 0; --i) machine.tick();
    return 0;
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
