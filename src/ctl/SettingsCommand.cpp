#include "ctl/SettingsCommand.h"

#include <CLI/CLI.hpp>

#include "base/L10n.h"
#include "ctl/DisplayWidth.h"
#include "ctl/TextTable.h"
#include "platform/linux/Base64.h"
#include "preferences/SettingText.h"

namespace quillmeter::ctl {
namespace {

// Whether a stored value is in force, the default is, or the default because what is stored has another type.
enum class ValueOrigin { stored, byDefault, wrongType };

struct ValueInForce {
  std::optional<PreferenceValue> value;  // absent where there is neither a value nor a default
  ValueOrigin origin = ValueOrigin::byDefault;
};

struct ValueReader {
  const PreferenceStore& preferences;

  template <typename Setting>
  std::optional<PreferenceValue> operator()(const Setting& setting) const {
    return preferences.value(setting);
  }
  std::optional<PreferenceValue> operator()(const DataSetting& setting) const {
    auto bytes = preferences.value(setting);
    return bytes ? std::optional<PreferenceValue>(PreferenceData{std::move(*bytes)}) : std::nullopt;
  }
  std::optional<PreferenceValue> operator()(const LegacySetting& setting) const {
    return preferences.domain().get(setting.key);
  }
};

ValueInForce valueInForce(const PreferenceStore& preferences, const SettingsKeys::AnySetting& setting) {
  ValueInForce result{std::visit(ValueReader{preferences}, setting), ValueOrigin::byDefault};
  const std::string_view key = SettingsKeys::keyOf(setting);
  if (!preferences.domain().contains(key)) return result;
  const std::optional<PreferenceValue> stored = preferences.domain().get(key);
  // A stored integer serves as a real.
  const bool integerAsReal =
      std::holds_alternative<RealSetting>(setting) && stored && std::holds_alternative<std::int64_t>(*stored);
  const bool sameType = stored && result.value && stored->index() == result.value->index();
  result.origin = sameType || integerAsReal ? ValueOrigin::stored : ValueOrigin::wrongType;
  return result;
}

// Bytes that are no text are shown as base64.
std::string textOf(const PreferenceValue& value) {
  const std::string text = settingText(value);
  return std::holds_alternative<PreferenceData>(value) && printable(text) != text ? encodeBase64(text) : text;
}

std::string cellFor(const ValueInForce& inForce) {
  if (!inForce.value) return "—";
  const auto* data = std::get_if<PreferenceData>(&*inForce.value);
  return data ? L10n::format(QM_TR("（%d 字节）"), {std::to_string(data->bytes.size())}) : textOf(*inForce.value);
}

TableCell originCell(ValueOrigin origin) {
  switch (origin) {
    case ValueOrigin::stored:
      return {QM_TR("已保存")};
    case ValueOrigin::byDefault:
      return {QM_TR("默认"), TextStyle::dim};
    case ValueOrigin::wrongType:
      return {QM_TR("默认（保存的值类型不符）"), TextStyle::warning};
  }
  return {};
}

}  // namespace

void SettingsCommand::declare(CLI::App& root, ChosenAction& chosen) {
  CLI::App* command = root.add_subcommand("settings", QM_TR("列出、读取或修改设置"));
  command->require_subcommand(0, 1);
  command->callback([this, &chosen, command] {
    if (command->get_subcommands().empty()) chosen = [this] { return list(); };
  });
  const auto declareOne = [&](const std::string& name, const std::string& description, RowAction action) {
    CLI::App* one = command->add_subcommand(name, description);
    one->group(QM_TR("命令"));
    one->fallthrough();
    one->add_option("KEY", key_, QM_TR("设置项，例如 settings.refreshInterval"))->type_name("");
    one->callback([this, &chosen, action] { chosen = [this, action] { return run(action); }; });
    return one;
  };
  declareOne("get", QM_TR("只输出一个设置的值"), &SettingsCommand::get);
  CLI::App* set = declareOne("set", QM_TR("保存一个设置"), &SettingsCommand::set);
  set->add_option_function<std::string>(
         "VALUE", [this](const std::string& value) { value_ = value, valueGiven_ = true; }, QM_TR("新的值"))
      ->type_name("");
  declareOne("unset", QM_TR("删除保存的值，恢复默认"), &SettingsCommand::unset);
}

ExitCode SettingsCommand::list() {
  TextTable table({Alignment::left, Alignment::left, Alignment::left});
  table.addHead({QM_TR("设置项"), QM_TR("值"), QM_TR("来源")});
  for (const SettingsKeys::AnySetting& setting : SettingsKeys::all()) {
    const ValueInForce inForce = valueInForce(context_.preferences, setting);
    const TextStyle style = inForce.origin == ValueOrigin::stored ? TextStyle::bold : TextStyle::plain;
    table.addRow({{std::string(SettingsKeys::keyOf(setting))}, {cellFor(inForce), style}, originCell(inForce.origin)});
  }
  table.print(context_.console);
  return ExitCode::done;
}

ExitCode SettingsCommand::run(RowAction action) {
  if (key_.empty()) return context_.console.wrongUse(QM_TR("请给出一个设置项，例如 settings.refreshInterval。"));
  const SettingsKeys::AnySetting* setting = SettingsKeys::find(key_);
  if (setting == nullptr) {
    return context_.console.wrongUse(
        L10n::format(QM_TR("没有“%@”这个设置项，全部设置项见：%@"), {key_, context_.toolCommand + " settings"}));
  }
  return (this->*action)(*setting);
}

ExitCode SettingsCommand::get(const SettingsKeys::AnySetting& setting) {
  const auto value = valueInForce(context_.preferences, setting).value;
  if (!value) return context_.console.failure(L10n::format(QM_TR("%@ 没有保存的值，也没有默认值。"), {key_}));
  context_.console.printLine(textOf(*value));
  return ExitCode::done;
}

ExitCode SettingsCommand::set(const SettingsKeys::AnySetting& setting) {
  if (!valueGiven_) return context_.console.wrongUse(L10n::format(QM_TR("请给出 %@ 的新值。"), {key_}));
  auto value = parseSettingText(setting, value_);
  if (!value) return context_.console.wrongUse(value.error());
  if (const auto stored = context_.preferences.set(key_, std::move(*value)); !stored) {
    return context_.console.failure(localizedDescription(stored.error()));
  }
  announce(setting);
  return ExitCode::done;
}

ExitCode SettingsCommand::unset(const SettingsKeys::AnySetting& setting) {
  if (const auto removed = context_.preferences.remove(key_); !removed) {
    return context_.console.failure(localizedDescription(removed.error()));
  }
  announce(setting);
  return ExitCode::done;
}

void SettingsCommand::announce(const SettingsKeys::AnySetting& setting) {
  if (SettingsKeys::keyOf(setting) != SettingsKeys::appLanguage.key) return;
  languageSelected_(context_.preferences.value(SettingsKeys::appLanguage));
}

}  // namespace quillmeter::ctl
