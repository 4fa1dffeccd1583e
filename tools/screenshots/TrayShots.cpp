#include <QImage>
#include <QPainter>

#include "demo/FakeServices.h"
#include "preferences/SettingsKeys.h"
#include "screenshots/Shot.h"
#include "ui/tray/TrayPicture.h"

namespace quillmeter {
namespace {

constexpr int iconPoints = 22;
constexpr int panelHeight = 40;
constexpr int iconSpacing = 28;

// The four styles side by side in a light and in a dark panel, each of them as wide as the picture.
class PanelView final : public QWidget {
 public:
  explicit PanelView(FakeServices& services) : services_(services) {
    constexpr int panels = 2;
    const auto styles = static_cast<int>(SettingsKeys::menuBarStyles.size());
    setFixedSize(styles * (iconPoints + iconSpacing) + iconSpacing, panels * panelHeight);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    paintPanel(painter, 0, QColor(0xF2, 0xF3, 0xF5), false);
    paintPanel(painter, panelHeight, QColor(0x24, 0x26, 0x2B), true);
  }

 private:
  void paintPanel(QPainter& painter, int top, const QColor& color, bool isDark) {
    painter.fillRect(0, top, width(), panelHeight, color);
    int left = iconSpacing;
    for (const std::string_view style : SettingsKeys::menuBarStyles) {
      services_.set(SettingsKeys::menuBarStyle.key, std::string(style));
      TrayPicture picture(services_.preferences);
      picture.update(services_.store.system(), services_.store.agents(), services_.quickStatus.snapshot(), isDark);
      QImage image = picture.paint(static_cast<int>(iconPoints * devicePixelRatioF()));
      image.setDevicePixelRatio(devicePixelRatioF());
      painter.drawImage(left, top + (panelHeight - iconPoints) / 2, image);
      left += iconPoints + iconSpacing;
    }
  }

  FakeServices& services_;
};

}  // namespace

std::vector<Shot> trayShots() {
  return {{"tray", {}, [](FakeServices& services) { return std::make_unique<PanelView>(services); }, {}}};
}

}  // namespace quillmeter
