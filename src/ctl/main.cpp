#include <chrono>
#include <cstdlib>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "access/AgentLogAccessManager.h"
#include "agents/adapters/AgentUsageAdapters.h"
#include "base/Clock.h"
#include "ctl/AgentsCommand.h"
#include "ctl/CommandLine.h"
#include "ctl/ConnectCommand.h"
#include "ctl/Console.h"
#include "ctl/LayoutCommand.h"
#include "ctl/PreferenceOverride.h"
#include "ctl/QuickCommand.h"
#include "ctl/RecordCommand.h"
#include "ctl/ScreentimeCommand.h"
#include "ctl/SettingsCommand.h"
#include "ctl/StatusCommand.h"
#include "ctl/ToolCommandName.h"
#include "ctl/UpdateCommand.h"
#include "ctl/UsageCommand.h"
#include "ctl/WatchCommand.h"
#include "ctl/WidgetCommand.h"
#include "platform/linux/CryptoSha256.h"
#include "platform/linux/DesktopApplicationIndex.h"
#include "platform/linux/JsonPreferenceDomain.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/SystemFolderProbe.h"
#include "platform/linux/XdgPaths.h"
#include "platform/qt/QtCatalogue.h"
#include "platform/qt/QtDescriptorWatcher.h"
#include "platform/qt/QtLocale.h"
#include "platform/qt/QtMainExecutor.h"
#include "platform/qt/QtTimerFactory.h"
#include "preferences/AppLanguage.h"
#include "preferences/SettingText.h"
#include "preferences/SettingsKeys.h"
#include "screentime/ActivityArchiveFile.h"

using namespace quillmeter;

namespace {

std::string_view environmentVariable(const char* name) {
  const char* value = std::getenv(name);
  return value == nullptr ? std::string_view() : value;
}

// Of the command line, else the stored choice; a language that does not exist is refused later.
std::string languageFor(const std::vector<std::string>& arguments, const PreferenceStore& preferences) {
  if (auto given = ctl::languageArgument(arguments)) return *given;
  const AppLanguage selected = selectedAppLanguage(preferences);
  return std::string(selected == AppLanguage::system ? systemLanguage() : rawValue(selected));
}

// The widget follows at its next reload.
void mirrorLanguage(const XdgPaths& paths, const Clock& clock, const std::string& language) {
  const std::string suite(SettingsKeys::sharedSuiteName);
  const auto file = paths.sharedPreferences(suite);
  if (!file) return;
  JsonPreferenceDomain domain(suite, *file, clock, {.synchronize = false});
  didSelectAppLanguage(language, &domain, {});
}

// For a program whose event loop is there already.
Platform platformWithEventLoop(const MonotonicClock& uptime) {
  Platform platform;
  platform.mainExecutor = std::make_unique<QtMainExecutor>();
  platform.timers = std::make_unique<QtTimerFactory>();
  platform.descriptors = std::make_unique<QtDescriptorWatcher>();
  addLinuxPlatform(platform, uptime);
  return platform;
}

Platform platformWithoutEventLoop(const MonotonicClock& uptime) {
  Platform platform;
  addLinuxPlatform(platform, uptime);
  return platform;
}

}  // namespace

int main(int argc, char** argv) {
  ctl::Console::occupyStandardDescriptors();
  ctl::Console console(1, 2);
  const std::vector<std::string> arguments(argv + (argc > 0 ? 1 : 0), argv + argc);

  const SystemClock clock;
  const XdgPaths paths = XdgPaths::current();
  const std::string domainName(SettingsKeys::standardDomainName);
  JsonPreferenceDomain storedDomain(domainName, paths.standardPreferences(domainName), clock);
  ctl::PreferenceOverride domain(storedDomain);
  PreferenceStore preferences(domain);
  SettingsKeys::registerDefaults(preferences);
  const std::string language = languageFor(arguments, preferences);
  if (!installCatalogue(language)) installCatalogue(simplifiedChineseLanguage);

  const SystemFolderProbe probe;
  DesktopApplicationIndex applications(paths.dataDirectories);
  AgentLogAccessManager access(preferences, probe, AgentSearchPlaces::standard(paths.home, environmentVariable("PATH")),
                               &applications);
  ctl::ToolContext context{
      console,
      preferences,
      access,
      clock,
      localeConventions(language),
      ctl::toolCommandName(std::getenv("QUILLMETER_COMMAND"), argc > 0 ? argv[0] : "quillmeterctl")};

  CryptoSha256 sha256;
  const auto makeAdapters = [&](FileOpener& opener) { return makeAgentUsageAdapters(opener, sha256, clock); };
  const SystemMonotonicClock uptime;
  const std::string suiteName(SettingsKeys::sharedSuiteName);
  std::optional<JsonPreferenceDomain> suite;
  if (const auto file = paths.sharedPreferences(suiteName)) {
    // Written at each tick: one that finds the lock taken is left out rather than waited for.
    suite.emplace(suiteName, *file, clock,
                  JsonPreferenceOptions{.synchronize = false, .lockPatience = std::chrono::milliseconds(5)});
  }
  ctl::CommandLine commandLine(console, QUILLMETER_VERSION);
  commandLine.add(std::make_unique<ctl::StatusCommand>(context, [&] { return platformWithoutEventLoop(uptime); }));
  commandLine.add(std::make_unique<ctl::UsageCommand>(context, makeAdapters));
  commandLine.add(
      std::make_unique<ctl::WatchCommand>(context, domain,
                                          ctl::WatchCommand::Parts{[&] { return platformWithEventLoop(uptime); },
                                                                   makeAdapters, suite ? &*suite : nullptr}));
  commandLine.add(std::make_unique<ctl::AgentsCommand>(context, makeAdapters));
  commandLine.add(std::make_unique<ctl::ConnectCommand>(context));
  const std::filesystem::path archive = ActivityArchiveFile::defaultPath(paths.dataHome);
  commandLine.add(std::make_unique<ctl::ScreentimeCommand>(context, archive));
  commandLine.add(std::make_unique<ctl::RecordCommand>(context, archive, language));
  commandLine.add(std::make_unique<ctl::QuickCommand>(context, language));
  commandLine.add(std::make_unique<ctl::LayoutCommand>(context));
  commandLine.add(std::make_unique<ctl::WidgetCommand>(context, suite ? &*suite : nullptr));
  commandLine.add(std::make_unique<ctl::SettingsCommand>(
      context, [&](const std::string& selected) { mirrorLanguage(paths, clock, selected); }));
  commandLine.add(std::make_unique<ctl::UpdateCommand>(context, language));
  const ctl::ExitCode code = commandLine.run(arguments);
  for (const PreferenceProblem& problem : domain.takeProblems()) console.diagnose(localizedDescription(problem));
  return static_cast<int>(console.finish(code));
}
