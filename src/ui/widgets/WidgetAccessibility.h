#pragma once

class QString;
class QWidget;

namespace quillmeter {

// What our painted widgets are to assistive technology: the toolkit knows only its own. Widgets call these themselves.
namespace WidgetAccessibility {

// Called by each constructor; does nothing from the second time on.
void install();
// The toolkit tells of a name with each setting, also of the same one.
void setName(QWidget& widget, const QString& name);
// The widget's value or name is another one. Costs nothing while nobody listens.
void valueChanged(QWidget& widget);
void nameChanged(QWidget& widget);
void alert(QWidget& widget);

}  // namespace WidgetAccessibility

}  // namespace quillmeter
