#include "screentime/model/ActivityArchive.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <unordered_map>
#include <utility>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace quillmeter {
namespace {

constexpr Date referenceDate = Date::fromWholeSeconds(978'307'200);  // 2001-01-01 00:00:00 UTC

Date dateFromReference(double seconds) {
  const double microseconds = std::round(seconds * Date::microsecondsPerSecond);
  if (microseconds <= static_cast<double>(Date::distantPast().microseconds)) return Date::distantPast();
  if (microseconds >= static_cast<double>(Date::distantFuture().microseconds - referenceDate.microseconds))
    return Date::distantFuture();
  return Date{static_cast<std::int64_t>(microseconds) + referenceDate.microseconds};
}

// The microseconds of a plain decimal number with up to six decimals, as it is written here. Read from the text,
// because a double holds microseconds only within some 140 years. Absent for any other form.
std::optional<Date> exactDate(std::string_view text) {
  constexpr std::size_t maximumWholeDigits = 12;
  constexpr std::size_t decimals = 6;
  const bool negative = text.starts_with('-');
  if (negative) text.remove_prefix(1);
  const std::size_t point = std::min(text.find('.'), text.size());
  const std::size_t fractionDigits = text.size() - std::min(point + 1, text.size());
  if (point == 0 || point > maximumWholeDigits || fractionDigits > decimals) return std::nullopt;
  std::int64_t microseconds = 0;
  for (const char digit : text) {
    if (digit == '.') continue;
    if (digit < '0' || digit > '9') return std::nullopt;
    microseconds = microseconds * 10 + (digit - '0');
  }
  for (std::size_t count = fractionDigits; count < decimals; ++count) microseconds *= 10;
  const Date date{(negative ? -microseconds : microseconds) + referenceDate.microseconds};
  return std::clamp(date, Date::distantPast(), Date::distantFuture());
}

// Decimal and exact: a floating number would have to be rounded twice on its way to the file and back.
void appendReferenceSeconds(std::string& out, Date date) {
  const std::int64_t microseconds = date.microseconds - referenceDate.microseconds;
  const std::uint64_t size = static_cast<std::uint64_t>(std::llabs(microseconds));
  const std::uint64_t fraction = size % Date::microsecondsPerSecond;
  fmt::format_to(std::back_inserter(out), "{}{}", microseconds < 0 ? "-" : "", size / Date::microsecondsPerSecond);
  if (fraction == 0) return;
  fmt::format_to(std::back_inserter(out), ".{:06}", fraction);
  out.erase(out.find_last_not_of('0') + 1);
}

std::string quoted(const std::string& text) {
  return nlohmann::json(text).dump(-1, ' ', false, nlohmann::json::error_handler_t::replace);
}

// Fills an archive while the parser reads on, so that a big file never stands in memory as a tree. Each callback
// answers whether to go on; unknown keys are passed over with all below them.
class ArchiveReader final : public nlohmann::json_sax<nlohmann::json> {
 public:
  explicit ArchiveReader(ActivityArchive& archive) : archive_(archive) {}

  bool isComplete() const { return place_ == Place::end && sawVersion_ && sawEnabled_ && sawSpans_; }

  bool null() override {
    return ignoredDepth_ > 0 || isUnknown() || (place_ == Place::root && key_ == Key::startedAt && clearStartedAt());
  }
  bool boolean(bool value) override {
    if (ignoredDepth_ > 0 || isUnknown()) return true;
    if (place_ != Place::root || key_ != Key::enabled) return false;
    archive_.enabled = value;
    return sawEnabled_ = true;
  }
  bool number_integer(number_integer_t value) override { return number(static_cast<double>(value)); }
  bool number_unsigned(number_unsigned_t value) override { return number(static_cast<double>(value)); }
  bool number_float(number_float_t value, const string_t& text) override { return number(value, exactDate(text)); }
  bool string(string_t& value) override {
    if (ignoredDepth_ > 0 || isUnknown()) return true;
    if (place_ != Place::app) return false;
    if (key_ == Key::id) return text(id_, value);
    return key_ == Key::name && text(name_, value);
  }
  bool binary(binary_t&) override { return false; }

  bool key(string_t& value) override {
    if (ignoredDepth_ == 0) key_ = keyNamed(value);
    return true;
  }
  bool start_object(std::size_t) override;
  bool end_object() override;
  bool start_array(std::size_t) override {
    if (ignoredDepth_ > 0 || isUnknown()) return ++ignoredDepth_ > 0;
    if (place_ != Place::root || key_ != Key::spans) return false;
    place_ = Place::spans;
    archive_.spans.clear();
    return true;
  }
  bool end_array() override {
    if (ignoredDepth_ > 0) return leaveIgnored();
    place_ = Place::root;
    return sawSpans_ = true;
  }
  bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception&) override { return false; }

 private:
  enum class Place { start, root, spans, span, app, end };
  enum class Key { unknown, version, startedAt, enabled, spans, start, end, app, id, name };

  struct Instant {
    double seconds = 0;  // as it was read; finer than the date
    Date date;
  };

  Key keyNamed(std::string_view text) const;
  bool isUnknown() const {
    return key_ == Key::unknown && (place_ == Place::root || place_ == Place::span || place_ == Place::app);
  }
  bool leaveIgnored() {
    --ignoredDepth_;
    return true;
  }
  bool clearStartedAt() {
    archive_.startedAt.reset();
    return true;
  }
  static bool text(std::optional<std::string>& field, string_t& value) {
    field = std::move(value);
    return true;
  }
  bool number(double value, std::optional<Date> exact = std::nullopt);
  bool finishSpan();

  ActivityArchive& archive_;
  Place place_ = Place::start;
  Key key_ = Key::unknown;
  std::size_t ignoredDepth_ = 0;
  bool sawVersion_ = false;
  bool sawEnabled_ = false;
  bool sawSpans_ = false;
  std::optional<Instant> start_;
  std::optional<Instant> end_;
  std::optional<ActivityApp> app_;
  std::optional<std::string> id_;
  std::optional<std::string> name_;
};

ArchiveReader::Key ArchiveReader::keyNamed(std::string_view text) const {
  switch (place_) {
    case Place::root:
      if (text == "version") return Key::version;
      if (text == "startedAt") return Key::startedAt;
      if (text == "enabled") return Key::enabled;
      return text == "spans" ? Key::spans : Key::unknown;
    case Place::span:
      if (text == "start") return Key::start;
      if (text == "end") return Key::end;
      return text == "app" ? Key::app : Key::unknown;
    case Place::app:
      if (text == "id") return Key::id;
      return text == "name" ? Key::name : Key::unknown;
    default:
      return Key::unknown;
  }
}

bool ArchiveReader::number(double value, std::optional<Date> exact) {
  if (ignoredDepth_ > 0 || isUnknown()) return true;
  if (!std::isfinite(value)) return false;
  if (place_ == Place::root && key_ == Key::version) {
    if (value != std::trunc(value) || std::abs(value) > 1e9) return false;
    archive_.version = static_cast<int>(value);
    return sawVersion_ = true;
  }
  if (place_ == Place::root && key_ == Key::startedAt) {
    archive_.startedAt = exact.value_or(dateFromReference(value));
    return true;
  }
  if (place_ != Place::span || (key_ != Key::start && key_ != Key::end)) return false;
  (key_ == Key::start ? start_ : end_) = Instant{value, exact.value_or(dateFromReference(value))};
  return true;
}

bool ArchiveReader::start_object(std::size_t) {
  if (ignoredDepth_ > 0 || isUnknown()) return ++ignoredDepth_ > 0;
  if (place_ == Place::start) {
    place_ = Place::root;
  } else if (place_ == Place::spans) {
    place_ = Place::span;
    start_.reset();
    end_.reset();
    app_.reset();
  } else if (place_ == Place::span && key_ == Key::app) {
    place_ = Place::app;
    id_.reset();
    name_.reset();
  } else {
    return false;
  }
  key_ = Key::unknown;
  return true;
}

bool ArchiveReader::end_object() {
  if (ignoredDepth_ > 0) return leaveIgnored();
  if (place_ == Place::root) {
    place_ = Place::end;
    return true;
  }
  if (place_ == Place::span) return finishSpan();
  if (!id_ || !name_) return false;
  app_ = ActivityApp{std::move(*id_), std::move(*name_)};
  place_ = Place::span;
  return true;
}

bool ArchiveReader::finishSpan() {
  place_ = Place::spans;
  if (!start_ || !end_ || !app_ || archive_.spans.size() >= ActivityArchive::maximumSpans) return false;
  const bool isBelowResolution = start_->date == end_->date && start_->seconds < end_->seconds;
  if (!isBelowResolution) archive_.spans.push_back({start_->date, end_->date, std::move(*app_)});
  return true;
}

// Renders an application once, however many spans it has.
class AppTexts {
 public:
  const std::string& of(const ActivityApp& app) {
    if (last_ != nullptr && *last_ == app) return *lastText_;
    auto& entry = texts_[app.id];
    if (entry.app == nullptr || entry.app->name != app.name) {
      entry = {&app, fmt::format(R"(,"app":{{"id":{},"name":{}}}}})", quoted(app.id), quoted(app.name))};
    }
    last_ = &app;
    lastText_ = &entry.text;
    return entry.text;
  }

 private:
  struct Entry {
    const ActivityApp* app = nullptr;
    std::string text;
  };
  std::unordered_map<std::string_view, Entry> texts_;
  const ActivityApp* last_ = nullptr;
  const std::string* lastText_ = nullptr;
};

}  // namespace

tl::expected<void, ActivityStorageError> ActivityArchive::validate() const {
  if (version != currentVersion || (!startedAt && !spans.empty()))
    return tl::unexpected(ActivityStorageError::invalidData);
  for (const ActivitySpan& span : spans) {
    if (span.start >= span.end) return tl::unexpected(ActivityStorageError::invalidData);
  }
  return {};
}

tl::expected<ActivityArchive, ActivityStorageError> ActivityArchive::decode(std::string_view json) {
  if (json.size() > maximumBytes) return tl::unexpected(ActivityStorageError::invalidData);
  ActivityArchive archive;
  ArchiveReader reader(archive);
  const bool parsed = nlohmann::json::sax_parse(json.begin(), json.end(), &reader);
  if (!parsed || !reader.isComplete()) return tl::unexpected(ActivityStorageError::invalidData);
  return archive;
}

tl::expected<std::string, ActivityStorageError> ActivityArchiveView::encode() const {
  if (spans.size() > ActivityArchive::maximumSpans) return tl::unexpected(ActivityStorageError::invalidData);
  constexpr std::size_t usualSpanBytes = 128;
  std::string out;
  out.reserve(usualSpanBytes * (spans.size() + 1));
  fmt::format_to(std::back_inserter(out), R"({{"version":{})", ActivityArchive::currentVersion);
  if (startedAt) {
    out += R"(,"startedAt":)";
    appendReferenceSeconds(out, *startedAt);
  }
  out += enabled ? R"(,"enabled":true,"spans":[)" : R"(,"enabled":false,"spans":[)";
  AppTexts appTexts;
  for (const ActivitySpan& span : spans) {
    out += R"({"start":)";
    appendReferenceSeconds(out, span.start);
    out += R"(,"end":)";
    appendReferenceSeconds(out, span.end);
    out += appTexts.of(span.app);
    out += ',';
    if (out.size() > ActivityArchive::maximumBytes) return tl::unexpected(ActivityStorageError::invalidData);
  }
  if (!spans.empty()) out.pop_back();
  out += "]}";
  return out;
}

}  // namespace quillmeter
