#include "ui/tray/NotifierMenu.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include <QDBusArgument>
#include <QDBusMessage>
#include <QTimer>

#include "ui/theme/QtText.h"

namespace quillmeter {

namespace {

constexpr const char* menuInterface = "com.canonical.dbusmenu";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr int root = 0;

QVariantMap propertiesOf(const TrayMenuEntry& entry) {
  if (entry.isSeparator()) return {{"type", "separator"}};
  // An underscore would mark the letter after it.
  QVariantMap properties{{"label", qtText(entry.text).replace('_', "__")}};
  if (!entry.isEnabled()) properties["enabled"] = false;
  return properties;
}

}  // namespace

NotifierMenu::NotifierMenu(QDBusConnection connection, TrayContent& content)
    : connection_(std::move(connection)), content_(content) {
  connection_.registerVirtualObject(path, this);
}

NotifierMenu::~NotifierMenu() {
  connection_.unregisterObject(path);
}

bool NotifierMenu::update() {
  std::vector<TrayMenuEntry> entries = content_.menu();
  if (entries == entries_) return false;
  entries_ = std::move(entries);
  ++revision_;
  return true;
}

void NotifierMenu::refresh() {
  // A panel that has not asked yet need not be told.
  if (revision_ == 0 || !update()) return;
  QDBusMessage signal = QDBusMessage::createSignal(path, menuInterface, "LayoutUpdated");
  signal << revision_ << root;
  connection_.send(signal);
}

QVariantMap NotifierMenu::propertiesOf(int id) const {
  if (id == root) return {{"children-display", "submenu"}};
  const auto found = std::ranges::find(entries_, id, &TrayMenuEntry::id);
  return found == entries_.end() ? QVariantMap() : quillmeter::propertiesOf(*found);
}

NotifierMenuItem NotifierMenu::layout(int parent, bool withChildren) const {
  NotifierMenuItem item{parent, propertiesOf(parent), {}};
  if (parent != root || !withChildren) return item;
  for (const TrayMenuEntry& entry : entries_) {
    const NotifierMenuItem child{entry.id, quillmeter::propertiesOf(entry), {}};
    item.children.append(QDBusVariant(QVariant::fromValue(child)));
  }
  return item;
}

// Carried out after the answer went out: the command may take a while, or end the program.
void NotifierMenu::happened(int id, const QString& event) {
  if (event != "clicked") return;
  const auto found = std::ranges::find(entries_, id, &TrayMenuEntry::id);
  if (found == entries_.end() || !found->isEnabled()) return;
  QTimer::singleShot(0, this, [this, command = found->command] { content_.chosen(command); });
}

QVariantMap NotifierMenu::interfaceProperties() const {
  return {{"Version", 3U}, {"Status", "normal"}, {"TextDirection", "ltr"}, {"IconThemePath", QStringList()}};
}

// Absent for a call that the interface does not have.
std::optional<QVariantList> NotifierMenu::answer(const QDBusMessage& message) {
  const QVariantList in = message.arguments();
  const QString call = message.member() + '(' + message.signature() + ')';
  if (call == "GetLayout(iias)") {
    update();
    return QVariantList{revision_, QVariant::fromValue(layout(in[0].toInt(), in[1].toInt() != 0))};
  }
  if (call == "GetGroupProperties(aias)") {
    if (revision_ == 0) update();
    QList<NotifierMenuProperties> all;
    QList<int> ids = qdbus_cast<QList<int>>(in[0]);
    if (ids.isEmpty()) std::ranges::transform(entries_, std::back_inserter(ids), &TrayMenuEntry::id);
    for (const int id : std::as_const(ids)) all.append({id, propertiesOf(id)});
    return QVariantList{QVariant::fromValue(all)};
  }
  if (call == "GetProperty(is)") {
    return QVariantList{
        QVariant::fromValue(QDBusVariant(propertiesOf(in[0].toInt()).value(in[1].toString(), QString())))};
  }
  if (call == "Event(isvu)") {
    happened(in[0].toInt(), in[1].toString());
    return QVariantList();
  }
  if (call == "EventGroup(a(isvu))") {
    for (const auto& event : qdbus_cast<QList<NotifierMenuEvent>>(in[0])) happened(event.id, event.event);
    return QVariantList{QVariant::fromValue(QList<int>())};
  }
  if (call == "AboutToShow(i)") return QVariantList{update()};
  if (call == "AboutToShowGroup(ai)") {
    const QList<int> changed = update() ? QList<int>{root} : QList<int>();
    return QVariantList{QVariant::fromValue(changed), QVariant::fromValue(QList<int>())};
  }
  return std::nullopt;
}

bool NotifierMenu::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  QVariantList out;
  if (message.interface() == propertiesInterface) {
    const QVariantMap properties = interfaceProperties();
    if (message.member() == "GetAll") {
      out = {properties};
    } else if (message.member() == "Get" && message.signature() == "ss") {
      const auto found = properties.find(message.arguments().at(1).toString());
      if (found == properties.end()) return false;
      out = {QVariant::fromValue(QDBusVariant(*found))};
    } else {
      return false;
    }
  } else if (message.interface().isEmpty() || message.interface() == menuInterface) {
    const auto answered = answer(message);
    if (!answered) return false;
    out = *answered;
  } else {
    return false;
  }
  if (message.isReplyRequired()) connection.send(message.createReply(out));
  return true;
}

QString NotifierMenu::introspect(const QString&) const {
  return QStringLiteral(R"xml(
  <interface name="com.canonical.dbusmenu">
  <property name="Version" type="u" access="read"/><property name="Status" type="s" access="read"/>
  <property name="TextDirection" type="s" access="read"/><property name="IconThemePath" type="as" access="read"/>
  <method name="GetLayout"><arg name="parentId" type="i" direction="in"/>
  <arg name="recursionDepth" type="i" direction="in"/><arg name="propertyNames" type="as" direction="in"/>
  <arg name="revision" type="u" direction="out"/><arg name="layout" type="(ia{sv}av)" direction="out"/></method>
  <method name="GetGroupProperties"><arg name="ids" type="ai" direction="in"/>
  <arg name="propertyNames" type="as" direction="in"/><arg name="properties" type="a(ia{sv})" direction="out"/></method>
  <method name="GetProperty"><arg name="id" type="i" direction="in"/><arg name="name" type="s" direction="in"/>
  <arg name="value" type="v" direction="out"/></method>
  <method name="Event"><arg name="id" type="i" direction="in"/><arg name="eventId" type="s" direction="in"/>
  <arg name="data" type="v" direction="in"/><arg name="timestamp" type="u" direction="in"/></method>
  <method name="EventGroup"><arg name="events" type="a(isvu)" direction="in"/>
  <arg name="idErrors" type="ai" direction="out"/></method>
  <method name="AboutToShow"><arg name="id" type="i" direction="in"/><arg name="needUpdate" type="b" direction="out"/></method>
  <method name="AboutToShowGroup"><arg name="ids" type="ai" direction="in"/>
  <arg name="updatesNeeded" type="ai" direction="out"/><arg name="idErrors" type="ai" direction="out"/></method>
  <signal name="LayoutUpdated"><arg name="revision" type="u"/><arg name="parent" type="i"/></signal>
  </interface>
)xml");
}

}  // namespace quillmeter
