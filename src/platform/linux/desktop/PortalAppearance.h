#pragma once

#include <functional>
#include <memory>
#include <optional>

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <QVariant>

#include "platform/DesktopAppearance.h"
#include "platform/linux/desktop/BusCalls.h"
#include "platform/linux/desktop/GtkDesktop.h"

namespace quillmeter {

// What the desktop portal on the session bus tells of the user's appearance settings. It is asked and, where it is
// installed but not yet running, started without waiting; until it has answered, nothing is preferred. While it is away
// for a moment, its last answer holds: a restart must not make windows flash. Main thread.
class PortalAppearance final : public DesktopAppearance {
 public:
  // The font is taken from the portal only on a desktop made with GTK.
  explicit PortalAppearance(const QDBusConnection& sessionBus,
                            std::optional<GtkDesktop> desktop = currentGtkDesktop());
  ~PortalAppearance() override;

  AppearancePreferences current() const override { return current_; }
  void setChangeHandler(std::function<void()> handler) override { handler_ = std::move(handler); }

 private:
  // The settings as the portal words them.
  struct Settings {
    uint colorScheme = 0;          // org.freedesktop.appearance: 1 prefers dark, 2 light
    uint contrast = 0;             // there: 1 prefers more
    uint reducedMotion = 0;        // there: 1 prefers less motion
    bool highContrast = false;     // org.gnome.desktop.a11y.interface
    bool enableAnimations = true;  // org.gnome.desktop.interface
    QString fontName;              // there
    double textScale = 1;          // there

    void take(const QString& group, const QString& key, QVariant value);
    AppearancePreferences preferences(const std::optional<GtkDesktop>& desktop) const;
  };

  void serviceChanged(bool present);
  void readAll();
  void adopt(const Settings& settings);

  QDBusConnection bus_;
  const std::optional<GtkDesktop> desktop_;
  Settings settings_;
  AppearancePreferences current_;
  std::function<void()> handler_;
  std::unique_ptr<BusSignal> signal_;
  bool isStartAsked_ = false;
  std::unique_ptr<QObject> context_;
};

}  // namespace quillmeter
