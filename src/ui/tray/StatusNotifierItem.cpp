#include "ui/tray/StatusNotifierItem.h"

#include <algorithm>
#include <array>
#include <utility>

#include <QCursor>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QGuiApplication>
#include <QImage>
#include <QRect>
#include <QScreen>
#include <QTimer>

#include "ui/theme/QtText.h"
#include "ui/tray/ContextMenu.h"

namespace quillmeter {

namespace {

constexpr const char* itemInterface = "org.kde.StatusNotifierItem";
constexpr const char* propertiesInterface = "org.freedesktop.DBus.Properties";
constexpr const char* watcherService = "org.kde.StatusNotifierWatcher";
constexpr const char* watcherPath = "/StatusNotifierWatcher";

// The squares of the usual panels, 16, 22, 24 and 32, at a scale of 1, 1.25 and 2, 57 kB together. A panel takes the
// one that fits best; what scale it stands at is not known here.
constexpr std::array<int, 11> panelPixels = {16, 20, 22, 24, 28, 30, 32, 40, 44, 48, 64};

constexpr std::array emptyTexts = {"IconName", "IconThemePath", "OverlayIconName", "AttentionIconName",
                                   "AttentionMovieName"};
constexpr std::array otherProperties = {"IconPixmap",
                                        "ToolTip",
                                        "Menu",
                                        "Category",
                                        "Id",
                                        "Title",
                                        "Status",
                                        "WindowId",
                                        "ItemIsMenu",
                                        "OverlayIconPixmap",
                                        "AttentionIconPixmap"};

// Where the panel says that the click was. On a scaled screen panels disagree about the unit; then the pointer decides.
QRect clickedAt(const QVariantList& arguments) {
  const QPoint point(arguments.value(0).toInt(), arguments.value(1).toInt());
  const QScreen* screen = QGuiApplication::screenAt(point);
  if (point.isNull() || screen == nullptr || screen->devicePixelRatio() != 1) return {};
  return {point, QSize(1, 1)};
}

}  // namespace

StatusNotifierItem::StatusNotifierItem(QDBusConnection connection, TrayContent& content)
    : connection_(std::move(connection)), content_(content), menu_(connection_, content) {
  registerNotifierTypes();
  connection_.registerVirtualObject(path, this);
}

StatusNotifierItem::~StatusNotifierItem() {
  connection_.unregisterObject(path);
}

void StatusNotifierItem::registerItem() {
  QDBusMessage call =
      QDBusMessage::createMethodCall(watcherService, watcherPath, watcherService, "RegisterStatusNotifierItem");
  call.setAutoStartService(false);
  call << connection_.baseService();
  connection_.send(call);
}

void StatusNotifierItem::notify(const char* signal) {
  connection_.send(QDBusMessage::createSignal(path, itemInterface, signal));
}

void StatusNotifierItem::iconChanged() {
  if (pixmaps_.isEmpty()) return;  // told before, not fetched yet
  pixmaps_.clear();
  notify("NewIcon");
}

void StatusNotifierItem::tooltipChanged(double now) {
  if (!tooltipFetched_) return;
  const double passed = now - tooltipToldAt_;
  if (passed >= 0 && passed < tooltipSeconds) return;
  tooltipToldAt_ = now;
  if (content_.tooltipText() == tooltipText_) return;
  tooltipFetched_ = false;
  notify("NewToolTip");
}

void StatusNotifierItem::textsChanged() {
  if (tooltipFetched_) {
    tooltipFetched_ = false;
    notify("NewToolTip");
  }
  menu_.refresh();
}

QVariant StatusNotifierItem::iconPixmaps() {
  if (pixmaps_.isEmpty()) {
    for (const int pixels : panelPixels) pixmaps_.append(notifierPixmap(content_.iconImage(pixels)));
  }
  return QVariant::fromValue(pixmaps_);
}

QVariant StatusNotifierItem::tooltip() {
  tooltipText_ = content_.tooltipText();
  tooltipFetched_ = true;
  // Some panels show the title alone, so the first line of figures is the title.
  const QString text = qtText(tooltipText_);
  return QVariant::fromValue(NotifierTooltip{{}, {}, text.section('\n', 0, 0), text.section('\n', 1)});
}

// Invalid for a name that is no property. Only what is asked for is made.
QVariant StatusNotifierItem::valueOf(const QString& name) {
  if (name == "IconPixmap") return iconPixmaps();
  if (name == "ToolTip") return tooltip();
  if (name == "Menu") return QVariant::fromValue(QDBusObjectPath(NotifierMenu::path));
  if (name == "Category") return QStringLiteral("SystemServices");
  if (name == "Id") return QStringLiteral("quillmeter");
  if (name == "Title") return QStringLiteral("Quillmeter");
  if (name == "Status") return QStringLiteral("Active");
  if (name == "WindowId") return 0;
  if (name == "ItemIsMenu") return false;
  if (name == "OverlayIconPixmap" || name == "AttentionIconPixmap") {
    return QVariant::fromValue(QList<NotifierPixmap>());
  }
  const auto isEmptyText = [&name](const char* text) { return name == QLatin1String(text); };
  return std::ranges::any_of(emptyTexts, isEmptyText) ? QVariant(QString()) : QVariant();
}

QVariantMap StatusNotifierItem::allProperties() {
  QVariantMap all;
  for (const char* name : otherProperties) all[name] = valueOf(name);
  for (const char* name : emptyTexts) all[name] = valueOf(name);
  return all;
}

bool StatusNotifierItem::handleCall(const QDBusMessage& message) {
  const QString member = message.member();
  const QVariantList arguments = message.arguments();
  // After the answer went out: a panel may wait for it while the popover opens.
  const auto later = [this](std::function<void()> work) { QTimer::singleShot(0, this, std::move(work)); };
  if (member == "Activate") {
    later([this, icon = clickedAt(arguments)] { content_.activated(icon); });
  } else if (member == "SecondaryActivate") {
    later([this] { content_.secondaryActivated(); });
  } else if (member == "ContextMenu") {
    later([this, icon = clickedAt(arguments)] {
      showContextMenu(content_, icon.isNull() ? QCursor::pos() : icon.topLeft());
    });
  } else if (member == "ProvideXdgActivationToken") {
    // The toolkit takes the token for its next request to activate a window from the environment.
    qputenv("XDG_ACTIVATION_TOKEN", arguments.value(0).toString().toUtf8());
  } else if (member != "Scroll") {
    return false;
  }
  return true;
}

bool StatusNotifierItem::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
  QVariantList out;
  if (message.interface() == propertiesInterface) {
    if (message.member() == "GetAll") {
      out = {allProperties()};
    } else if (message.member() == "Get" && message.signature() == "ss") {
      const QVariant value = valueOf(message.arguments().at(1).toString());
      if (!value.isValid()) return false;
      out = {QVariant::fromValue(QDBusVariant(value))};
    } else {
      return false;
    }
  } else {
    const bool isForItem = message.interface().isEmpty() || message.interface() == itemInterface;
    if (!isForItem || !handleCall(message)) return false;
  }
  if (message.isReplyRequired()) connection.send(message.createReply(out));
  return true;
}

QString StatusNotifierItem::introspect(const QString&) const {
  return QStringLiteral(R"xml(
  <interface name="org.kde.StatusNotifierItem">
  <property name="Category" type="s" access="read"/><property name="Id" type="s" access="read"/>
  <property name="Title" type="s" access="read"/><property name="Status" type="s" access="read"/>
  <property name="WindowId" type="i" access="read"/><property name="IconName" type="s" access="read"/>
  <property name="IconThemePath" type="s" access="read"/><property name="IconPixmap" type="a(iiay)" access="read"/>
  <property name="OverlayIconName" type="s" access="read"/>
  <property name="OverlayIconPixmap" type="a(iiay)" access="read"/>
  <property name="AttentionIconName" type="s" access="read"/>
  <property name="AttentionIconPixmap" type="a(iiay)" access="read"/>
  <property name="AttentionMovieName" type="s" access="read"/>
  <property name="ToolTip" type="(sa(iiay)ss)" access="read"/>
  <property name="ItemIsMenu" type="b" access="read"/><property name="Menu" type="o" access="read"/>
  <method name="Activate"><arg name="x" type="i" direction="in"/><arg name="y" type="i" direction="in"/></method>
  <method name="SecondaryActivate"><arg name="x" type="i" direction="in"/><arg name="y" type="i" direction="in"/></method>
  <method name="ContextMenu"><arg name="x" type="i" direction="in"/><arg name="y" type="i" direction="in"/></method>
  <method name="Scroll"><arg name="delta" type="i" direction="in"/><arg name="orientation" type="s" direction="in"/></method>
  <method name="ProvideXdgActivationToken"><arg name="token" type="s" direction="in"/></method>
  <signal name="NewIcon"/><signal name="NewToolTip"/><signal name="NewTitle"/>
  <signal name="NewStatus"><arg name="status" type="s"/></signal>
  </interface>
)xml");
}

}  // namespace quillmeter
