// What one fast tick costs: processor, memory, network and heat, read from the kernel of this machine and formatted.
//
//   fast_tick_bench             time and processor time of a tick
//   strace -c fast_tick_bench N   system calls of N ticks (the difference of two N tells those of a tick)
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

#include "base/Clock.h"
#include "metrics/CpuInfo.h"
#include "metrics/MemoryInfo.h"
#include "metrics/NetworkInfo.h"
#include "platform/linux/MallocTrimRelief.h"
#include "platform/linux/ProcMeminfo.h"
#include "platform/linux/ProcStat.h"
#include "platform/linux/RtnetlinkInterfaces.h"
#include "platform/linux/SysfsThermal.h"

namespace {

using namespace quillmeter;

struct Machine {
  void tick() {
    cpu.update();
    memory.update();
    const auto sample = network.sample();
    benchmark::DoNotOptimize(sample.download);
    benchmark::DoNotOptimize(heat.level());
  }

  SystemClock clock;
  ProcStatTicks ticks;
  ProcMeminfoPages pages;
  MallocTrimRelief allocator;
  RtnetlinkInterfaces interfaces{nullptr};
  SysfsThermal heat;
  CpuInfo cpu{ticks, {}};
  MemoryInfo memory{pages, allocator};
  NetworkInfo network{interfaces, clock, {}};
};

void fastTick(benchmark::State& state) {
  Machine machine;
  machine.tick();
  for (auto _ : state) machine.tick();
}
BENCHMARK(fastTick)->Unit(benchmark::kMicrosecond);

template <typename Read>
void part(benchmark::State& state, Read read) {
  Machine machine;
  machine.tick();
  for (auto _ : state) read(machine);
}
BENCHMARK_CAPTURE(part, processor, [](Machine& machine) { machine.cpu.update(); })->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(part, memory, [](Machine& machine) { machine.memory.update(); })->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(part, network, [](Machine& machine) { machine.network.sample(); })->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(part, heat, [](Machine& machine) { machine.heat.level(); })->Unit(benchmark::kMicrosecond);

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
