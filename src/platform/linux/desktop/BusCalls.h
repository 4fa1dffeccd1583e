#pragma once

#include <functional>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantList>

namespace quillmeter {

// Hands one D-Bus signal to a function for as long as it lives. Main thread.
class BusSignal final : public QObject {
  Q_OBJECT

 public:
  using Handler = std::function<void(const QDBusMessage& message)>;

  BusSignal(const QDBusConnection& bus, const QString& service, const QString& path, const QString& interface,
            const QString& name, Handler handler);
  ~BusSignal() override;

 private slots:
  void received(const QDBusMessage& message);

 private:
  QDBusConnection bus_;
  QString service_;
  QString path_;
  QString interface_;
  QString name_;
  Handler handler_;
};

struct BusAddress {
  QString service;
  QString path;
  QString interface;
};

// Calls a method without waiting and without starting its service; `answered` gets the reply or the error, unless
// `context` ends first.
void callBus(const QDBusConnection& bus, const BusAddress& address, const QString& method,
             const QVariantList& arguments, QObject* context, std::function<void(const QDBusMessage& reply)> answered);

// Calls `changed` with whether the service is there: once for the present, and at each change.
void watchBusService(const QDBusConnection& bus, const QString& service, QObject* context,
                     std::function<void(bool present)> changed);

}  // namespace quillmeter
