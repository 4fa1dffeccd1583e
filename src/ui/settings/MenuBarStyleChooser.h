#pragma once

#include <array>
#include <functional>

#include <QWidget>

#include "menubar/model/CompactIconOptions.h"
#include "menubar/model/MenuBarStyle.h"
#include "ui/UiServices.h"

namespace quillmeter {

class MenuBarStyleTile;

// The styles of the item in the panel, as pictures with the figures of this moment; one is chosen. Arrow keys move the
// choice.
class MenuBarStyleChooser final : public QWidget {
 public:
  static constexpr std::size_t count = 4;

  // In the given order. A tile's object name is `name`, a dot and its style.
  MenuBarStyleChooser(const std::array<MenuBarStyle, count>& order, const QString& name);

  // Does not call the handler.
  void setChosen(MenuBarStyle style);
  // The user chose.
  void setHandler(std::function<void(MenuBarStyle)> handler) { handler_ = std::move(handler); }
  void showPictures(const UiServices& services, const CompactIconOptions& options);
  // Names in the present language.
  void retranslate();

 private:
  std::array<MenuBarStyleTile*, count> tiles_{};
  std::function<void(MenuBarStyle)> handler_;
};

}  // namespace quillmeter
