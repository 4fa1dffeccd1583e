#include "ui/widgets/WidgetAccessibility.h"

#include <optional>

#include <QAccessible>
#include <QAccessibleWidget>

#include "ui/widgets/BarChart.h"
#include "ui/widgets/Card.h"
#include "ui/widgets/FigureLabel.h"
#include "ui/widgets/LevelBar.h"
#include "ui/widgets/Notice.h"
#include "ui/widgets/RingGauge.h"
#include "ui/widgets/SegmentedControl.h"
#include "ui/widgets/SettingsGroup.h"
#include "ui/widgets/Sparkline.h"
#include "ui/widgets/SymbolView.h"

namespace quillmeter::WidgetAccessibility {
namespace {

class AccessibleFigure final : public QAccessibleWidget {
 public:
  explicit AccessibleFigure(FigureLabel* label) : QAccessibleWidget(label, QAccessible::StaticText), label_(*label) {}
  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Name && label_.accessibleName().isEmpty()) return label_.text();
    return QAccessibleWidget::text(kind);
  }

 private:
  const FigureLabel& label_;
};

// A gauge reads as a progress bar from 0 to 100.
template <typename Gauge>
class AccessibleGauge final : public QAccessibleWidget, public QAccessibleValueInterface {
 public:
  explicit AccessibleGauge(Gauge* gauge) : QAccessibleWidget(gauge, QAccessible::ProgressBar), gauge_(*gauge) {}
  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::ValueInterface) return static_cast<QAccessibleValueInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }
  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value) return gauge_.accessibleDescription();
    return QAccessibleWidget::text(kind);
  }
  QVariant currentValue() const override {
    const std::optional<double> fraction = gauge_.fraction();
    return fraction ? QVariant(*fraction * 100) : QVariant();
  }
  void setCurrentValue(const QVariant&) override {}
  QVariant maximumValue() const override { return 100.0; }
  QVariant minimumValue() const override { return 0.0; }
  QVariant minimumStepSize() const override { return 1.0; }

 private:
  const Gauge& gauge_;
};

QAccessible::Role roleOf(QWidget* widget) {
  if (dynamic_cast<Card*>(widget) != nullptr || dynamic_cast<SettingRow*>(widget) != nullptr ||
      dynamic_cast<SettingsGroup*>(widget) != nullptr || dynamic_cast<SegmentedControl*>(widget) != nullptr)
    return QAccessible::Grouping;
  if (dynamic_cast<Notice*>(widget) != nullptr) return QAccessible::AlertMessage;
  if (dynamic_cast<BarChart*>(widget) != nullptr || dynamic_cast<Sparkline*>(widget) != nullptr)
    return QAccessible::Chart;
  if (dynamic_cast<SymbolView*>(widget) != nullptr) return QAccessible::Graphic;
  return QAccessible::NoRole;
}

// Asked for each class of a widget, from its own up; ours have no name of their own to the toolkit.
QAccessibleInterface* make(const QString& className, QObject* object) {
  if (className != QLatin1String("QWidget")) return nullptr;
  auto* widget = qobject_cast<QWidget*>(object);
  if (auto* label = dynamic_cast<FigureLabel*>(widget)) return new AccessibleFigure(label);
  if (auto* ring = dynamic_cast<RingGauge*>(widget)) return new AccessibleGauge<RingGauge>(ring);
  if (auto* bar = dynamic_cast<LevelBar*>(widget)) return new AccessibleGauge<LevelBar>(bar);
  const QAccessible::Role role = roleOf(widget);
  return role == QAccessible::NoRole ? nullptr : new QAccessibleWidget(widget, role);
}

void send(QWidget& widget, QAccessible::Event kind) {
  if (!QAccessible::isActive()) return;
  QAccessibleEvent event(&widget, kind);
  QAccessible::updateAccessibility(&event);
}

}  // namespace

void install() {
  QAccessible::installFactory(make);
}

void setName(QWidget& widget, const QString& name) {
  if (widget.accessibleName() != name) widget.setAccessibleName(name);
}

void valueChanged(QWidget& widget) {
  if (!QAccessible::isActive()) return;
  QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(&widget);
  QAccessibleValueInterface* values = accessible != nullptr ? accessible->valueInterface() : nullptr;
  if (values == nullptr) return;
  QAccessibleValueChangeEvent event(&widget, values->currentValue());
  QAccessible::updateAccessibility(&event);
}

void nameChanged(QWidget& widget) {
  send(widget, QAccessible::NameChanged);
}

void alert(QWidget& widget) {
  send(widget, QAccessible::Alert);
}

}  // namespace quillmeter::WidgetAccessibility
