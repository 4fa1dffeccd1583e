#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "quickstatus/model/QuickStatusSnapshot.h"
#include "ui/cards/MonitorCard.h"

namespace quillmeter {

class Chooser;
class FigureLabel;
class HardwareSlider;
class Paragraph;
class SymbolButton;

// The sound output: which device it is, its volume, balance and mute, and what it does not let a program change.
class AudioCard : public MonitorCard {
 public:
  AudioCard(DashboardCardSize size, ComponentPlacement placement, const UiServices& services, QWidget* parent);

 protected:
  void refresh() override;
  std::vector<Subscription> subscribe(std::function<void()> changed) override;
  void retranslate() override;
  void hideEvent(QHideEvent* event) override;

 private:
  void buildDevice();
  void buildVolume();
  void buildBalance();
  void arrange();
  void chooseOutput(const std::string& id);
  void showDevices(const QuickStatusSnapshot& quick);
  void showVolume(const QuickStatusSnapshot& quick);
  void showBalance(const QuickStatusSnapshot& quick);
  void showMessages(const QuickStatusSnapshot& quick);
  void showSliderTexts();
  void tintSliders();

  Chooser* devices_ = nullptr;
  SymbolButton* mute_ = nullptr;
  HardwareSlider* volume_ = nullptr;
  FigureLabel* volumeText_ = nullptr;
  QWidget* balanceLine_ = nullptr;
  FigureLabel* balanceLabel_ = nullptr;
  HardwareSlider* balance_ = nullptr;
  FigureLabel* balanceText_ = nullptr;
  Paragraph* message_ = nullptr;
  Paragraph* error_ = nullptr;
  std::optional<std::uint32_t> balancedDevice_;
  std::optional<QuickAudioDevice> leaving_;  // the output in whose place the user has just chosen another one
};

}  // namespace quillmeter
