#include "ui/settings/SettingsWindow.h"

#include <algorithm>
#include <array>
#include <functional>
#include <string>

#include <QtGui/QKeyEvent>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QStackedWidget>

#include "base/L10n.h"
#include "preferences/PreferenceStore.h"
#include "preferences/SettingsKeys.h"
#include "ui/settings/AboutPage.h"
#include "ui/settings/AgentSettingsPage.h"
#include "ui/settings/ComponentsPage.h"
#include "ui/settings/GeneralPage.h"
#include "ui/settings/MenuBarPage.h"
#include "ui/settings/PageList.h"
#include "ui/settings/ScreenTimeSettingsPage.h"
#include "ui/theme/QtText.h"
#include "ui/theme/Typography.h"

namespace quillmeter {

namespace {

constexpr QSize leastSize(720, 460);

template <typename Page>
QWidget* make(const UiServices& services, QWidget* parent) {
  return new Page(services, parent);
}

struct PageRow {
  std::string_view id;
  std::string_view symbol;
  std::string_view title;
  QWidget* (*make)(const UiServices&, QWidget*);
};

constexpr std::array<PageRow, 6> pageRows = {{
    {"general", "gearshape", QM_TR_NOOP("通用"), make<GeneralPage>},
    {"menuBar", "menubar.rectangle", QM_TR_NOOP("菜单栏"), make<MenuBarPage>},
    {"components", "square.grid.2x2", QM_TR_NOOP("组件布局"), make<ComponentsPage>},
    {"agents", "sparkles", QM_TR_NOOP("Agent"), make<AgentSettingsPage>},
    {"screenTime", "hourglass", QM_TR_NOOP("屏幕使用时间"), make<ScreenTimeSettingsPage>},
    {"about", "info.circle", QM_TR_NOOP("关于"), make<AboutPage>},
}};

}  // namespace

struct SettingsWindow::Parts {
  const UiServices& services;
  PageList* list = nullptr;
  QStackedWidget* stack = nullptr;
  std::array<QWidget*, pageRows.size()> pages{};  // each made when it is first shown

  void turnTo(std::string_view id) {
    for (std::size_t index = 0; index < pageRows.size(); ++index) {
      if (pageRows[index].id != id) continue;
      if (pages[index] == nullptr) {
        pages[index] = pageRows[index].make(services, stack);
        stack->addWidget(pages[index]);
      }
      stack->setCurrentWidget(pages[index]);
      // Only where the window opens next time: not worth a complaint when it cannot be stored.
      static_cast<void>(services.preferences.set(SettingsKeys::settingsPage.key, std::string(id)));
    }
  }
};

SettingsWindow::SettingsWindow(const UiServices& services) : parts_(new Parts{.services = services}) {
  constexpr QSize usualSize(780, 580);
  setObjectName("settings");
  parts_->list = new PageList(this);
  parts_->list->setObjectName("settings.pages");
  parts_->stack = new QStackedWidget(this);
  for (const PageRow& row : pageRows) {
    parts_->list->addPage(std::string(row.id), std::string(row.symbol), "settings.pages." + qtText(row.id));
  }
  parts_->list->setHandler([this](const std::string& id) { parts_->turnTo(id); });
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(parts_->list);
  layout->addWidget(parts_->stack, 1);
  retranslate();
  const std::string last = services.preferences.value(SettingsKeys::settingsPage);
  const bool isPage = std::ranges::find(pageRows, last, &PageRow::id) != pageRows.end();
  showPage(isPage ? std::string_view(last) : pageRows.front().id);
  parts_->list->setFocus();
  keepRoomForText(*this, leastSize);
  resize(usualSize);
}

SettingsWindow::~SettingsWindow() = default;

void SettingsWindow::showPage(std::string_view page) {
  parts_->list->setChosen(std::string(page));
}

void SettingsWindow::retranslate() {
  setWindowTitle(qtText(QM_TR("设置")));
  parts_->list->setAccessibleName(qtText(QM_TR("设置")));
  for (std::size_t index = 0; index < pageRows.size(); ++index) {
    parts_->list->setTitle(index, qtText(L10n::string(pageRows[index].title)));
  }
}

void SettingsWindow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::LanguageChange) retranslate();
  if (event->type() == QEvent::FontChange) keepRoomForText(*this, leastSize);
  QWidget::changeEvent(event);
}

void SettingsWindow::keyPressEvent(QKeyEvent* event) {
  const int index = event->key() - Qt::Key_1;
  if (event->modifiers() == Qt::ControlModifier && index >= 0 && index < static_cast<int>(pageRows.size())) {
    showPage(pageRows[static_cast<std::size_t>(index)].id);
  } else if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close)) {
    close();
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace quillmeter
