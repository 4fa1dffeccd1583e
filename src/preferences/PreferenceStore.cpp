#include "preferences/PreferenceStore.h"

#include <utility>

#include "platform/MainExecutor.h"

namespace quillmeter {

namespace {

template <typename T>
std::optional<T> as(const PreferenceValue& value) {
  if (const T* typed = std::get_if<T>(&value)) return *typed;
  return std::nullopt;
}

template <>
std::optional<double> as<double>(const PreferenceValue& value) {
  if (const auto* integer = std::get_if<std::int64_t>(&value)) return static_cast<double>(*integer);
  if (const auto* real = std::get_if<double>(&value)) return *real;
  return std::nullopt;
}

}  // namespace

void PreferenceStore::registerDefaults(const std::vector<std::pair<std::string, PreferenceValue>>& defaults) {
  {
    const std::lock_guard lock(mutex_);
    for (const auto& [key, value] : defaults) registered_.insert_or_assign(key, value);
  }
  ++revision_;
}

template <typename T>
std::optional<T> PreferenceStore::typed(std::string_view key) const {
  if (const auto stored = domain_.get(key)) {
    if (auto value = as<T>(*stored)) return value;
  }
  const std::lock_guard lock(mutex_);
  const auto found = registered_.find(key);
  return found == registered_.end() ? std::nullopt : as<T>(found->second);
}

std::optional<std::string> PreferenceStore::string(std::string_view key) const {
  return typed<std::string>(key);
}
std::optional<bool> PreferenceStore::boolean(std::string_view key) const {
  return typed<bool>(key);
}
std::optional<std::int64_t> PreferenceStore::integer(std::string_view key) const {
  return typed<std::int64_t>(key);
}
std::optional<double> PreferenceStore::real(std::string_view key) const {
  return typed<double>(key);
}

std::optional<std::string> PreferenceStore::data(std::string_view key) const {
  auto value = typed<PreferenceData>(key);
  if (!value) return std::nullopt;
  return std::move(value->bytes);
}

bool PreferenceStore::contains(std::string_view key) const {
  if (domain_.contains(key)) return true;
  const std::lock_guard lock(mutex_);
  return registered_.contains(key);
}

std::string PreferenceStore::value(const StringSetting& setting) const {
  if (auto stored = string(setting.key)) return std::move(*stored);
  return std::string(setting.defaultValue);
}
bool PreferenceStore::value(const BooleanSetting& setting) const {
  return boolean(setting.key).value_or(setting.defaultValue);
}
std::int64_t PreferenceStore::value(const IntegerSetting& setting) const {
  return integer(setting.key).value_or(setting.defaultValue);
}
double PreferenceStore::value(const RealSetting& setting) const {
  return real(setting.key).value_or(setting.defaultValue);
}
std::optional<std::string> PreferenceStore::value(const DataSetting& setting) const {
  return data(setting.key);
}

tl::expected<void, PreferenceProblem> PreferenceStore::apply(std::string_view key,
                                                             std::optional<PreferenceValue> value) {
  const auto written = domain_.apply({{std::string(key), std::move(value)}});
  if (!written) return tl::unexpected(written.error());
  if (*written) {
    ++revision_;
    notify({std::string(key)}, PreferenceChangeOrigin::thisProgram);
  }
  return {};
}

tl::expected<void, PreferenceProblem> PreferenceStore::set(std::string_view key, PreferenceValue value) {
  return apply(key, std::move(value));
}

tl::expected<void, PreferenceProblem> PreferenceStore::setData(std::string_view key, std::string bytes) {
  return apply(key, PreferenceData{std::move(bytes)});
}

tl::expected<void, PreferenceProblem> PreferenceStore::remove(std::string_view key) {
  return apply(key, std::nullopt);
}

void PreferenceStore::refresh() {
  std::vector<std::string> keys = domain_.refresh();
  if (keys.empty()) return;
  ++revision_;
  notify(std::move(keys), PreferenceChangeOrigin::anotherProgram);
}

void PreferenceStore::tellOn(MainExecutor& executor) {
  executor_ = &executor;
  toldThread_ = std::this_thread::get_id();
}

void PreferenceStore::notify(std::vector<std::string> keys, PreferenceChangeOrigin origin) {
  if (executor_ == nullptr || std::this_thread::get_id() == toldThread_) return observers_.notify(keys, origin);
  executor_->post([this, keys = std::move(keys), origin] { observers_.notify(keys, origin); });
}

}  // namespace quillmeter
