#include "ctl/QuickReport.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <memory>
#include <semaphore>
#include <utility>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "base/L10n.h"
#include "core/model/MetricFormatter.h"
#include "ctl/TextTable.h"
#include "quickstatus/QuickAudioHardware.h"
#include "quickstatus/QuickStatusReading.h"

namespace quillmeter::ctl {
namespace {

using Json = nlohmann::ordered_json;

constexpr double balanceStep = 0.005;  // below it the middle is shown

std::string lowercased(std::string text) {
  std::ranges::transform(text, text.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

Json jsonOf(const QuickAudioDevice& device) {
  Json json = {{"id", device.id}, {"name", device.name}, {"transport", device.transport}};
  json["isBluetooth"] = device.isBluetooth();
  json["symbol"] = device.symbol();
  return json;
}

template <typename Value>
void putKnown(Json& json, const char* key, const std::optional<Value>& value) {
  if (value) json[key] = *value;
}

Json jsonOf(const QuickStatusSnapshot& snapshot) {
  Json json = {{"connection", rawValue(snapshot.connection)}};
  putKnown(json, "wifiPowered", snapshot.wifiPowered);
  putKnown(json, "wifiRSSI", snapshot.wifiRSSI);
  putKnown(json, "wifiRate", snapshot.wifiRate);
  if (snapshot.output) json["output"] = jsonOf(*snapshot.output);
  json["outputs"] = Json::array();
  for (const QuickAudioDevice& device : snapshot.outputs) json["outputs"].push_back(jsonOf(device));
  putKnown(json, "volume", snapshot.volume);
  putKnown(json, "balance", snapshot.balance);
  json["canSetBalance"] = snapshot.canSetBalance;
  json["canSetVolume"] = snapshot.canSetVolume;
  json["canSetMute"] = snapshot.canSetMute;
  putKnown(json, "muted", snapshot.muted);
  return json;
}

std::string wifiText(const QuickStatusSnapshot& snapshot) {
  if (!snapshot.wifiPowered) return "—";
  if (!*snapshot.wifiPowered) return QM_TR("已关闭");
  std::string text = QM_TR("已打开");
  if (snapshot.wifiRSSI) text += fmt::format("  {} dBm", *snapshot.wifiRSSI);
  if (snapshot.wifiRate) text += fmt::format("  {:.0f} Mbit/s", *snapshot.wifiRate);
  return text;
}

std::string volumeText(const QuickStatusSnapshot& snapshot) {
  std::string text = snapshot.volume ? MetricFormatter::percent(*snapshot.volume) : "—";
  if (snapshot.muted == true) text += "  " + QM_TR("已静音");
  if (!snapshot.canSetVolume) text += "  " + QM_TR("此设备的音量由硬件控制。");
  return text;
}

// On the scale that the command takes.
std::string balanceText(const QuickStatusSnapshot& snapshot) {
  if (!snapshot.balance) return QM_TR("此设备不支持声道平衡");
  const double balance = *snapshot.balance;
  const std::string side = std::abs(balance - 0.5) < balanceStep ? QM_TR("居中")
                           : balance < 0.5                       ? QM_TR("偏左")
                                                                 : QM_TR("偏右");
  return fmt::format("{:.0f}  ", balance * 100) + side;
}

void printTable(Console& console, const QuickStatusSnapshot& snapshot) {
  TextTable table({Alignment::left, Alignment::left});
  const auto row = [&table](const std::string& label, const std::string& text) {
    table.addRow({{label, TextStyle::dim}, {printable(text)}});
  };
  row(QM_TR("网络"), snapshot.networkTitle());
  row("Wi-Fi", wifiText(snapshot));
  row(QM_TR("声音输出"), snapshot.output ? snapshot.output->name : QM_TR("没有声音输出设备"));
  if (snapshot.output) {
    row(QM_TR("音量"), volumeText(snapshot));
    row(QM_TR("声道平衡"), balanceText(snapshot));
  }
  std::string label = QM_TR("其他输出");
  for (const QuickAudioDevice& device : snapshot.outputs) {
    if (device != snapshot.output) row(std::exchange(label, {}), device.name);
  }
  table.print(console);
}

// The device that is meant: by its whole name, by a piece that no other one has, or by its number.
std::vector<QuickAudioDevice> devicesNamed(const std::string& name, const std::vector<QuickAudioDevice>& devices) {
  std::vector<QuickAudioDevice> whole;
  std::vector<QuickAudioDevice> partial;
  for (const QuickAudioDevice& device : devices) {
    if (device.name == name || std::to_string(device.id) == name) whole.push_back(device);
    if (lowercased(device.name).find(lowercased(name)) != std::string::npos) partial.push_back(device);
  }
  return whole.empty() ? partial : whole;
}

std::string namesOf(const std::vector<QuickAudioDevice>& devices) {
  std::string names;
  for (const QuickAudioDevice& device : devices) {
    names += (names.empty() ? "" : ", ") + device.name + " (" + std::to_string(device.id) + ")";
  }
  return names;
}

// Lets the sound server finish what it has agreed to: a session manager may switch the output a moment later.
void waitForOutput(AudioHardware& audio, std::uint32_t output) {
  constexpr std::chrono::seconds patience{1};
  const auto changed = std::make_shared<std::counting_semaphore<>>(0);
  audio.onChange([changed] { changed->release(); });
  while (audio.read().defaultOutput != output && changed->try_acquire_for(patience)) {
  }
  audio.onChange({});
}

// Makes a change by what the reading says of the device; nothing, or the sentence that says why not.
std::optional<std::string> change(AudioHardware& audio, const QuickStatusSnapshot& before,
                                  const QuickRequest& request) {
  QuickAudioHardware hardware(audio);
  if (!before.output && request.action != "output") return QM_TR("没有声音输出设备");
  const double fraction = percentageArgument(request.value).value_or(0);
  bool taken = false;
  if (request.action == "volume") {
    if (!before.canSetVolume) return QM_TR("此设备的音量由硬件控制。");
    taken = hardware.setVolume(fraction);
  } else if (request.action == "balance") {
    if (!before.canSetBalance) return QM_TR("此设备不支持声道平衡");
    taken = hardware.setBalance(fraction, before.output->id);
  } else if (request.action == "mute") {
    taken = hardware.toggleMute();
  } else {
    const std::vector<QuickAudioDevice> found = devicesNamed(request.value, before.outputs);
    if (found.empty()) {
      return L10n::format(QM_TR("没有“%@”这个输出设备，可选：%@"), {request.value, namesOf(before.outputs)});
    }
    if (found.size() > 1) {
      return L10n::format(QM_TR("“%@”不止一个，请给出括号里的编号：%@"), {request.value, namesOf(found)});
    }
    taken = hardware.selectOutput(found.front().id);
    if (taken) waitForOutput(audio, found.front().id);
  }
  return taken ? std::nullopt : std::optional(QM_TR("设备未接受更改，请在系统声音设置中重试。"));
}

}  // namespace

std::optional<double> percentageArgument(std::string_view text) {
  if (text.ends_with('%')) text.remove_suffix(1);
  double percentage = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), percentage);
  const bool isNumber = error == std::errc{} && end == text.data() + text.size();
  if (!isNumber || !(percentage >= 0 && percentage <= 100)) return std::nullopt;
  return percentage / 100;
}

ExitCode runQuick(Console& console, const QuickSources& sources, const QuickRequest& request) {
  const auto read = [&sources] {
    QuickStatusSnapshot snapshot = readQuickStatus(sources.wifi, sources.audio);
    snapshot.connection = connectionOf(sources.path);
    return snapshot;
  };
  QuickStatusSnapshot snapshot = read();
  if (request.action != "show") {
    if (const auto problem = change(sources.audio, snapshot, request)) return console.failure(*problem);
    snapshot = read();
  }
  if (request.json) {
    // A name may hold bytes that are no UTF-8.
    console.printLine(jsonOf(snapshot).dump(2, ' ', false, Json::error_handler_t::replace));
  } else {
    printTable(console, snapshot);
  }
  return ExitCode::done;
}

}  // namespace quillmeter::ctl
