#include "base/L10n.h"

#include <cctype>
#include <cstddef>
#include <memory>
#include <mutex>
#include <utility>

namespace quillmeter::L10n {

namespace {

struct Installed {
  std::mutex mutex;
  std::shared_ptr<const Lookup> lookup;
};

Installed& installed() {
  static Installed instance;
  return instance;
}

std::shared_ptr<const Lookup> currentLookup() {
  Installed& state = installed();
  const std::lock_guard lock(state.mutex);
  return state.lookup;
}

struct Placeholder {
  std::size_t length = 0;    // bytes from the percent sign on; 0: no placeholder
  std::size_t position = 0;  // from 1; 0: the next argument in order
};

bool isArgumentLetter(char letter) {
  return letter == '@' || letter == 'd';
}

Placeholder placeholderAt(std::string_view text) {
  if (text.size() >= 2 && isArgumentLetter(text[1])) return {2, 0};
  std::size_t end = 1;
  std::size_t position = 0;
  while (end < text.size() && end < 3 && std::isdigit(static_cast<unsigned char>(text[end])) != 0) {
    position = position * 10 + static_cast<std::size_t>(text[end++] - '0');
  }
  const bool positional = position > 0 && end + 1 < text.size() && text[end] == '$' && isArgumentLetter(text[end + 1]);
  return positional ? Placeholder{end + 2, position} : Placeholder{};
}

}  // namespace

void install(Lookup lookup) {
  auto shared = lookup ? std::make_shared<const Lookup>(std::move(lookup)) : nullptr;
  Installed& state = installed();
  const std::lock_guard lock(state.mutex);
  state.lookup.swap(shared);
}

std::string string(std::string_view id) {
  // Called outside the lock: a lookup may take its time, and install() may be called meanwhile.
  if (const auto lookup = currentLookup()) {
    if (auto text = (*lookup)(id); !text.empty()) return text;
  }
  return std::string(id);
}

std::string format(std::string_view text, std::initializer_list<std::string_view> arguments) {
  std::string result;
  result.reserve(text.size() + 32);
  std::size_t next = 0;
  while (!text.empty()) {
    const std::size_t percent = text.find('%');
    result += text.substr(0, percent);
    if (percent == std::string_view::npos) break;
    text.remove_prefix(percent);
    if (text.starts_with("%%")) {
      result += '%';
      text.remove_prefix(2);
      continue;
    }
    const Placeholder placeholder = placeholderAt(text);
    const std::size_t index = placeholder.position > 0 ? placeholder.position - 1 : next;
    const std::size_t length = placeholder.length > 0 ? placeholder.length : 1;
    if (placeholder.length > 0 && index < arguments.size()) {
      result += arguments.begin()[index];
      if (placeholder.position == 0) ++next;
    } else {
      result += text.substr(0, length);
    }
    text.remove_prefix(length);
  }
  return result;
}

}  // namespace quillmeter::L10n
