#pragma once

#include <functional>

#include <QWidget>

namespace quillmeter {

class FigureLabel;
class Paragraph;
class ScreenTimeMonitor;
class ToggleSwitch;

// The page's title, what the recorder does right now, and its switch.
class ScreenTimeHeader : public QWidget {
 public:
  explicit ScreenTimeHeader(QWidget* parent = nullptr);
  void showState(const ScreenTimeMonitor& monitor);
  void setSwitched(std::function<void(bool on)> switched) { switched_ = std::move(switched); }
  void retranslate();

 private:
  Paragraph* title_ = nullptr;
  FigureLabel* state_ = nullptr;
  FigureLabel* switchTitle_ = nullptr;
  ToggleSwitch* switch_ = nullptr;
  std::function<void(bool)> switched_;
};

}  // namespace quillmeter
