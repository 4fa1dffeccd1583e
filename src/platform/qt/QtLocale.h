#pragma once

#include <string_view>

#include "base/LocaleConventions.h"

namespace quillmeter {

// The user's conventions: separators of numbers from LC_NUMERIC, the first weekday from LC_TIME, each overruled by
// LC_ALL and else LANG, out of the common locale data, so that they hold although the C library's locale was never
// generated. The "C" locale counts digits ungrouped and weeks from Monday. Lists are written in the interface language
// ("zh-Hans", "en").
LocaleConventions localeConventions(std::string_view interfaceLanguage);

}  // namespace quillmeter
