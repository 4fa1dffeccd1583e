#include "platform/linux/audio/PulseOutput.h"

#include <pulse/pulseaudio.h>

#include <array>
#include <cstdint>
#include <string_view>
#include <utility>

namespace quillmeter {
namespace {

std::string_view property(const pa_sink_info& sink, const char* key) {
  const char* value = sink.proplist == nullptr ? nullptr : pa_proplist_gets(sink.proplist, key);
  return value == nullptr ? std::string_view() : value;
}

std::uint32_t activePortType(const pa_sink_info& sink) {
  return sink.active_port == nullptr ? std::uint32_t{PA_DEVICE_PORT_TYPE_UNKNOWN} : sink.active_port->type;
}

// Servers of before port types were told name the port all the same.
bool activePortIsNamed(const pa_sink_info& sink, std::string_view piece) {
  const char* name = sink.active_port == nullptr ? nullptr : sink.active_port->name;
  return name != nullptr && std::string_view(name).find(piece) != std::string_view::npos;
}

bool comesFrom(const pa_sink_info& sink, std::string_view module) {
  return sink.driver != nullptr && std::string_view(sink.driver).find(module) != std::string_view::npos;
}

bool isBluetooth(const pa_sink_info& sink) {
  return property(sink, PA_PROP_DEVICE_BUS) == "bluetooth" || property(sink, PA_PROP_DEVICE_API).starts_with("bluez") ||
         activePortType(sink) == PA_DEVICE_PORT_TYPE_BLUETOOTH;
}

std::string_view transportByBus(const pa_sink_info& sink) {
  const std::string_view bus = property(sink, PA_PROP_DEVICE_BUS);
  if (bus == "usb") return "usb ";
  if (bus == "firewire") return "1394";
  if (bus == "pci") return property(sink, PA_PROP_DEVICE_FORM_FACTOR) == "internal" ? "bltn" : "pci ";
  if (bus == "isa" || bus == "platform" || property(sink, "device.bus_path").starts_with("platform-")) return "bltn";
  return (sink.flags & PA_SINK_HARDWARE) == 0 ? "virt" : "";
}

std::string_view transportOf(const pa_sink_info& sink) {
  // Low energy has its own audio profile.
  if (isBluetooth(sink)) return property(sink, "api.bluez5.profile").starts_with("bap") ? "blea" : "blue";
  if (comesFrom(sink, "raop") || !property(sink, "raop.ip").empty()) return "airp";
  if (comesFrom(sink, "combine")) return "grup";
  if (activePortType(sink) == PA_DEVICE_PORT_TYPE_HDMI || activePortIsNamed(sink, "hdmi")) return "hdmi";
  return transportByBus(sink);
}

// What is plugged in tells more than the card it is plugged into; a port for speakers does not.
std::string_view formFactorOf(const pa_sink_info& sink) {
  constexpr std::array<std::pair<std::uint32_t, std::string_view>, 8> byPort = {
      {{PA_DEVICE_PORT_TYPE_HEADPHONES, "headphone"},
       {PA_DEVICE_PORT_TYPE_HEADSET, "headset"},
       {PA_DEVICE_PORT_TYPE_EARPIECE, "handset"},
       {PA_DEVICE_PORT_TYPE_HANDSET, "handset"},
       {PA_DEVICE_PORT_TYPE_HANDSFREE, "hands-free"},
       {PA_DEVICE_PORT_TYPE_TV, "tv"},
       {PA_DEVICE_PORT_TYPE_CAR, "car"},
       {PA_DEVICE_PORT_TYPE_PORTABLE, "portable"}}};
  for (const auto& [type, formFactor] : byPort) {
    if (activePortType(sink) == type) return formFactor;
  }
  const std::string_view told = property(sink, PA_PROP_DEVICE_FORM_FACTOR);
  return told.empty() && activePortType(sink) == PA_DEVICE_PORT_TYPE_SPEAKER ? "speaker" : told;
}

double part(pa_volume_t volume) {
  return static_cast<double>(volume) / PA_VOLUME_NORM;
}

void addVolumes(const pa_sink_info& sink, AudioOutputFacts& facts) {
  if (pa_cvolume_valid(&sink.volume) == 0) return;
  facts.mainVolume = part(pa_cvolume_max(&sink.volume));
  facts.canSetMainVolume = true;
  if (pa_cvolume_compatible_with_channel_map(&sink.volume, &sink.channel_map) == 0 ||
      pa_channel_map_can_balance(&sink.channel_map) == 0) {
    return;
  }
  facts.mainBalance = (pa_cvolume_get_balance(&sink.volume, &sink.channel_map) + 1.0) / 2;
  facts.canSetMainBalance = true;
  for (const std::size_t channel : outputChannelOrder(sink))
    facts.channelVolumes.push_back(part(sink.volume.values[channel]));
  facts.canSetChannelVolumes = true;
}

}  // namespace

std::vector<std::size_t> outputChannelOrder(const pa_sink_info& sink) {
  const auto isSide = [&sink](std::size_t channel, pa_channel_position_t side) {
    return sink.channel_map.map[channel] == side;
  };
  std::vector<std::size_t> order;
  for (const pa_channel_position_t side : {PA_CHANNEL_POSITION_FRONT_LEFT, PA_CHANNEL_POSITION_FRONT_RIGHT}) {
    for (std::size_t channel = 0; channel < sink.volume.channels; ++channel) {
      if (isSide(channel, side)) order.push_back(channel);
    }
  }
  for (std::size_t channel = 0; channel < sink.volume.channels; ++channel) {
    if (!isSide(channel, PA_CHANNEL_POSITION_FRONT_LEFT) && !isSide(channel, PA_CHANNEL_POSITION_FRONT_RIGHT)) {
      order.push_back(channel);
    }
  }
  return order;
}

AudioOutputFacts audioOutputFacts(const pa_sink_info& sink) {
  AudioOutputFacts facts;
  facts.id = sink.index;
  facts.name = sink.description != nullptr ? sink.description : sink.name != nullptr ? sink.name : "";
  facts.transport = transportOf(sink);
  facts.formFactor = formFactorOf(sink);
  addVolumes(sink, facts);
  facts.muted = sink.mute != 0;
  facts.canSetMute = true;
  return facts;
}

}  // namespace quillmeter
