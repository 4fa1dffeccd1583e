#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace quillmeter {

// Whether a setting's default is put into the registration layer at start, or supplied where the setting is read.
enum class DefaultKind { registered, supplied };

// One row of the table of settings: name in the code, key in the domain, default. `choices` are the texts that make
// sense, empty when any does; `minimum` and `maximum` bound what the terminal tool lets a user write, not what is read.
struct StringSetting {
  std::string_view name;
  std::string_view key;
  std::string_view defaultValue;
  DefaultKind kind = DefaultKind::supplied;
  std::span<const std::string_view> choices = {};
};

struct BooleanSetting {
  std::string_view name;
  std::string_view key;
  bool defaultValue = false;
  DefaultKind kind = DefaultKind::supplied;
};

struct IntegerSetting {
  std::string_view name;
  std::string_view key;
  std::int64_t defaultValue = 0;
  std::int64_t minimum = 0;
  std::int64_t maximum = 0;
};

struct RealSetting {
  std::string_view name;
  std::string_view key;
  double defaultValue = 0;
  DefaultKind kind = DefaultKind::supplied;
  double minimum = 0;
  double maximum = 0;
};

// Bytes; absent by default.
struct DataSetting {
  std::string_view name;
  std::string_view key;
};

// A key of an older version, of any type; only its presence counts.
struct LegacySetting {
  std::string_view name;
  std::string_view key;
};

}  // namespace quillmeter
