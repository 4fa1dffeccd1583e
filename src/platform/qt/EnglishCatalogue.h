#pragma once

#include <cstddef>

namespace quillmeter {

// The compiled English catalogue; the build makes the definition from data/i18n/quillmeter_en.ts.
extern const unsigned char englishCatalogue[];
extern const std::size_t englishCatalogueBytes;

}  // namespace quillmeter
