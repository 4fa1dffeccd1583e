#include "ctl/StatusCommand.h"

#include <chrono>
#include <thread>

#include <CLI/CLI.hpp>

#include "base/Calendar.h"
#include "base/L10n.h"
#include "core/MachineMetrics.h"
#include "core/model/SystemSnapshotEncoding.h"
#include "ctl/SystemReport.h"

namespace quillmeter::ctl {
namespace {

constexpr std::chrono::milliseconds betweenReadings{250};
constexpr int jsonIndent = 2;

}  // namespace

void StatusCommand::declare(CLI::App& root, ChosenAction& chosen) {
  CLI::App* command = root.add_subcommand("status", QM_TR("这台电脑此刻的状态：处理器、内存、磁盘、电量、网络、散热"));
  command->add_flag("--json", json_, QM_TR("输出 JSON"));
  command->callback([this, &chosen] { chosen = [this] { return run(); }; });
}

ExitCode StatusCommand::run() {
  Platform platform = makePlatform_();
  MachineMetrics metrics(platform, context_.clock, context_.locale);
  SystemSampler sampler(metrics.sources());
  const SystemSnapshot first = sampler.sample({}, SampleDepth::slow, context_.clock.now());
  std::this_thread::sleep_for(betweenReadings);
  const SystemSnapshot system = sampler.sample(first, SampleDepth::slow, context_.clock.now());
  if (json_) {
    context_.console.printLine(encodeSystemSnapshot(system, jsonIndent));
  } else {
    printSystemReport(context_.console, system, Calendar::current(context_.locale.firstWeekday));
  }
  return ExitCode::done;
}

}  // namespace quillmeter::ctl
