#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/NetworkInterfaces.h"

namespace quillmeter {

// Interfaces as a test sets them; counts how often the primary one was asked for.
class FakeNetworkInterfaces final : public NetworkInterfaces {
 public:
  struct Interface {
    std::string name;
    InterfaceCounters counters;
    std::optional<std::string> ipv4;
  };
  std::string_view primaryInterface() override {
    ++reads;
    return primary;
  }
  std::optional<InterfaceCounters> counters(std::string_view name) override {
    for (const auto& interface : interfaces) {
      if (interface.name == name) return interface.counters;
    }
    return std::nullopt;
  }
  std::optional<std::string> ipv4Address(std::string_view name) override {
    for (const auto& interface : interfaces) {
      if (interface.name == name) return interface.ipv4;
    }
    return std::nullopt;
  }
  void onChange(std::function<void()> function) override { changed = std::move(function); }

  std::string primary;
  std::vector<Interface> interfaces;
  std::function<void()> changed;
  int reads = 0;
};

}  // namespace quillmeter
