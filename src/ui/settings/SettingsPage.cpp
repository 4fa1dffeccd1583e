#include "ui/settings/SettingsPage.h"

#include <algorithm>
#include <utility>

#include <QtCore/QEvent>
#include <QtWidgets/QVBoxLayout>

#include "preferences/PreferenceStore.h"
#include "ui/AppActions.h"
#include "ui/widgets/Paragraph.h"
#include "ui/widgets/SegmentedControl.h"
#include "ui/widgets/ToggleSwitch.h"

namespace quillmeter {

namespace {

void collectFocusable(QWidget& widget, std::vector<QWidget*>& found);

void collectFocusable(QLayout& layout, std::vector<QWidget*>& found) {
  for (int index = 0; index < layout.count(); ++index) {
    QLayoutItem* item = layout.itemAt(index);
    if (item->widget() != nullptr) collectFocusable(*item->widget(), found);
    if (item->layout() != nullptr) collectFocusable(*item->layout(), found);
  }
}

// In the order of reading: as the layout has it, or where the widget places its children itself, as they stand.
void collectFocusable(QWidget& widget, std::vector<QWidget*>& found) {
  if (widget.focusPolicy() != Qt::NoFocus) found.push_back(&widget);
  if (widget.layout() != nullptr) return collectFocusable(*widget.layout(), found);
  QList<QWidget*> children = widget.findChildren<QWidget*>(Qt::FindDirectChildrenOnly);
  std::ranges::stable_sort(children, {}, [](const QWidget* child) { return std::pair(child->y(), child->x()); });
  for (QWidget* child : children) {
    if (!child->isWindow()) collectFocusable(*child, found);
  }
}

}  // namespace

SettingsPage::SettingsPage(const UiServices& services, QWidget* parent)
    : ScrollPage(widestColumn, parent), services_(services), title_(new Paragraph(TextRole::title)) {
  constexpr int gap = 20;
  column()->setSpacing(gap);
  column()->addWidget(title_);
}

std::vector<Subscription> SettingsPage::subscribe(std::function<void()>) {
  return {};
}

void SettingsPage::setPageTitle(const QString& title) {
  title_->setText(title);
  setAccessibleName(title);
}

bool SettingsPage::store(std::string_view key, PreferenceValue value) {
  const auto stored = services_.preferences.set(key, std::move(value));
  if (!stored) services_.actions.preferenceFailed(stored.error());
  showStored();
  return stored.has_value();
}

void SettingsPage::bind(ToggleSwitch* control, const BooleanSetting& setting) {
  bindings_.emplace_back([this, control, setting] { control->setChecked(services_.preferences.value(setting)); });
  connect(control, &QAbstractButton::clicked, this, [this, setting](bool on) { store(setting.key, on); });
}

void SettingsPage::bind(SegmentedControl* control, const StringSetting& setting) {
  bindings_.emplace_back([this, control, setting] {
    const std::string value = services_.preferences.value(setting);
    const bool isChoice = std::ranges::find(setting.choices, value) != setting.choices.end();
    control->setChosen(isChoice ? value : std::string(setting.defaultValue));
  });
  control->setHandler([this, setting](const std::string& id) { store(setting.key, id); });
}

void SettingsPage::chainFocus() {
  std::vector<QWidget*> order;
  collectFocusable(*column(), order);
  for (std::size_t index = 1; index < order.size(); ++index) setTabOrder(order[index - 1], order[index]);
}

void SettingsPage::showStored() {
  for (const auto& show : bindings_) show();
  refresh();
}

// What other programs and the system's own settings changed meanwhile is looked up when the user comes back.
bool SettingsPage::event(QEvent* event) {
  if (event->type() == QEvent::WindowActivate && isVisible()) {
    services_.preferences.refresh();
    showStored();
  }
  return ScrollPage::event(event);
}

void SettingsPage::showEvent(QShowEvent* event) {
  if (subscriptions_.empty()) {
    subscriptions_ = subscribe([this] { refresh(); });
    subscriptions_.push_back(services_.preferences.onChange(
        [this](const std::vector<std::string>&, PreferenceChangeOrigin) { showStored(); }));
  }
  showStored();
  chainFocus();
  ScrollPage::showEvent(event);
}

void SettingsPage::hideEvent(QHideEvent* event) {
  subscriptions_.clear();
  ScrollPage::hideEvent(event);
}

void SettingsPage::changeEvent(QEvent* event) {
  if (event->type() == QEvent::LanguageChange) {
    retranslate();
    showStored();
  }
  ScrollPage::changeEvent(event);
}

}  // namespace quillmeter
