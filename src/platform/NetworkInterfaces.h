#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace quillmeter {

// Cumulative bytes of one interface. They fall when the interface is replaced by another of its name.
struct InterfaceCounters {
  std::uint64_t receivedBytes = 0;
  std::uint64_t sentBytes = 0;
  friend bool operator==(const InterfaceCounters&, const InterfaceCounters&) = default;
};

// The network interfaces of this machine. Main thread; never blocks.
class NetworkInterfaces {
 public:
  virtual ~NetworkInterfaces() = default;
  // Name of the interface that carries the default route; empty when there is none. Valid until the next call of any
  // operation.
  virtual std::string_view primaryInterface() = 0;
  // Absent when no interface has this name.
  virtual std::optional<InterfaceCounters> counters(std::string_view interface) = 0;
  // The first IPv4 address of the interface in numeric form; absent when it has none.
  virtual std::optional<std::string> ipv4Address(std::string_view interface) = 0;
  // `changed` is called on the main thread after routes, links or addresses changed; several changes may give one call.
  // One function at a time; an empty one ends it.
  virtual void onChange(std::function<void()> changed) = 0;
};

}  // namespace quillmeter
