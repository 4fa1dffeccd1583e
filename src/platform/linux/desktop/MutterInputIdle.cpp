#include "platform/linux/desktop/MutterInputIdle.h"

namespace quillmeter {
namespace {

BusAddress monitor() {
  return {QStringLiteral("org.gnome.Mutter.IdleMonitor"), QStringLiteral("/org/gnome/Mutter/IdleMonitor/Core"),
          QStringLiteral("org.gnome.Mutter.IdleMonitor")};
}

std::optional<std::uint32_t> watchIn(const QDBusMessage& reply) {
  if (reply.type() != QDBusMessage::ReplyMessage) return std::nullopt;
  return reply.arguments().value(0).toUInt();
}

}  // namespace

MutterInputIdle::MutterInputIdle(const QDBusConnection& sessionBus, const MonotonicClock& clock)
    : bus_(sessionBus), stopwatch_(clock), context_(std::make_unique<QObject>()) {
  watchBusService(bus_, monitor().service, context_.get(), [this](bool present) { serviceChanged(present); });
}

void MutterInputIdle::serviceChanged(bool present) {
  idleWatch_.reset();
  activityWatch_.reset();
  signal_.reset();
  if (!present) return;
  stopwatch_.resumed();
  signal_ = std::make_unique<BusSignal>(
      bus_, monitor().service, monitor().path, monitor().interface, QStringLiteral("WatchFired"),
      [this](const QDBusMessage& message) { fired(message.arguments().value(0).toUInt()); });
  const auto milliseconds = static_cast<qulonglong>(IdleStopwatch::thresholdSeconds * 1'000);
  callBus(bus_, monitor(), QStringLiteral("AddIdleWatch"), {QVariant::fromValue(milliseconds)}, context_.get(),
          [this](const QDBusMessage& reply) { idleWatch_ = watchIn(reply); });
}

// This watch fires once; it is set anew each time the user goes away.
void MutterInputIdle::watchActivity() {
  callBus(bus_, monitor(), QStringLiteral("AddUserActiveWatch"), {}, context_.get(),
          [this](const QDBusMessage& reply) { activityWatch_ = watchIn(reply); });
}

void MutterInputIdle::fired(std::uint32_t watch) {
  if (watch == idleWatch_) {
    stopwatch_.idled();
    watchActivity();
  } else if (watch == activityWatch_) {
    activityWatch_.reset();
    stopwatch_.resumed();
  }
}

std::optional<double> MutterInputIdle::idleSeconds() {
  if (!idleWatch_) return std::nullopt;
  return stopwatch_.seconds();
}

}  // namespace quillmeter
