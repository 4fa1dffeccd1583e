#include "platform/linux/desktop/PortalAppearance.h"

#include <utility>

#include <QDBusArgument>
#include <QDBusVariant>
#include <QMap>
#include <QStringList>

namespace quillmeter {
namespace {

const QString service = QStringLiteral("org.freedesktop.portal.Desktop");
const QString appearanceGroup = QStringLiteral("org.freedesktop.appearance");
const QString interfaceGroup = QStringLiteral("org.gnome.desktop.interface");
const QString accessibilityGroup = QStringLiteral("org.gnome.desktop.a11y.interface");

BusAddress portalSettings() {
  return {service, QStringLiteral("/org/freedesktop/portal/desktop"),
          QStringLiteral("org.freedesktop.portal.Settings")};
}

// Some portals wrap a value twice.
QVariant unwrapped(QVariant value) {
  constexpr int most = 4;
  for (int depth = 0; depth < most && value.metaType() == QMetaType::fromType<QDBusVariant>(); ++depth)
    value = value.value<QDBusVariant>().variant();
  return value;
}

// A value of another type than it should be counts as not set.
template <typename T>
T valueOr(const QVariant& value, T otherwise) {
  return value.metaType() == QMetaType::fromType<T>() ? value.value<T>() : otherwise;
}

// Desktops offer no more; anything else, what is no number too, is a slip.
double boundedTextScale(double scale) {
  constexpr double least = 0.5;
  constexpr double most = 3;
  return scale >= least && scale <= most ? scale : 1;
}

// What GNOME came with, older and newer: where other desktops run, nobody chose it.
bool isGnomeDefault(const QString& fontName) {
  return fontName == QLatin1String("Cantarell 11") || fontName == QLatin1String("Adwaita Sans 11");
}

}  // namespace

void PortalAppearance::Settings::take(const QString& group, const QString& key, QVariant value) {
  value = unwrapped(std::move(value));
  if (group == appearanceGroup) {
    if (key == QLatin1String("color-scheme")) colorScheme = valueOr(value, 0U);
    if (key == QLatin1String("contrast")) contrast = valueOr(value, 0U);
    if (key == QLatin1String("reduced-motion")) reducedMotion = valueOr(value, 0U);
  } else if (group == interfaceGroup) {
    if (key == QLatin1String("enable-animations")) enableAnimations = valueOr(value, true);
    if (key == QLatin1String("font-name")) fontName = valueOr(value, QString());
    if (key == QLatin1String("text-scaling-factor")) textScale = boundedTextScale(valueOr(value, 1.0));
  } else if (group == accessibilityGroup) {
    if (key == QLatin1String("high-contrast")) highContrast = valueOr(value, false);
  }
}

AppearancePreferences PortalAppearance::Settings::preferences(const std::optional<GtkDesktop>& desktop) const {
  AppearancePreferences preferences{.dark = colorScheme == 1,
                                    .highContrast = contrast == 1 || highContrast,
                                    .reducedMotion = reducedMotion == 1 || !enableAnimations};
  if (!desktop) return preferences;
  if (desktop->hasGnomeSettings || !isGnomeDefault(fontName)) preferences.fontName = fontName.toStdString();
  preferences.textScale = textScale;
  return preferences;
}

PortalAppearance::PortalAppearance(const QDBusConnection& sessionBus, std::optional<GtkDesktop> desktop)
    : bus_(sessionBus), desktop_(desktop), context_(std::make_unique<QObject>()) {
  if (!bus_.isConnected()) return;
  watchBusService(bus_, service, context_.get(), [this](bool present) { serviceChanged(present); });
}

PortalAppearance::~PortalAppearance() = default;

void PortalAppearance::serviceChanged(bool present) {
  signal_.reset();
  if (present) return readAll();
  if (std::exchange(isStartAsked_, true)) return;
  // Desktops start it when the first program asks. Where it is not installed, the answer is an error that says nothing.
  const BusAddress daemon{QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
                          QStringLiteral("org.freedesktop.DBus")};
  constexpr uint noFlags = 0;
  callBus(bus_, daemon, QStringLiteral("StartServiceByName"), {service, noFlags}, context_.get(),
          [](const QDBusMessage&) {});
}

void PortalAppearance::readAll() {
  const BusAddress portal = portalSettings();
  // Listened to first, so that no change falls between.
  signal_ = std::make_unique<BusSignal>(bus_, service, portal.path, portal.interface, QStringLiteral("SettingChanged"),
                                        [this](const QDBusMessage& message) {
                                          if (message.signature() != QLatin1String("ssv")) return;
                                          const QVariantList values = message.arguments();
                                          Settings changed = settings_;
                                          changed.take(values[0].toString(), values[1].toString(), values[2]);
                                          adopt(changed);
                                        });
  const QStringList groups{appearanceGroup, interfaceGroup, accessibilityGroup};
  callBus(bus_, portal, QStringLiteral("ReadAll"), {groups}, context_.get(), [this](const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ReplyMessage || reply.signature() != QLatin1String("a{sa{sv}}")) return;
    Settings read;
    const auto answered = qdbus_cast<QMap<QString, QVariantMap>>(reply.arguments().constFirst());
    for (auto group = answered.begin(); group != answered.end(); ++group) {
      for (auto row = group->begin(); row != group->end(); ++row) read.take(group.key(), row.key(), row.value());
    }
    adopt(read);
  });
}

void PortalAppearance::adopt(const Settings& settings) {
  settings_ = settings;
  const AppearancePreferences preferences = settings_.preferences(desktop_);
  if (preferences == current_) return;
  current_ = preferences;
  if (handler_) handler_();
}

}  // namespace quillmeter
