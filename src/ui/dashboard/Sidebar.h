#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include <QRadioButton>

#include "base/Observers.h"
#include "ui/UiServices.h"

class QHBoxLayout;
class QVBoxLayout;

namespace quillmeter {

class FigureLabel;
class ProgramGlyph;
class SymbolButton;

// One page in the sidebar: its symbol and, where there is room, its title. The radio buttons of a group: arrow keys
// move the choice.
class SidebarEntry final : public QRadioButton {
 public:
  SidebarEntry(std::string page, std::string symbol, QWidget* parent);
  const std::string& page() const { return page_; }
  void setTitle(const QString& title, const QString& keys);
  void setNarrow(bool isNarrow);
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  bool hitButton(const QPoint& position) const override { return rect().contains(position); }
  void paintEvent(QPaintEvent* event) override;

 private:
  const std::string page_;
  const std::string symbol_;
  bool isNarrow_ = false;
};

// The left edge of the dashboard: the program's name, its pages, the settings and how fresh the figures are. Shrinks to
// symbols in a narrow window. Hears the store while it is visible.
class Sidebar : public QWidget {
 public:
  struct Handlers {
    std::function<void(const std::string& page)> chosen;  // by the user
    std::function<void()> settings;
  };
  Sidebar(const UiServices& services, Handlers handlers, QWidget* parent);

  static constexpr int wideWidth = 200;
  static constexpr int narrowWidth = 64;
  static constexpr const char* pages[] = {"overview", "agents", "screenTime"};

  void setChosen(std::string_view page);
  void setNarrow(bool isNarrow);

 protected:
  void showEvent(QShowEvent* event) override;
  void hideEvent(QHideEvent* event) override;
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void addEntry(const char* page, const char* symbol, QVBoxLayout& column);
  void retranslate();
  void fitWidth();
  void showFreshness();

  const UiServices& services_;
  const Handlers handlers_;
  std::vector<SidebarEntry*> entries_;
  ProgramGlyph* icon_;
  QHBoxLayout* brand_;
  FigureLabel* name_;
  FigureLabel* sampled_;
  FigureLabel* scanned_;
  SymbolButton* settings_;
  std::vector<Subscription> subscriptions_;
  bool isNarrow_ = false;
};

}  // namespace quillmeter
