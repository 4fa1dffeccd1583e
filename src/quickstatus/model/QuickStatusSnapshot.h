#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmeter {

// One sound output.
struct QuickAudioDevice {
  std::uint32_t id = 0;
  std::string name;
  std::string transport;   // four characters: "bltn", "blue", "usb " ...
  std::string formFactor;  // "headphone", "speaker" ...; empty: unknown

  bool isBluetooth() const { return transport == "blue" || transport == "blea"; }
  // Name of the symbol that shows what kind of device this is.
  std::string_view symbol() const;

  friend bool operator==(const QuickAudioDevice&, const QuickAudioDevice&) = default;
};

enum class QuickConnection { checking, wifi, ethernet, other, offline };

// "checking", "wifi" ...
std::string_view rawValue(QuickConnection connection);

// Network link and sound output at one moment. A value; equal readings are not published again.
struct QuickStatusSnapshot {
  QuickConnection connection = QuickConnection::checking;
  std::optional<bool> wifiPowered;
  std::optional<int> wifiRSSI;     // dBm
  std::optional<double> wifiRate;  // Mbit/s
  std::optional<QuickAudioDevice> output;
  std::vector<QuickAudioDevice> outputs;
  std::optional<double> volume;   // 0 ... 1
  std::optional<double> balance;  // 0 left ... 0.5 centre ... 1 right
  bool canSetBalance = false;
  bool canSetVolume = false;
  bool canSetMute = false;
  std::optional<bool> muted;

  std::string_view networkSymbol() const;
  std::string networkTitle() const;

  friend bool operator==(const QuickStatusSnapshot&, const QuickStatusSnapshot&) = default;
};

}  // namespace quillmeter
