#include "ui/tray/NotifierTypes.h"

#include <QDBusMetaType>
#include <QImage>
#include <QtEndian>

namespace quillmeter {

namespace {

template <typename... Fields>
QDBusArgument& writeStructure(QDBusArgument& out, const Fields&... fields) {
  out.beginStructure();
  (out << ... << fields);
  out.endStructure();
  return out;
}

template <typename... Fields>
const QDBusArgument& readStructure(const QDBusArgument& in, Fields&... fields) {
  in.beginStructure();
  (in >> ... >> fields);
  in.endStructure();
  return in;
}

}  // namespace

NotifierPixmap notifierPixmap(const QImage& image) {
  const QImage plain = image.convertToFormat(QImage::Format_ARGB32);
  NotifierPixmap pixmap{plain.width(), plain.height(), {}};
  pixmap.bytes.resize(qsizetype{4} * plain.width() * plain.height());
  char* to = pixmap.bytes.data();
  for (int y = 0; y < plain.height(); ++y) {  // the lines of such an image have no padding
    qToBigEndian<quint32>(plain.constScanLine(y), plain.width(), to);
    to += qsizetype{4} * plain.width();
  }
  return pixmap;
}

void registerNotifierTypes() {
  qDBusRegisterMetaType<NotifierPixmap>();
  qDBusRegisterMetaType<QList<NotifierPixmap>>();
  qDBusRegisterMetaType<NotifierTooltip>();
  qDBusRegisterMetaType<NotifierMenuItem>();
  qDBusRegisterMetaType<NotifierMenuProperties>();
  qDBusRegisterMetaType<QList<NotifierMenuProperties>>();
  qDBusRegisterMetaType<NotifierMenuEvent>();
  qDBusRegisterMetaType<QList<NotifierMenuEvent>>();
}

QDBusArgument& operator<<(QDBusArgument& out, const NotifierPixmap& value) {
  return writeStructure(out, value.width, value.height, value.bytes);
}
const QDBusArgument& operator>>(const QDBusArgument& in, NotifierPixmap& value) {
  return readStructure(in, value.width, value.height, value.bytes);
}

QDBusArgument& operator<<(QDBusArgument& out, const NotifierTooltip& value) {
  return writeStructure(out, value.iconName, value.icon, value.title, value.text);
}
const QDBusArgument& operator>>(const QDBusArgument& in, NotifierTooltip& value) {
  return readStructure(in, value.iconName, value.icon, value.title, value.text);
}

QDBusArgument& operator<<(QDBusArgument& out, const NotifierMenuItem& value) {
  return writeStructure(out, value.id, value.properties, value.children);
}
const QDBusArgument& operator>>(const QDBusArgument& in, NotifierMenuItem& value) {
  return readStructure(in, value.id, value.properties, value.children);
}

QDBusArgument& operator<<(QDBusArgument& out, const NotifierMenuProperties& value) {
  return writeStructure(out, value.id, value.properties);
}
const QDBusArgument& operator>>(const QDBusArgument& in, NotifierMenuProperties& value) {
  return readStructure(in, value.id, value.properties);
}

QDBusArgument& operator<<(QDBusArgument& out, const NotifierMenuEvent& value) {
  return writeStructure(out, value.id, value.event, value.data, value.timestamp);
}
const QDBusArgument& operator>>(const QDBusArgument& in, NotifierMenuEvent& value) {
  return readStructure(in, value.id, value.event, value.data, value.timestamp);
}

}  // namespace quillmeter
