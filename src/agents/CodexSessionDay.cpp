#include "agents/CodexSessionDay.h"

#include <array>
#include <charconv>
#include <system_error>

namespace quillmeter {

namespace {

std::optional<int> decimal(std::string_view text) {
  if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
  int value = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, value);
  if (stop != end || error != std::errc{}) return std::nullopt;
  return value;
}

// The part of `path` behind its last slash, which is cut off with it.
std::string_view takeLastName(std::string_view& path) {
  const std::size_t slash = path.rfind('/');
  const std::string_view name = slash == std::string_view::npos ? path : path.substr(slash + 1);
  path = slash == std::string_view::npos ? std::string_view() : path.substr(0, slash);
  return name;
}

}  // namespace

std::optional<CodexSessionDay::Span> CodexSessionDay::namedDay(std::string_view path) {
  takeLastName(path);
  std::array<int, 3> parts{};  // day, month, year
  for (int& part : parts) {
    const std::optional<int> value = decimal(takeLastName(path));
    if (!value) return std::nullopt;
    part = *value;
  }
  const auto [day, month, year] = parts;
  const auto [entry, isNew] = days_.try_emplace({year, month, day});
  if (isNew) {
    if (const std::optional<Date> start = calendar_.dateFrom(year, month, day)) {
      const std::optional<Date> next = calendar_.adding(1, CalendarUnit::day, *start);
      entry->second = Span{*start, next ? calendar_.startOfDay(*next) : Date::distantFuture()};
    }
  }
  return entry->second;
}

CodexSessionDay::Day CodexSessionDay::sessionDay(const LogFile& file) {
  if (const std::optional<Span> named = namedDay(file.path)) {
    return {named->start, file.modifiedAt >= named->start && file.modifiedAt < named->end};
  }
  return {calendar_.startOfDay(file.modifiedAt), true};
}

}  // namespace quillmeter
