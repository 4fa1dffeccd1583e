#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>

#include <QDBusConnection>
#include <QObject>
#include <QString>

#include "platform/ForegroundApplication.h"
#include "platform/linux/desktop/ApplicationEntryIndex.h"
#include "platform/linux/desktop/BusCalls.h"

namespace quillmeter {

// What the script inside KWin calls. Exported on our own bus name, so that no other program can take it.
class KWinScriptReceiver final : public QObject {
  Q_OBJECT
  Q_CLASSINFO("D-Bus Interface", "com.kesto.Quillmeter.ActiveWindow")

 public:
  using Handler = std::function<void(const QString& resourceClass, const QString& desktopFile)>;
  explicit KWinScriptReceiver(Handler handler) : handler_(std::move(handler)) {}

 public slots:
  void Activated(const QString& resourceClass, const QString& desktopFile) { handler_(resourceClass, desktopFile); }

 private:
  Handler handler_;
};

// The active window of KWin, which tells ordinary clients nothing: a script of two lines, loaded into it over D-Bus,
// calls back at each activation with class and desktop file. Unloaded at the end. Main thread.
class KWinForegroundApplication final : public ForegroundApplicationSource {
 public:
  // The script is written into `scriptFolder` for KWin to read.
  KWinForegroundApplication(const QDBusConnection& sessionBus, ApplicationEntryIndex& entries,
                            std::filesystem::path scriptFolder);
  KWinForegroundApplication(const KWinForegroundApplication&) = delete;
  KWinForegroundApplication& operator=(const KWinForegroundApplication&) = delete;
  ~KWinForegroundApplication() override;

  bool isSupported() const override { return running_; }
  std::optional<RunningApplication> frontmost() override;
  void setActivationHandler(std::function<void(const RunningApplication&)> handler) override {
    handler_ = std::move(handler);
  }

 private:
  void serviceChanged(bool present);
  void loadScript();
  bool writeScript() const;
  void activated(const QString& resourceClass, const QString& desktopFile);
  std::filesystem::path scriptPath() const;
  QString scriptName() const;

  QDBusConnection bus_;
  ApplicationEntryIndex& entries_;
  std::filesystem::path scriptFolder_;
  KWinScriptReceiver receiver_;
  bool running_ = false;
  std::optional<RunningApplication> application_;
  std::optional<RunningApplication> announced_;
  std::function<void(const RunningApplication&)> handler_;
  std::unique_ptr<QObject> context_;
};

}  // namespace quillmeter
