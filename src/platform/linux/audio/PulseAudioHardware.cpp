#include "platform/linux/audio/PulseAudioHardware.h"

#include <pulse/pulseaudio.h>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "platform/linux/audio/PulseOutput.h"

namespace quillmeter {

// What has to be known of a sink before its volume can be changed.
struct PulseSinkVolumes {
  bool found = false;
  pa_cvolume volume{};
  pa_channel_map map{};
  std::vector<std::size_t> order;
};

namespace {

constexpr std::size_t mostOutputs = 256;

pa_volume_t volumeValue(double part) {
  const double value = std::round(part * PA_VOLUME_NORM);
  return static_cast<pa_volume_t>(std::clamp(value, double{PA_VOLUME_MUTED}, double{PA_VOLUME_MAX}));
}

float serverBalance(double balance) {
  return static_cast<float>(std::clamp(balance, 0.0, 1.0) * 2 - 1);
}

bool isSilent(const pa_cvolume& volume) {
  return pa_cvolume_max(&volume) == PA_VOLUME_MUTED;
}

void noteSuccess(pa_context*, int success, void* taken) {
  *static_cast<bool*>(taken) = success != 0;
}

PulseSinkVolumes volumesOf(PulseConnection::Session& session, std::uint32_t output) {
  PulseSinkVolumes volumes;
  if (!session.isConnected()) return volumes;
  const auto note = [](pa_context*, const pa_sink_info* sink, int, void* into) {
    if (sink == nullptr) return;
    *static_cast<PulseSinkVolumes*>(into) = {pa_cvolume_valid(&sink->volume) != 0, sink->volume, sink->channel_map,
                                             outputChannelOrder(*sink)};
  };
  if (!session.finish(pa_context_get_sink_info_by_index(session.context(), output, note, &volumes))) return {};
  return volumes;
}

}  // namespace

AudioFacts PulseAudioHardware::read() {
  Session session(connection_);
  if (session.isConnected() && connection_.takeStale() && !query(session)) {
    connection_.keepStale();
    return {};
  }
  return session.isConnected() ? facts_ : AudioFacts();
}

bool PulseAudioHardware::query(Session& session) {
  std::string defaultName;
  struct Outputs {
    const std::string& defaultName;
    AudioFacts facts;
  } outputs{defaultName, {}};
  const auto noteServer = [](pa_context*, const pa_server_info* server, void* into) {
    if (server != nullptr && server->default_sink_name != nullptr) {
      *static_cast<std::string*>(into) = server->default_sink_name;
    }
  };
  const auto noteSink = [](pa_context*, const pa_sink_info* sink, int, void* into) {
    auto& [name, facts] = *static_cast<Outputs*>(into);
    if (sink == nullptr || facts.outputs.size() >= mostOutputs) return;
    facts.outputs.push_back(audioOutputFacts(*sink));
    if (sink->name != nullptr && sink->name == name) facts.defaultOutput = sink->index;
  };
  if (!session.finish(pa_context_get_server_info(session.context(), noteServer, &defaultName)) ||
      !session.finish(pa_context_get_sink_info_list(session.context(), noteSink, &outputs))) {
    return false;
  }
  facts_ = std::move(outputs.facts);
  rememberBalances();
  return true;
}

void PulseAudioHardware::rememberBalances() {
  std::map<std::uint32_t, double> balances;
  for (AudioOutputFacts& output : facts_.outputs) {
    if (!output.mainBalance) continue;
    if (const auto known = balances_.find(output.id); output.mainVolume == 0.0 && known != balances_.end()) {
      output.mainBalance = known->second;
    }
    balances[output.id] = *output.mainBalance;
  }
  balances_ = std::move(balances);
}

bool PulseAudioHardware::changeVolumes(std::uint32_t output, const VolumeChange& change) {
  Session session(connection_);
  PulseSinkVolumes sink = volumesOf(session, output);
  if (!sink.found || !change(sink)) return false;
  bool taken = false;
  return finishChange(session,
                      pa_context_set_sink_volume_by_index(session.context(), output, &sink.volume, noteSuccess, &taken),
                      taken);
}

// The answer may come before the announcement: the next reading looks again in any case.
bool PulseAudioHardware::finishChange(Session& session, pa_operation* operation, const bool& taken) {
  const bool done = session.finish(operation) && taken;
  connection_.keepStale();
  return done;
}

bool PulseAudioHardware::setVolume(std::uint32_t output, double volume) {
  return changeVolumes(output, [&](PulseSinkVolumes& sink) {
    const bool wasSilent = isSilent(sink.volume);
    pa_cvolume_scale(&sink.volume, volumeValue(volume));
    const auto balance = balances_.find(output);
    if (wasSilent && balance != balances_.end()) {
      pa_cvolume_set_balance(&sink.volume, &sink.map, serverBalance(balance->second));
    }
    return true;
  });
}

bool PulseAudioHardware::setChannelVolumes(std::uint32_t output, const std::vector<double>& parts) {
  return changeVolumes(output, [&parts](PulseSinkVolumes& sink) {
    if (parts.size() != sink.order.size()) return false;
    for (std::size_t i = 0; i < parts.size(); ++i) sink.volume.values[sink.order[i]] = volumeValue(parts[i]);
    return true;
  });
}

bool PulseAudioHardware::setBalance(std::uint32_t output, double balance) {
  return changeVolumes(output, [&](PulseSinkVolumes& sink) {
    if (pa_channel_map_can_balance(&sink.map) == 0) return false;
    pa_cvolume_set_balance(&sink.volume, &sink.map, serverBalance(balance));
    if (isSilent(sink.volume)) balances_[output] = std::clamp(balance, 0.0, 1.0);
    return true;
  });
}

bool PulseAudioHardware::setMuted(std::uint32_t output, bool muted) {
  Session session(connection_);
  if (!session.isConnected()) return false;
  bool taken = false;
  return finishChange(
      session, pa_context_set_sink_mute_by_index(session.context(), output, muted ? 1 : 0, noteSuccess, &taken), taken);
}

bool PulseAudioHardware::setDefaultOutput(std::uint32_t output) {
  Session session(connection_);
  if (!session.isConnected()) return false;
  std::string name;
  const auto noteName = [](pa_context*, const pa_sink_info* sink, int, void* into) {
    if (sink != nullptr && sink->name != nullptr) *static_cast<std::string*>(into) = sink->name;
  };
  if (!session.finish(pa_context_get_sink_info_by_index(session.context(), output, noteName, &name)) || name.empty()) {
    return false;
  }
  bool taken = false;
  return finishChange(session, pa_context_set_default_sink(session.context(), name.c_str(), noteSuccess, &taken),
                      taken);
}

}  // namespace quillmeter
