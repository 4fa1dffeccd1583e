#include "sweep/VisibleText.h"

#include <typeinfo>

#include <cxxabi.h>
#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QComboBox>
#include <QHeaderView>
#include <QLabel>
#include <QTextDocumentFragment>

#include "ui/widgets/FigureLabel.h"

namespace quillmeter::test {
namespace {

std::string typeOf(const QWidget& widget) {
  int status = 0;
  char* name = abi::__cxa_demangle(typeid(widget).name(), nullptr, nullptr, &status);
  std::string type = name == nullptr ? typeid(widget).name() : name;
  std::free(name);
  const auto colon = type.rfind(':');
  return colon == std::string::npos ? type : type.substr(colon + 1);
}

QString plain(const QString& text) {
  return Qt::mightBeRichText(text) ? QTextDocumentFragment::fromHtml(text).toPlainText() : text;
}

class Collector {
 public:
  void add(const QWidget& widget, const QString& text, VisibleText::Kind kind) {
    if (!text.trimmed().isEmpty()) texts.push_back({plain(text), widget.font(), placeOf(widget), kind});
  }
  void addItems(const QAbstractItemView& view) {
    const QAbstractItemModel* model = view.model();
    if (model == nullptr) return;
    for (int row = 0; row < model->rowCount(view.rootIndex()); ++row) {
      for (int column = 0; column < model->columnCount(view.rootIndex()); ++column) {
        add(view, model->index(row, column, view.rootIndex()).data().toString(), VisibleText::Kind::item);
      }
    }
    for (int column = 0; column < model->columnCount(view.rootIndex()); ++column) {
      add(view, model->headerData(column, Qt::Horizontal).toString(), VisibleText::Kind::item);
    }
  }
  void addAccessible(QWidget& widget) {
    QAccessibleInterface* interface = QAccessible::queryAccessibleInterface(&widget);
    if (interface == nullptr) return;
    add(widget, interface->text(QAccessible::Name), VisibleText::Kind::accessible);
    add(widget, interface->text(QAccessible::Description), VisibleText::Kind::accessible);
  }

  std::vector<VisibleText> texts;
};

}  // namespace

std::string placeOf(const QWidget& widget) {
  std::string place = widget.objectName().isEmpty() ? typeOf(widget) : widget.objectName().toStdString();
  for (const QWidget* parent = widget.parentWidget(); parent != nullptr; parent = parent->parentWidget()) {
    const std::string name = parent->objectName().toStdString();
    if (!name.empty() && !name.starts_with("qt_")) return name + "/" + place;
  }
  return place;
}

std::vector<QWidget*> visibleWidgets(QWidget& window) {
  std::vector<QWidget*> widgets{&window};
  for (QWidget* widget : window.findChildren<QWidget*>()) {
    if (widget->isVisibleTo(&window) && widget->window() == &window) widgets.push_back(widget);
  }
  return widgets;
}

QString shownText(const QWidget& widget) {
  if (const auto* label = dynamic_cast<const QLabel*>(&widget)) return plain(label->text());
  if (const auto* figure = dynamic_cast<const FigureLabel*>(&widget)) return figure->text();
  if (const auto* button = dynamic_cast<const QAbstractButton*>(&widget)) return button->text();
  return {};
}

std::vector<VisibleText> visibleTexts(QWidget& window) {
  Collector collector;
  collector.add(window, window.windowTitle(), VisibleText::Kind::shown);
  for (QWidget* widget : visibleWidgets(window)) {
    collector.add(*widget, shownText(*widget), VisibleText::Kind::shown);
    collector.add(*widget, widget->toolTip(), VisibleText::Kind::toolTip);
    if (const auto* box = dynamic_cast<const QComboBox*>(widget)) {
      for (int item = 0; item < box->count(); ++item) {
        collector.add(*box, box->itemText(item), VisibleText::Kind::item);
      }
    }
    if (const auto* view = dynamic_cast<const QAbstractItemView*>(widget)) collector.addItems(*view);
    collector.addAccessible(*widget);
  }
  return std::move(collector.texts);
}

}  // namespace quillmeter::test
