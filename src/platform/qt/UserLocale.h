#pragma once

#include <QLocale>

namespace quillmeter {

// The locale that the environment names for a category ("LC_TIME"): LC_ALL, the category, LANG, the first that is set
// and not empty. QLocale::c() when none is, or the data lack it.
QLocale userLocale(const char* category);

}  // namespace quillmeter
