#include "ui/settings/MenuBarPage.h"

#include <QtWidgets/QSlider>
#include <QtWidgets/QVBoxLayout>

#include "base/L10n.h"
#include "core/MonitorStore.h"
#include "core/model/NumberText.h"
#include "menubar/MenuBarLabelEntries.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "quickstatus/QuickStatusMonitor.h"
#include "ui/settings/MenuBarStyleChooser.h"
#include "ui/settings/MenuBarStylePictures.h"
#include "ui/settings/SliderField.h"
#include "ui/settings/SymbolChooser.h"
#include "ui/theme/QtText.h"
#include "ui/widgets/Chooser.h"
#include "ui/widgets/Paragraph.h"
#include "ui/widgets/SettingsGroup.h"
#include "ui/widgets/ToggleSwitch.h"

namespace quillmeter {

namespace {

constexpr std::array<MenuBarStyle, MenuBarStyleChooser::count> styles = {
    MenuBarStyle::metrics, MenuBarStyle::systemTrio, MenuBarStyle::resourceTrio, MenuBarStyle::symbol};

}  // namespace

MenuBarPage::MenuBarPage(const UiServices& services, QWidget* parent) : SettingsPage(services, parent) {
  setObjectName("settings.menuBar");
  buildStyles();
  buildMetric();
  buildOptions();
  buildSymbols();
  column()->addStretch(1);
  MenuBarPage::retranslate();
}

void MenuBarPage::buildStyles() {
  styles_ = new MenuBarStyleChooser(styles, "settings.menuBar.style");
  styles_->setHandler(
      [this](MenuBarStyle style) { store(SettingsKeys::menuBarStyle.key, std::string(rawValue(style))); });
  column()->addWidget(styles_);
  styleText_ = new Paragraph(TextRole::caption, TextTone::secondary);
  styleText_->setObjectName("settings.menuBar.styleText");
  column()->addWidget(styleText_);
}

void MenuBarPage::buildMetric() {
  metricGroup_ = new SettingsGroup(this);
  metric_ = new Chooser;
  metric_->setObjectName("settings.menuBar.metric");
  metric_->setHandler([this](const std::string& id) { store(SettingsKeys::menuBarMetric.key, id); });
  metricRow_ = metricGroup_->addRow(metric_);
  column()->addWidget(metricGroup_);
}

void MenuBarPage::buildOptions() {
  constexpr double sizeStep = 1;
  constexpr double strokeStep = 0.1;
  const auto sizes = CompactIconOptions::sizeRange;
  const auto strokes = CompactIconOptions::lineWidthRange;
  options_ = new SettingsGroup(this);
  size_ = new SliderField({sizes.minimum, sizes.maximum, sizeStep});
  size_->slider()->setObjectName("settings.menuBar.size");
  sizeRow_ = options_->addRow(size_);
  stroke_ = new SliderField({strokes.minimum, strokes.maximum, strokeStep});
  stroke_->slider()->setObjectName("settings.menuBar.stroke");
  strokeRow_ = options_->addRow(stroke_);
  const auto addSwitch = [this](ToggleSwitch*& control, const char* name, const BooleanSetting& setting) {
    control = new ToggleSwitch;
    control->setObjectName(name);
    bind(control, setting);
    return options_->addRow(control);
  };
  colorRow_ = addSwitch(color_, "settings.menuBar.color", SettingsKeys::compactIconColor);
  arcRow_ = addSwitch(arc_, "settings.menuBar.volumeArc", SettingsKeys::compactIconArc);
  audioRow_ = addSwitch(audio_, "settings.menuBar.audioSymbol", SettingsKeys::compactAudioSymbol);
  connectSliders();
  column()->addWidget(options_);
}

void MenuBarPage::connectSliders() {
  const auto preview = [this](double) { showPictures(); };
  size_->setHandlers(preview, [this](double value) { store(SettingsKeys::compactIconSize.key, value); });
  stroke_->setHandlers(preview, [this](double value) { store(SettingsKeys::compactIconStroke.key, value); });
}

void MenuBarPage::buildSymbols() {
  symbolGroup_ = new SettingsGroup(this);
  constexpr int room = 12;
  symbols_ = new SymbolChooser;
  symbols_->setMargin(room);
  symbols_->setObjectName("settings.menuBar.symbol");
  symbols_->setHandler(
      [this](std::string_view symbol) { store(SettingsKeys::compactIconSymbol.key, std::string(symbol)); });
  symbolGroup_->addWidget(symbols_);
  column()->addWidget(symbolGroup_);
}

void MenuBarPage::retranslate() {
  setPageTitle(qtText(QM_TR("菜单栏")));
  styles_->retranslate();
  metricGroup_->setTitle(qtText(QM_TR("数值")));
  metricRow_->setTitle(qtText(QM_TR("显示的数值")));
  std::vector<Chooser::Choice> metrics;
  for (const MonitorComponentKind kind : allMonitorComponentKinds) {
    metrics.push_back({std::string(rawValue(kind)), qtText(menuBarTitle(kind))});
  }
  metric_->setChoices(std::move(metrics));
  options_->setTitle(qtText(QM_TR("外观")));
  const QString widest = points(CompactIconOptions::sizeRange.maximum, 1);
  sizeRow_->setTitle(qtText(QM_TR("大小")));
  size_->slider()->setAccessibleName(qtText(QM_TR("大小")));
  size_->setText([this](double value) { return points(value, 0); }, widest);
  strokeRow_->setTitle(qtText(QM_TR("线宽")));
  stroke_->slider()->setAccessibleName(qtText(QM_TR("线宽")));
  stroke_->setText([this](double value) { return points(value, 1); }, widest);
  colorRow_->setTitle(qtText(QM_TR("彩色")));
  arcRow_->setTitle(qtText(QM_TR("音量弧线")));
  audioRow_->setTitle(qtText(QM_TR("声音设备")));
  audioRow_->setSubtitle(qtText(QM_TR("蓝牙音频连接时显示设备图标")));
  symbolGroup_->setTitle(qtText(QM_TR("图标")));
  symbols_->retranslate();
}

QString MenuBarPage::points(double value, int fractionDigits) const {
  const auto number = localizedDecimalText(value, fractionDigits, services().conventions());
  return qtText(L10n::format(QM_TR("%@ 点"), {number.value_or("")}));
}

std::vector<Subscription> MenuBarPage::subscribe(std::function<void()>) {
  const auto changed = [this] { showPictures(); };
  std::vector<Subscription> subscriptions;
  subscriptions.push_back(services().store.onSystemChange(changed));
  subscriptions.push_back(services().store.onAgentsChange(changed));
  subscriptions.push_back(services().quickStatus.onChange(changed));
  return subscriptions;
}

void MenuBarPage::refresh() {
  const MenuBarStyle style = chosenMenuBarStyle(services().preferences);
  styles_->setChosen(style);
  std::string text = MenuBarStylePictures::text(style);
  if (MenuBarStylePictures::hasRings(style)) {
    text.append("\n").append(QM_TR("充电时显示闪电，接通电源时显示插头；网络断开时优先显示网络状态。"));
  }
  styleText_->setText(qtText(text));
  metric_->setChosen(std::string(rawValue(chosenMenuBarMetric(services().preferences))));
  showOptions(style);
  showPictures();
}

void MenuBarPage::showOptions(MenuBarStyle style) {
  const CompactIconOptions options = CompactIconOptions::stored(services().preferences);
  size_->setValue(options.size);
  stroke_->setValue(options.lineWidth);
  symbols_->setChosen(options.symbol);
  const bool isSystem = style == MenuBarStyle::systemTrio;
  metricGroup_->setVisible(style == MenuBarStyle::metrics);
  strokeRow_->setVisible(MenuBarStylePictures::hasRings(style));
  colorRow_->setVisible(MenuBarStylePictures::hasRings(style));
  arcRow_->setVisible(isSystem);
  audioRow_->setVisible(isSystem);
  symbolGroup_->setVisible(style == MenuBarStyle::symbol || style == MenuBarStyle::resourceTrio);
  symbolGroup_->setFootnote(style == MenuBarStyle::resourceTrio
                                ? qtText(QM_TR("图标够大时显示在圆环中间，让位于电源与网络状态。"))
                                : QString());
}

CompactIconOptions MenuBarPage::shownOptions() const {
  CompactIconOptions options = CompactIconOptions::stored(services().preferences);
  if (size_->isDragging()) options.size = size_->value();
  if (stroke_->isDragging()) options.lineWidth = stroke_->value();
  return options;
}

void MenuBarPage::showPictures() {
  styles_->showPictures(services(), shownOptions());
}

}  // namespace quillmeter
