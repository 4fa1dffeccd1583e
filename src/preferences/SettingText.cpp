#include "preferences/SettingText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <system_error>
#include <utility>

#include "base/L10n.h"
#include "preferences/DashboardLayoutStorage.h"

namespace quillmeter {

namespace {

using Parsed = tl::expected<PreferenceValue, std::string>;

// Shortest text that is read back as the same number.
template <typename Number>
std::string numberText(Number number) {
  std::array<char, 32> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
  return {buffer.data(), result.ptr};
}

template <typename Number>
std::optional<Number> wholeNumber(std::string_view text) {
  Number number{};
  const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return std::nullopt;
  return number;
}

tl::unexpected<std::string> takes(std::string_view key, std::string_view what) {
  return tl::unexpected(L10n::format(QM_TR("设置 %@ 的值必须是 %@。"), {key, what}));
}

template <typename Number>
Parsed parseWithin(std::string_view key, std::optional<Number> number, Number minimum, Number maximum) {
  if (number && *number >= minimum && *number <= maximum) return *number;
  return takes(key, numberText(minimum) + " … " + numberText(maximum));
}

Parsed parse(const StringSetting& setting, std::string_view text) {
  if (setting.choices.empty() || std::ranges::find(setting.choices, text) != setting.choices.end())
    return std::string(text);
  std::string list;
  for (const std::string_view choice : setting.choices) list.append(list.empty() ? "" : " | ").append(choice);
  return takes(setting.key, list);
}

Parsed parse(const BooleanSetting& setting, std::string_view text) {
  constexpr std::array<std::string_view, 4> yes = {"true", "on", "yes", "1"};
  constexpr std::array<std::string_view, 4> no = {"false", "off", "no", "0"};
  if (std::ranges::find(yes, text) != yes.end()) return true;
  if (std::ranges::find(no, text) != no.end()) return false;
  return takes(setting.key, "true | false");
}

Parsed parse(const IntegerSetting& setting, std::string_view text) {
  return parseWithin(setting.key, wholeNumber<std::int64_t>(text), setting.minimum, setting.maximum);
}

Parsed parse(const RealSetting& setting, std::string_view text) {
  return parseWithin(setting.key, wholeNumber<double>(text), setting.minimum, setting.maximum);
}

// Both settings of this type are layouts.
Parsed parse(const DataSetting& setting, std::string_view text) {
  if (DashboardLayoutStorage::decodes(text)) return PreferenceData{std::string(text)};
  return takes(setting.key, R"([{"kind":"cpu","size":"small","isEnabled":true}, …])");
}

Parsed parse(const LegacySetting& setting, std::string_view) {
  return tl::unexpected(L10n::format(QM_TR("设置 %@ 已停用，不能再写入。"), {setting.key}));
}

std::string reason(const PreferenceProblem& problem) {
  return std::error_code(problem.systemError, std::generic_category()).message();
}

}  // namespace

Parsed parseSettingText(const SettingsKeys::AnySetting& setting, std::string_view text) {
  return std::visit([&](const auto& row) { return parse(row, text); }, setting);
}

std::string settingText(const PreferenceValue& value) {
  if (const auto* text = std::get_if<std::string>(&value)) return *text;
  if (const auto* data = std::get_if<PreferenceData>(&value)) return data->bytes;
  if (const auto* truth = std::get_if<bool>(&value)) return *truth ? "true" : "false";
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return numberText(*integer);
  const std::string text = numberText(std::get<double>(value));
  return text.find_first_not_of("-0123456789") == std::string::npos ? text + ".0" : text;
}

std::string_view settingTypeName(const SettingsKeys::AnySetting& setting) {
  constexpr std::array<std::string_view, 6> names = {"string", "bool", "integer", "double", "data", "any"};
  static_assert(std::variant_size_v<SettingsKeys::AnySetting> == names.size());
  return names[setting.index()];
}

std::optional<PreferenceValue> settingDefault(const SettingsKeys::AnySetting& setting) {
  if (const auto* row = std::get_if<StringSetting>(&setting)) return std::string(row->defaultValue);
  if (const auto* row = std::get_if<BooleanSetting>(&setting)) return row->defaultValue;
  if (const auto* row = std::get_if<RealSetting>(&setting)) return row->defaultValue;
  if (const auto* row = std::get_if<IntegerSetting>(&setting)) return row->defaultValue;
  return std::nullopt;
}

std::string localizedDescription(const PreferenceProblem& problem) {
  const std::string path = problem.path.string();
  switch (problem.kind) {
    case PreferenceProblem::Kind::unreadable:
      return L10n::format(QM_TR("无法读取设置文件 %@（%@），其内容保持不变。"), {path, reason(problem)});
    case PreferenceProblem::Kind::unparsable:
      if (problem.systemError != 0)
        return L10n::format(QM_TR("设置文件 %@ 已损坏，且旁边保留的损坏副本过多，请先清理。"), {path});
      return L10n::format(QM_TR("设置文件 %@ 已损坏，暂用默认设置。"), {path});
    case PreferenceProblem::Kind::keptAside:
      return L10n::format(QM_TR("损坏的设置文件已保留为 %@。"), {problem.keptAt.string()});
    case PreferenceProblem::Kind::unwritable:
      return L10n::format(QM_TR("无法写入设置文件 %@（%@）。"), {path, reason(problem)});
    case PreferenceProblem::Kind::busy:
      return L10n::format(QM_TR("另一个程序正在写入设置文件 %@，请稍后再试。"), {path});
    case PreferenceProblem::Kind::invalidValue:
      return QM_TR("这个值无法保存到设置中。");
  }
  return {};
}

}  // namespace quillmeter
