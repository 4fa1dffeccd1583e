#include "sweep/TextCatalogue.h"

#include <stdexcept>

#include <QFile>
#include <QXmlStreamReader>

namespace quillmeter::test {
namespace {

std::map<QString, QString> readCatalogue() {
  QFile file(QStringLiteral(QUILLMETER_SOURCES "/data/i18n/quillmeter_en.ts"));
  if (!file.open(QIODevice::ReadOnly)) throw std::runtime_error("the English catalogue cannot be read");
  std::map<QString, QString> texts;
  QXmlStreamReader xml(&file);
  QString id;
  while (!xml.atEnd()) {
    if (xml.readNext() != QXmlStreamReader::StartElement) continue;
    if (xml.name() == QLatin1String("message")) id = xml.attributes().value("id").toString();
    if (xml.name() == QLatin1String("translation")) texts[id] = xml.readElementText();
  }
  if (xml.hasError() || texts.empty()) throw std::runtime_error("the English catalogue is no catalogue");
  return texts;
}

}  // namespace

const std::map<QString, QString>& textCatalogue() {
  static const auto texts = readCatalogue();
  return texts;
}

bool holdsChinese(const QString& text) {
  return std::ranges::any_of(text, [](QChar letter) {
    return letter.script() == QChar::Script_Han || (letter.unicode() >= 0x3000 && letter.unicode() < 0x3040) ||
           (letter.unicode() >= 0xFF00 && letter.unicode() < 0xFF60);
  });
}

}  // namespace quillmeter::test
