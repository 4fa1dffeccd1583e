#include "platform/linux/BusProperties.h"

#include <systemd/sd-bus.h>

#include <cstring>
#include <limits>
#include <optional>

namespace quillmeter {
namespace {

template <typename Number>
std::optional<BusValue> readInteger(sd_bus_message* message, char type) {
  Number value{};
  if (sd_bus_message_read_basic(message, type, &value) < 0) return std::nullopt;
  if constexpr (sizeof(Number) == sizeof(std::int64_t) && !std::numeric_limits<Number>::is_signed) {
    if (value > std::uint64_t{std::numeric_limits<std::int64_t>::max()}) return std::nullopt;
  }
  return BusValue(static_cast<std::int64_t>(value));
}

std::optional<BusValue> readBasic(sd_bus_message* message, char type) {
  switch (type) {
    case 'b': {
      int value = 0;
      if (sd_bus_message_read_basic(message, type, &value) < 0) return std::nullopt;
      return BusValue(value != 0);
    }
    case 'd': {
      double value = 0;
      if (sd_bus_message_read_basic(message, type, &value) < 0) return std::nullopt;
      return BusValue(value);
    }
    case 's':
    case 'o': {
      const char* value = nullptr;
      if (sd_bus_message_read_basic(message, type, &value) < 0) return std::nullopt;
      return BusValue(std::string(value));
    }
    case 'y':
      return readInteger<std::uint8_t>(message, type);
    case 'n':
      return readInteger<std::int16_t>(message, type);
    case 'q':
      return readInteger<std::uint16_t>(message, type);
    case 'i':
      return readInteger<std::int32_t>(message, type);
    case 'u':
      return readInteger<std::uint32_t>(message, type);
    case 'x':
      return readInteger<std::int64_t>(message, type);
    case 't':
      return readInteger<std::uint64_t>(message, type);
    default:
      return std::nullopt;
  }
}

// Takes one variant off the message. False when the message is broken.
bool readVariant(sd_bus_message* message, std::optional<BusValue>& value) {
  char type = 0;
  const char* contents = nullptr;
  if (sd_bus_message_peek_type(message, &type, &contents) <= 0 || type != 'v') return false;
  constexpr const char* basicTypes = "bdsoynqiuxt";
  if (std::strlen(contents) != 1 || std::strchr(basicTypes, contents[0]) == nullptr) {
    return sd_bus_message_skip(message, "v") >= 0;
  }
  const char basic = contents[0];
  if (sd_bus_message_enter_container(message, 'v', contents) < 0) return false;
  value = readBasic(message, basic);
  return sd_bus_message_exit_container(message) >= 0;
}

}  // namespace

bool readBusProperties(sd_bus_message* message, BusProperties& properties) {
  if (sd_bus_message_enter_container(message, 'a', "{sv}") <= 0) return false;
  int entered = 0;
  while ((entered = sd_bus_message_enter_container(message, 'e', "sv")) > 0) {
    const char* key = nullptr;
    if (sd_bus_message_read_basic(message, 's', &key) < 0) return false;
    const std::string name = key;
    std::optional<BusValue> value;
    if (!readVariant(message, value) || sd_bus_message_exit_container(message) < 0) return false;
    if (value) properties.insert_or_assign(name, *std::move(value));
  }
  return entered == 0 && sd_bus_message_exit_container(message) >= 0;
}

}  // namespace quillmeter
