#pragma once

#include <string>
#include <vector>

#include <QFont>
#include <QPointer>
#include <QString>
#include <QWidget>

namespace quillmeter::test {

// A text that a window shows or has read aloud.
struct VisibleText {
  enum class Kind { shown, item, toolTip, accessible };
  QString text;
  QFont font;
  std::string place;  // names of the widget and those around it
  Kind kind = Kind::shown;
};

// In the order of the widgets; without those that are hidden.
std::vector<VisibleText> visibleTexts(QWidget& window);

// "dashboard/dashboard.overview/FigureLabel"
std::string placeOf(const QWidget& widget);

// Visible within the window, whether scrolled into view or not.
std::vector<QWidget*> visibleWidgets(QWidget& window);

// The text that the widget itself shows; empty for none.
QString shownText(const QWidget& widget);

}  // namespace quillmeter::test
