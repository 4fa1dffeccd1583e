#include "ui/theme/InterfaceFont.h"

#include <algorithm>

#include <QApplication>
#include <QEvent>
#include <QFontDatabase>
#include <QWidget>

#include "ui/theme/FontDescription.h"

namespace quillmeter {
namespace {

QStringList chineseFamilies() {
  return {QStringLiteral("Noto Sans CJK SC"), QStringLiteral("Source Han Sans SC"),
          QStringLiteral("WenQuanYi Micro Hei")};
}

bool isGeneric(const QString& family) {
  static constexpr const char* generic[] = {"", "sans", "sans serif", "sans-serif", "system-ui"};
  return std::any_of(std::begin(generic), std::end(generic), [&family](const char* name) {
    return family.compare(QLatin1String(name), Qt::CaseInsensitive) == 0;
  });
}

// The toolkit's font or, as far as it is installed, the one described.
QFont chosenFont(QFont font, const std::string& fontName) {
  const auto described = parseFontDescription(fontName);
  if (!described) return font;
  QStringList families;
  for (const QString& family : described->families) {
    if (isGeneric(family) || QFontDatabase::hasFamily(family)) families.append(family);
  }
  if (families.isEmpty()) return font;
  font.setFamilies(families);
  if (described->points > 0) font.setPointSizeF(described->points);
  return font;
}

// Followed by those that know Simplified Chinese: without them the toolkit may take hanzi from a font made for another
// language. Where no desktop chose a font, a harmonious pair goes first.
QFont withChinese(QFont font) {
  if (!isGeneric(font.family())) {
    font.setFamilies(font.families() + chineseFamilies());
    return font;
  }
  constexpr double usualPoints = 10;
  font.setPointSizeF(std::max(usualPoints, font.pointSizeF()));
  font.setFamilies(chineseFamilies() + QStringList{QStringLiteral("Noto Sans"), QStringLiteral("sans-serif")});
  return font;
}

// Through the X server's resources desktops enlarge all that a program shows, and have counted the scale of text in.
bool isTextScaledByTheToolkit() {
  return QGuiApplication::platformName() == QLatin1String("xcb");
}

QFont scaled(QFont font, double scale) {
  if (isTextScaledByTheToolkit()) return font;
  if (font.pointSizeF() > 0) {
    font.setPointSizeF(font.pointSizeF() * scale);
  } else {
    font.setPixelSize(qRound(font.pixelSize() * scale));
  }
  return font;
}

}  // namespace

InterfaceFont::InterfaceFont() : toolkit_(QApplication::font()) {
  set();
  qApp->installEventFilter(this);
}

InterfaceFont::~InterfaceFont() {
  qApp->removeEventFilter(this);
  QApplication::setFont(toolkit_);
}

void InterfaceFont::follow(const std::string& fontName, double textScale) {
  if (fontName == fontName_ && textScale == textScale_) return;
  fontName_ = fontName;
  textScale_ = textScale;
  set();
}

void InterfaceFont::set() {
  const QFont font = scaled(withChinese(chosenFont(toolkit_, fontName_)), textScale_);
  if (font == QApplication::font()) return;
  isSetting_ = true;
  QApplication::setFont(font);
  isSetting_ = false;
  tell();
}

bool InterfaceFont::eventFilter(QObject* watched, QEvent* event) {
  // The toolkit follows a change of its own, when the user changed the font of a desktop that it knows.
  if (event->type() == QEvent::ApplicationFontChange && watched == qApp && !isSetting_) {
    toolkit_ = QApplication::font();
    set();
  }
  return QObject::eventFilter(watched, event);
}

void InterfaceFont::tell() {
  for (QWidget* widget : QApplication::allWidgets()) {
    QEvent change(QEvent::ApplicationFontChange);
    if (!widget->isWindow()) QCoreApplication::sendEvent(widget, &change);
  }
}

}  // namespace quillmeter
