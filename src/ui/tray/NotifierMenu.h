#pragma once

#include <optional>
#include <vector>

#include <QDBusConnection>
#include <QDBusVirtualObject>

#include "ui/tray/NotifierTypes.h"
#include "ui/tray/TrayContent.h"

namespace quillmeter {

// The item's menu on the message bus (com.canonical.dbusmenu), which the panel draws itself. The lines are looked up
// when the panel is about to show them. Owned by the item; main thread; the content outlives it.
class NotifierMenu final : public QDBusVirtualObject {
 public:
  static constexpr const char* path = "/MenuBar";

  NotifierMenu(QDBusConnection connection, TrayContent& content);
  ~NotifierMenu() override;

  // Tells the panel when the lines differ from those it knows.
  void refresh();

  QString introspect(const QString& path) const override;
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
  std::optional<QVariantList> answer(const QDBusMessage& message);
  QVariantMap interfaceProperties() const;
  bool update();
  NotifierMenuItem layout(int parent, bool withChildren) const;
  QVariantMap propertiesOf(int id) const;
  void happened(int id, const QString& event);

  QDBusConnection connection_;
  TrayContent& content_;
  std::vector<TrayMenuEntry> entries_;
  uint revision_ = 0;
};

}  // namespace quillmeter
