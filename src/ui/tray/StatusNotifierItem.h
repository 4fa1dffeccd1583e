#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>

#include "ui/tray/NotifierMenu.h"
#include "ui/tray/TrayContent.h"

namespace quillmeter {

// The item on the message bus (org.kde.StatusNotifierItem). The toolkit has one of its own, which gives panels no image
// above 32 pixels and is never used in a process that started before its panel. Images are painted when the panel
// fetches them, in the sizes that panels have; it is told of a change only when it has fetched what was before. Owned
// by the tray item; main thread; the content outlives it.
class StatusNotifierItem final : public QDBusVirtualObject, public TrayBackend {
 public:
  static constexpr const char* path = "/StatusNotifierItem";
  // Panels read everything again for a changed tooltip, so its figures follow slowly.
  static constexpr double tooltipSeconds = 10;

  StatusNotifierItem(QDBusConnection connection, TrayContent& content);
  ~StatusNotifierItem() override;

  // Tells the watcher that there is an item; again to each new watcher.
  void registerItem();

  void iconChanged() override;
  void tooltipChanged(double now) override;
  void textsChanged() override;

  QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
  QVariant valueOf(const QString& name);
  QVariantMap allProperties();
  QVariant iconPixmaps();
  QVariant tooltip();
  bool handleCall(const QDBusMessage& message);
  void notify(const char* signal);

  QDBusConnection connection_;
  TrayContent& content_;
  NotifierMenu menu_;
  QList<NotifierPixmap> pixmaps_;  // as fetched; empty: to be painted
  std::string tooltipText_;        // as fetched
  bool tooltipFetched_ = false;
  double tooltipToldAt_ = -tooltipSeconds;
};

}  // namespace quillmeter
