#pragma once

#include <QByteArray>
#include <QDBusArgument>
#include <QDBusVariant>
#include <QList>
#include <QString>
#include <QVariantMap>

class QImage;

namespace quillmeter {

// The structures of the two message-bus interfaces that a panel's items speak.

// (iiay): an image, four bytes a pixel: alpha, red, green, blue.
struct NotifierPixmap {
  int width = 0;
  int height = 0;
  QByteArray bytes;
};

// (sa(iiay)ss)
struct NotifierTooltip {
  QString iconName;
  QList<NotifierPixmap> icon;
  QString title;
  QString text;
};

// (ia{sv}av): one line of a menu with those below it.
struct NotifierMenuItem {
  int id = 0;
  QVariantMap properties;
  QList<QDBusVariant> children;
};

// (ia{sv})
struct NotifierMenuProperties {
  int id = 0;
  QVariantMap properties;
};

// (isvu): something happened to a line.
struct NotifierMenuEvent {
  int id = 0;
  QString event;
  QDBusVariant data;
  uint timestamp = 0;
};

NotifierPixmap notifierPixmap(const QImage& image);
// Once before any of them is sent or received.
void registerNotifierTypes();

QDBusArgument& operator<<(QDBusArgument& out, const NotifierPixmap& value);
const QDBusArgument& operator>>(const QDBusArgument& in, NotifierPixmap& value);
QDBusArgument& operator<<(QDBusArgument& out, const NotifierTooltip& value);
const QDBusArgument& operator>>(const QDBusArgument& in, NotifierTooltip& value);
QDBusArgument& operator<<(QDBusArgument& out, const NotifierMenuItem& value);
const QDBusArgument& operator>>(const QDBusArgument& in, NotifierMenuItem& value);
QDBusArgument& operator<<(QDBusArgument& out, const NotifierMenuProperties& value);
const QDBusArgument& operator>>(const QDBusArgument& in, NotifierMenuProperties& value);
QDBusArgument& operator<<(QDBusArgument& out, const NotifierMenuEvent& value);
const QDBusArgument& operator>>(const QDBusArgument& in, NotifierMenuEvent& value);

}  // namespace quillmeter
