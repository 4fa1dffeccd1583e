#include "platform/qt/QtCatalogue.h"

#include <QTranslator>
#include <memory>
#include <string>

#include "base/L10n.h"
#include "platform/qt/EnglishCatalogue.h"
#include "platform/qt/UserLocale.h"

namespace quillmeter {

namespace {

L10n::Lookup englishLookup() {
  const auto translator = std::make_shared<QTranslator>();
  // Reads straight from the program's own constant data: nothing is copied or unpacked.
  if (!translator->load(englishCatalogue, static_cast<int>(englishCatalogueBytes))) return {};
  return [translator](std::string_view id) {
    return translator->translate(nullptr, std::string(id).c_str()).toStdString();
  };
}

}  // namespace

bool installCatalogue(std::string_view language) {
  if (language == simplifiedChineseLanguage) {
    L10n::install({});
    return true;
  }
  if (language != englishLanguage) return false;
  auto lookup = englishLookup();
  if (!lookup) return false;
  L10n::install(std::move(lookup));
  return true;
}

std::string_view systemLanguage() {
  return userLocale("LC_MESSAGES").language() == QLocale::Chinese ? simplifiedChineseLanguage : englishLanguage;
}

}  // namespace quillmeter
