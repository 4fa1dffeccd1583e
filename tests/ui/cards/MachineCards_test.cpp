#include <map>

#include <QAbstractButton>
#include <QAbstractSlider>
#include <QComboBox>

#include "CardFixture.h"
#include "preferences/SettingsKeys.h"
#include "ui/cards/HardwareSlider.h"
#include "ui/cards/SweepOverlay.h"

namespace quillmeter {
namespace {

constexpr double slowTickSeconds = 30;
constexpr double untilHistoriesAreFull = 2 * SampleHistory::capacity;

// Counts what is painted.
class PaintCounter : public QObject {
 public:
  explicit PaintCounter(QWidget& root) {
    for (QWidget* widget : root.findChildren<QWidget*>()) widget->installEventFilter(this);
    root.installEventFilter(this);
  }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++paints[watched->objectName().toStdString()];
    return false;
  }
  std::map<std::string, int> paints;
};

class MachineCards : public CardTest {};

TEST_F(MachineCards, paintNothingWhenNothingChanged) {
  services_.start();
  services_.addUsage(AgentLogProvider::codex, "a", {.totalTokens = 1'500, .inputTokens = 900}, services_.today(9, 0));
  services_.description.limits = DescribedLimits{.observedAt = services_.today(9, 0),
                                                 .primaryUsed = 0.42,
                                                 .primaryResetAt = services_.today(14, 0),
                                                 .weeklyUsed = 0.81,
                                                 .weeklyResetAt = services_.today(14, 1)};
  services_.scanAgents();
  showQuickStatus();
  services_.advance(untilHistoriesAreFull);
  for (const DashboardCardSize size : {DashboardCardSize::small, DashboardCardSize::large}) {
    for (const MonitorComponentKind kind : allMonitorComponentKinds) {
      MonitorCard& card = show(kind, size);
      QApplication::processEvents();
      PaintCounter counter(card);
      services_.advance(20);
      services_.store.refreshAgents();
      services_.settle();
      QApplication::processEvents();
      EXPECT_TRUE(counter.paints.empty()) << rawValue(kind) << " painted " << counter.paints.begin()->first;
    }
  }
  PaintCounter counter(show(MonitorComponentKind::cpu));
  services_.description.processorLoad = {0.7};
  services_.advance(2);
  QApplication::processEvents();
  EXPECT_GT(counter.paints["card.cpu.usage"], 0) << "what changed is painted";
}

TEST_F(MachineCards, hearChangesOnlyWhileTheyAreVisible) {
  services_.start();
  MonitorCard& card = show(MonitorComponentKind::cpu);
  EXPECT_EQ(text("card.cpu.usage"), "23%");
  card.hide();
  services_.description.processorLoad = {0.97};
  services_.advance(2);
  EXPECT_EQ(text("card.cpu.usage"), "23%");
  card.show();
  EXPECT_EQ(text("card.cpu.usage"), "97%");
  EXPECT_EQ(part<QWidget>("card.cpu.usage").accessibleName(), QStringLiteral("CPU 97%"));
}

TEST_F(MachineCards, speakTheLanguageOfTheMoment) {
  services_.start();
  services_.useLanguage("en");
  services_.advance(2);
  std::map<MonitorComponentKind, std::string> english;
  for (const MonitorComponentKind kind : allMonitorComponentKinds) english[kind] = shownTexts(show(kind));
  services_.useLanguage("zh-Hans");
  services_.advance(2);
  for (const MonitorComponentKind kind : allMonitorComponentKinds) {
    MonitorCard& card = show(kind);
    services_.useLanguage("en");
    services_.advance(2);
    EXPECT_EQ(shownTexts(card), english[kind]) << rawValue(kind);
    services_.useLanguage("zh-Hans");
    services_.advance(2);
  }
}

TEST_F(MachineCards, sayWhatIsNotThere) {
  services_.start();
  services_.description.battery.reset();
  services_.advance(slowTickSeconds);
  show(MonitorComponentKind::battery);
  EXPECT_EQ(text("card.battery.usage"), "—");
  EXPECT_EQ(text("card.battery.note"), "台式 Mac");
  EXPECT_FALSE(part<QWidget>("card.battery.cycles").isVisible());
  EXPECT_FALSE(part<QWidget>("card.battery.power").isVisible());
  show(MonitorComponentKind::fan);
  EXPECT_EQ(text("card.fan.state"), "正常");
  EXPECT_FALSE(part<QWidget>("card.fan.speed").isVisible());
}

TEST_F(MachineCards, theBatteryMarksItsPowerSource) {
  services_.description.battery->isOnMains = true;
  services_.description.battery->isCharging = true;
  services_.description.battery->minutesToFull = 95;
  services_.start();
  show(MonitorComponentKind::battery);
  EXPECT_TRUE(part<QWidget>("card.battery.power").isVisible());
  EXPECT_EQ(text("card.battery.note"), "充电中");
  EXPECT_EQ(text("card.battery.time"), "充满还需 01:35");
}

TEST_F(MachineCards, theCleanupSweepsWhileItRunsAndThenTellsWhatCameOfIt) {
  services_.start();
  MonitorCard& card = show(MonitorComponentKind::memory);
  const auto* sweep = dynamic_cast<SweepOverlay*>(card.findChild<QWidget*>(QStringLiteral("card.memory.sweep")));
  ASSERT_NE(sweep, nullptr);
  EXPECT_FALSE(sweep->isVisible());
  part<QAbstractButton>("card.memory.clean").click();
  EXPECT_TRUE(sweep->isMoving());
  EXPECT_EQ(text("card.memory.message"), "正在清理内存…");
  part<QAbstractButton>("card.memory.clean").click();
  card.hide();
  EXPECT_FALSE(sweep->isMoving()) << "nobody sees it";
  card.show();
  EXPECT_TRUE(sweep->isMoving());
  services_.settle();
  services_.advance(3);
  EXPECT_EQ(text("card.memory.message"), "已释放 256 MB 本应用内存");
  EXPECT_EQ(services_.machine.allocatorRelief.calls, 1);
  EXPECT_TRUE(part<QAbstractButton>("card.memory.clean").isEnabled());
  card.hide();
  card.show();
  EXPECT_FALSE(sweep->isVisible()) << "although it was fading when the card was hidden";
}

TEST_F(MachineCards, wifiWaitsForItsFirstReading) {
  show(MonitorComponentKind::wifi);
  EXPECT_EQ(text("card.wifi.title"), "正在采样");
  services_.start();
  EXPECT_EQ(text("card.wifi.title"), "Wi-Fi 已连接");
  EXPECT_EQ(text("card.wifi.rssi"), "-52 dBm");
  services_.wifi.facts = {.powered = false, .rssi = std::nullopt, .transmitRate = std::nullopt};
  services_.paths.change({});
  services_.advance(2);
  EXPECT_EQ(text("card.wifi.title"), "Wi-Fi 已关闭");
  EXPECT_FALSE(part<QWidget>("card.wifi.signal").isVisible());
  EXPECT_FALSE(part<QWidget>("card.wifi.rssi").isVisible());
}

class AudioCards : public CardTest {
 protected:
  AudioCards() { services_.start(); }
  void read() { services_.advance(2); }
};

TEST_F(AudioCards, changeTheDevice) {
  show(MonitorComponentKind::audio);
  auto& volume = part<HardwareSlider>("card.audio.volume");
  volume.setValue(31);
  services_.settle();
  EXPECT_DOUBLE_EQ(services_.audio.facts.outputs.front().mainVolume.value_or(0), 0.31);
  EXPECT_EQ(text("card.audio.volumeText"), "31%");
  part<QAbstractButton>("card.audio.mute").click();
  services_.settle();
  EXPECT_EQ(services_.audio.facts.outputs.front().muted, true);
  EXPECT_EQ(part<QWidget>("card.audio.mute").accessibleName(), QStringLiteral("取消静音"));
  auto& devices = part<QComboBox>("card.audio.devices");
  ASSERT_EQ(devices.count(), 2);
  const auto choose = [&](int index) {
    devices.setCurrentIndex(index);
    emit devices.activated(index);
  };
  choose(1);
  EXPECT_EQ(devices.currentIndex(), 1) << "while the change is under way";
  services_.settle();
  EXPECT_EQ(services_.audio.facts.defaultOutput, services_.audio.facts.outputs[1].id);
  EXPECT_EQ(devices.currentIndex(), 1);
  services_.audio.refuses = true;
  choose(0);
  services_.settle();
  EXPECT_EQ(devices.currentIndex(), 1) << "refused";
}

TEST_F(AudioCards, tellWhatTheDeviceDoesNotTake) {
  show(MonitorComponentKind::audio);
  services_.audio.refuses = true;
  part<HardwareSlider>("card.audio.volume").setValue(99);
  services_.settle();
  EXPECT_EQ(text("card.audio.error"), "设备未接受更改，请在系统声音设置中重试。");
  EXPECT_NE(part<HardwareSlider>("card.audio.volume").value(), 99);

  AudioOutputFacts& device = services_.audio.facts.outputs.front();
  device.canSetMainVolume = false;
  device.canSetChannelVolumes = false;
  read();
  EXPECT_EQ(text("card.audio.message"), "此设备的音量由硬件控制。");
  EXPECT_FALSE(part<QWidget>("card.audio.volume").isEnabled());

  services_.audio.facts = {};
  read();
  EXPECT_EQ(text("card.audio.message"), "没有声音输出设备");
  EXPECT_FALSE(part<QWidget>("card.audio.volume").isVisible());
}

}  // namespace
}  // namespace quillmeter
