#include "platform/qt/UserLocale.h"

#include <QString>
#include <cstdlib>

namespace quillmeter {

namespace {

// "sr_RS.UTF-8@latin" is "sr_Latn_RS" in the common data; other modifiers (currencies) say nothing that is asked here.
QLocale localeNamed(const QString& posixName) {
  const QString base = posixName.section(u'@', 0, 0).section(u'.', 0, 0);
  const QString modifier = posixName.section(u'@', 1);
  if (base.isEmpty() || base == u"C" || base == u"POSIX") return QLocale::c();
  const QString script = modifier == u"latin"      ? QStringLiteral("Latn")
                         : modifier == u"cyrillic" ? QStringLiteral("Cyrl")
                                                   : QString();
  if (script.isEmpty()) return QLocale(base);
  const QString territory = base.section(u'_', 1);
  return QLocale(base.section(u'_', 0, 0) + u'_' + script + (territory.isEmpty() ? QString() : u'_' + territory));
}

}  // namespace

QLocale userLocale(const char* category) {
  for (const char* variable : {"LC_ALL", category, "LANG"}) {
    const char* name = std::getenv(variable);
    if (name != nullptr && *name != '\0') return localeNamed(QString::fromUtf8(name));
  }
  return QLocale::c();
}

}  // namespace quillmeter
