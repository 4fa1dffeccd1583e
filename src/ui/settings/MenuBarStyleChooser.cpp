#include "ui/settings/MenuBarStyleChooser.h"

#include <QtWidgets/QGridLayout>

#include "ui/settings/MenuBarStylePictures.h"
#include "ui/settings/MenuBarStyleTile.h"
#include "ui/theme/QtText.h"

namespace quillmeter {

MenuBarStyleChooser::MenuBarStyleChooser(const std::array<MenuBarStyle, count>& order, const QString& name) {
  constexpr int gap = 14;
  auto* grid = new QGridLayout(this);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->setSpacing(gap);
  for (std::size_t index = 0; index < count; ++index) {
    const MenuBarStyle style = order[index];
    auto* tile = new MenuBarStyleTile(style, this);
    tile->setObjectName(name + QLatin1Char('.') + qtText(rawValue(style)));
    connect(tile, &QAbstractButton::clicked, this, [this, style] {
      if (handler_) handler_(style);
    });
    grid->addWidget(tile, static_cast<int>(index) / 2, static_cast<int>(index) % 2);
    tiles_[index] = tile;
  }
  retranslate();
}

void MenuBarStyleChooser::setChosen(MenuBarStyle style) {
  for (MenuBarStyleTile* tile : tiles_) {
    const bool isChosen = tile->style() == style;
    // Tab goes to the one that is chosen.
    tile->setFocusPolicy(isChosen ? Qt::StrongFocus : Qt::ClickFocus);
    if (!isChosen) continue;
    tile->setChecked(true);
    setFocusProxy(tile);
  }
}

void MenuBarStyleChooser::showPictures(const UiServices& services, const CompactIconOptions& options) {
  for (MenuBarStyleTile* tile : tiles_)
    tile->show(MenuBarStylePictures::picture(tile->style(), services, options, devicePixelRatioF()));
}

void MenuBarStyleChooser::retranslate() {
  for (MenuBarStyleTile* tile : tiles_) {
    tile->setText(qtText(MenuBarStylePictures::title(tile->style())));
    tile->setAccessibleName(tile->text());
    tile->setAccessibleDescription(qtText(MenuBarStylePictures::text(tile->style())));
  }
}

}  // namespace quillmeter
