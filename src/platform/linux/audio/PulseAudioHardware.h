#pragma once

#include <map>
#include <string>

#include "platform/AudioHardware.h"
#include "platform/linux/audio/PulseConnection.h"

namespace quillmeter {

struct PulseSinkVolumes;

// The outputs of PulseAudio, or of PipeWire by its PulseAudio service. What was read is kept until the server announces
// a change, so that reading again costs nothing. `clock` outlives it.
class PulseAudioHardware final : public AudioHardware {
 public:
  struct Options {
    std::string serverAddress = {};  // empty: the user's server
    double patienceSeconds = 2;      // with a server that does not answer, for each call
  };

  explicit PulseAudioHardware(const MonotonicClock& clock) : PulseAudioHardware(clock, Options()) {}
  PulseAudioHardware(const MonotonicClock& clock, const Options& options)
      : connection_(options.serverAddress, options.patienceSeconds, clock) {}
  ~PulseAudioHardware() override = default;

  AudioFacts read() override;
  bool setVolume(std::uint32_t output, double volume) override;
  bool setChannelVolumes(std::uint32_t output, const std::vector<double>& volumes) override;
  bool setBalance(std::uint32_t output, double balance) override;
  bool setMuted(std::uint32_t output, bool muted) override;
  bool setDefaultOutput(std::uint32_t output) override;
  void onChange(std::function<void()> changed) override { connection_.onStale(std::move(changed)); }

 private:
  using Session = PulseConnection::Session;
  // Changes what an output is to be set to; false: it cannot be changed so.
  using VolumeChange = std::function<bool(PulseSinkVolumes&)>;

  bool query(Session& session);
  void rememberBalances();
  bool finishChange(Session& session, pa_operation* operation, const bool& taken);
  bool changeVolumes(std::uint32_t output, const VolumeChange& change);

  PulseConnection connection_;
  AudioFacts facts_;
  // By output. The server forgets the balance of what is turned down to nothing.
  std::map<std::uint32_t, double> balances_;
};

}  // namespace quillmeter
