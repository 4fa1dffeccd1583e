#include "platform/linux/SysfsPowerSupply.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>

#include "platform/linux/TextFields.h"

namespace quillmeter {
namespace {

constexpr double secondsBetweenReadings = 5;
constexpr double secondsBetweenListings = 60;
constexpr std::int64_t longestMinutes = 10 * 24 * 60;  // a rate near zero tells no time

// The properties of one supply as the kernel names them.
struct Properties {
  std::optional<std::int64_t> energyNow, energyFull, chargeNow, chargeFull;  // µWh, µAh
  std::optional<std::int64_t> powerNow, currentNow, voltageNow;              // µW, µA, µV
};

// Some drivers report a discharge current as negative.
std::optional<std::int64_t> magnitude(std::optional<std::int64_t> value) {
  if (!value || *value == std::numeric_limits<std::int64_t>::min()) return std::nullopt;
  return std::abs(*value);
}

bool isPositive(std::optional<std::int64_t> value) {
  return value && *value > 0;
}

std::optional<std::int64_t> rounded(double value) {
  if (!(value >= 0 && value < 1e15)) return std::nullopt;
  return std::llround(value);
}

void fillContent(const Properties& properties, PowerSupplyFacts& facts) {
  const auto power = magnitude(properties.powerNow);
  const auto current = magnitude(properties.currentNow);
  const double volts = static_cast<double>(properties.voltageNow.value_or(0)) / 1e6;
  if (properties.energyNow && isPositive(properties.energyFull)) {
    facts.contentNow = properties.energyNow;
    facts.contentFull = properties.energyFull;
    facts.ratePerHour = power;
    if (!power && current && volts > 0) facts.ratePerHour = rounded(static_cast<double>(*current) * volts);
  } else if (properties.chargeNow && isPositive(properties.chargeFull)) {
    facts.contentNow = properties.chargeNow;
    facts.contentFull = properties.chargeFull;
    facts.ratePerHour = current;
    if (!current && power && volts > 0) facts.ratePerHour = rounded(static_cast<double>(*power) / volts);
  }
}

std::optional<std::int64_t> minutesFor(std::int64_t content, std::int64_t ratePerHour) {
  const double minutes = static_cast<double>(content) * 60 / static_cast<double>(ratePerHour);
  if (minutes > longestMinutes) return std::nullopt;
  return static_cast<std::int64_t>(minutes);
}

std::string lineOf(const std::filesystem::path& path) {
  std::array<char, 64> buffer;
  std::string_view text = KeptFile(path).read(buffer);
  return std::string(takeLine(text));
}

}  // namespace

PowerSupplyFacts parsePowerSupply(std::string_view text) {
  constexpr std::string_view prefix = "POWER_SUPPLY_";
  PowerSupplyFacts facts;
  Properties properties;
  while (!text.empty()) {
    std::string_view line = takeLine(text);
    const std::size_t equals = line.find('=');
    if (!line.starts_with(prefix) || equals == std::string_view::npos) continue;
    const std::string_view key = line.substr(prefix.size(), equals - prefix.size());
    const std::string_view value = line.substr(equals + 1);
    if (key == "NAME") facts.name = value;
    if (key == "STATUS") facts.status = value;
    if (key == "PRESENT") facts.present = value != "0";
    if (key == "ONLINE") facts.online = value != "0";
    if (key == "CAPACITY") facts.percent = numberFrom<std::int64_t>(value);
    if (key == "ENERGY_NOW") properties.energyNow = numberFrom<std::int64_t>(value);
    if (key == "ENERGY_FULL") properties.energyFull = numberFrom<std::int64_t>(value);
    if (key == "CHARGE_NOW") properties.chargeNow = numberFrom<std::int64_t>(value);
    if (key == "CHARGE_FULL") properties.chargeFull = numberFrom<std::int64_t>(value);
    if (key == "POWER_NOW") properties.powerNow = numberFrom<std::int64_t>(value);
    if (key == "CURRENT_NOW") properties.currentNow = numberFrom<std::int64_t>(value);
    if (key == "VOLTAGE_NOW") properties.voltageNow = numberFrom<std::int64_t>(value);
  }
  fillContent(properties, facts);
  return facts;
}

std::optional<bool> onExternalPower(const std::vector<PowerSupplyFacts>& mains, const PowerSupplyFacts& battery) {
  const bool plugged = std::any_of(mains.begin(), mains.end(), [](const auto& supply) { return supply.online; });
  if (plugged || battery.status == "Charging") return true;
  if (!mains.empty() || battery.status == "Discharging") return false;
  if (battery.status == "Full" || battery.status == "Not charging") return true;
  return std::nullopt;
}

PowerSourceDescription describeBattery(const PowerSupplyFacts& battery, std::optional<bool> externalPower) {
  PowerSourceDescription description{{"Name", battery.name}};
  if (externalPower) description["Power Source State"] = std::string(*externalPower ? "AC Power" : "Battery Power");
  if (!battery.status.empty() && battery.status != "Unknown") {
    description["Is Charging"] = battery.status == "Charging";
    description["Is Charged"] = battery.status == "Full";
  }
  if (battery.contentNow && battery.contentFull) {
    const std::int64_t now = std::clamp<std::int64_t>(*battery.contentNow, 0, *battery.contentFull);
    description["Current Capacity"] = now;
    description["Max Capacity"] = *battery.contentFull;
    if (isPositive(battery.ratePerHour)) {
      const auto toEmpty = minutesFor(now, *battery.ratePerHour);
      const auto toFull = minutesFor(*battery.contentFull - now, *battery.ratePerHour);
      if (battery.status == "Discharging" && toEmpty) description["Time to Empty"] = *toEmpty;
      if (battery.status == "Charging" && toFull) description["Time to Full Charge"] = *toFull;
    }
  } else if (battery.percent) {
    description["Current Capacity"] = std::clamp<std::int64_t>(*battery.percent, 0, 100);
    description["Max Capacity"] = std::int64_t{100};
  }
  return description;
}

SysfsPowerSupply::SysfsPowerSupply(std::filesystem::path root, const MonotonicClock& clock)
    : folder_(std::move(root) / "sys/class/power_supply"), clock_(clock) {}

const std::vector<PowerSourceDescription>& SysfsPowerSupply::list() {
  const double now = clock_.uptime();
  if (!listedAt_ || now - *listedAt_ >= secondsBetweenListings) {
    listedAt_ = now;
    readAt_.reset();
    listSupplies();
  }
  if (!readAt_ || now - *readAt_ >= secondsBetweenReadings) {
    readAt_ = now;
    readSupplies();
  }
  return descriptions_;
}

void SysfsPowerSupply::listSupplies() {
  std::vector<std::filesystem::path> supplies;
  std::error_code error;
  for (std::filesystem::directory_iterator entry(folder_, error), end; !error && entry != end; entry.increment(error)) {
    supplies.push_back(entry->path());
  }
  std::sort(supplies.begin(), supplies.end());
  batteries_.clear();
  mains_.clear();
  for (const auto& supply : supplies) {
    if (lineOf(supply / "scope") == "Device") continue;  // of a mouse or a headset
    const std::string type = lineOf(supply / "type");
    if (type == "Battery") {
      batteries_.emplace_back(supply / "uevent");
    } else if (type == "Mains" || type == "USB" || type == "Wireless") {
      mains_.emplace_back(supply / "uevent");
    }
  }
}

void SysfsPowerSupply::readSupplies() {
  descriptions_.clear();
  if (batteries_.empty()) return;
  std::array<char, 4096> buffer;
  std::vector<PowerSupplyFacts> mains;
  for (auto& supply : mains_) {
    if (const auto text = supply.read(buffer); !text.empty()) mains.push_back(parsePowerSupply(text));
  }
  for (auto& supply : batteries_) {
    const auto text = supply.read(buffer);
    if (text.empty()) continue;
    PowerSupplyFacts battery = parsePowerSupply(text);
    if (!battery.present) continue;
    if (battery.name.empty()) battery.name = supply.path().parent_path().filename();
    descriptions_.push_back(describeBattery(battery, onExternalPower(mains, battery)));
  }
}

}  // namespace quillmeter
