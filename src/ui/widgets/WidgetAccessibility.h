#pragma once

class QWidget;

namespace quillmeter {

// What our painted widgets are to assistive technology: the toolkit knows only its own. Widgets call these themselves.
namespace WidgetAccessibility {

// Called by each constructor; does nothing from the second time on.
void install();
// The widget's value or name is another one. Costs nothing while nobody listens.
void valueChanged(QWidget& widget);
void nameChanged(QWidget& widget);
void alert(QWidget& widget);

}  // namespace WidgetAccessibility

}  // namespace quillmeter
