#include "quickstatus/model/QuickStatusSnapshot.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <utility>

#include "base/L10n.h"

namespace quillmeter {

namespace {

std::string lowercased(std::string_view text) {
  std::string lower(text);
  std::ranges::transform(lower, lower.begin(), [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return lower;
}

// What the name itself gives away, before form factor and transport are asked: names are the users' own words.
constexpr std::array<std::pair<std::string_view, std::string_view>, 10> symbolsByName = {
    {{"airpods", "airpods"},
     {"headphone", "headphones"},
     {"headset", "headphones"},
     {"earbud", "headphones"},
     {"earphone", "headphones"},
     {"耳机", "headphones"},
     {"homepod", "hifispeaker.fill"},
     {"display", "display"},
     {"monitor", "display"},
     {"tv", "tv"}}};
constexpr std::array<std::pair<std::string_view, std::string_view>, 11> symbolsByFormFactor = {
    {{"headphone", "headphones"},
     {"headset", "headphones"},
     {"hands-free", "headphones"},
     {"handset", "headphones"},
     {"speaker", "hifispeaker.fill"},
     {"portable", "hifispeaker.fill"},
     {"hifi", "hifispeaker.fill"},
     {"car", "car.fill"},
     {"tv", "tv"},
     {"computer", "laptopcomputer"},
     {"internal", "speaker.wave.2.fill"}}};
constexpr std::array<std::pair<std::string_view, std::string_view>, 9> symbolsByTransport = {
    {{"blue", "headphones"},
     {"blea", "headphones"},
     {"hdmi", "tv"},
     {"dprt", "display"},
     {"airp", "airplayaudio"},
     {"usb ", "hifispeaker.fill"},
     {"virt", "waveform"},
     {"grup", "hifispeaker.2.fill"},
     {"bltn", "speaker.wave.2.fill"}}};

}  // namespace

std::string_view QuickAudioDevice::symbol() const {
  const std::string lower = lowercased(name);
  for (const auto& [piece, symbolName] : symbolsByName) {
    if (lower.find(piece) != std::string::npos) return symbolName;
  }
  for (const auto& [factor, symbolName] : symbolsByFormFactor) {
    if (formFactor == factor) return symbolName;
  }
  for (const auto& [code, symbolName] : symbolsByTransport) {
    if (transport == code) return symbolName;
  }
  return "speaker.wave.2.fill";
}

std::string_view rawValue(QuickConnection connection) {
  switch (connection) {
    case QuickConnection::checking:
      return "checking";
    case QuickConnection::wifi:
      return "wifi";
    case QuickConnection::ethernet:
      return "ethernet";
    case QuickConnection::other:
      return "other";
    case QuickConnection::offline:
      break;
  }
  return "offline";
}

std::string_view QuickStatusSnapshot::networkSymbol() const {
  switch (connection) {
    case QuickConnection::checking:
      return "questionmark";
    case QuickConnection::wifi:
      return "wifi";
    case QuickConnection::ethernet:
      return "network";
    case QuickConnection::other:
      return "link";
    case QuickConnection::offline:
      break;
  }
  return wifiPowered == false ? "wifi.slash" : "wifi.exclamationmark";
}

std::string QuickStatusSnapshot::networkTitle() const {
  switch (connection) {
    case QuickConnection::checking:
      return QM_TR("正在采样");
    case QuickConnection::wifi:
      return QM_TR("Wi-Fi 已连接");
    case QuickConnection::ethernet:
      return QM_TR("以太网已连接");
    case QuickConnection::other:
      return QM_TR("网络已连接");
    case QuickConnection::offline:
      break;
  }
  return wifiPowered == false ? QM_TR("Wi-Fi 已关闭") : QM_TR("网络未连接");
}

}  // namespace quillmeter
