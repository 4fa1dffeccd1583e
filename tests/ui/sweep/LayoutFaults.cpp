#include "sweep/LayoutFaults.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QComboBox>
#include <QLabel>
#include <QScrollArea>
#include <cmath>
#include <string_view>

#include "menubar/TabularText.h"
#include "sweep/VisibleText.h"
#include "ui/widgets/FigureLabel.h"

namespace quillmeter::test {
namespace {

// Sizes are whole points, texts are not.
constexpr int tolerance = 1;

// What shows names and paths of the user's, of any length, and elides them.
bool showsNames(const QWidget& widget) {
  static constexpr std::string_view places[] = {"sessions", "output", "folder", "screenTime.applications",
                                                "screenTime.timeline"};
  const std::string place = placeOf(widget);
  for (const std::string_view name : places) {
    if (place.find(name) != std::string::npos) return true;
  }
  return false;
}

class Inspection {
 public:
  explicit Inspection(QWidget& window) : window_(window) {}

  std::vector<std::string> run() {
    for (QWidget* widget : visibleWidgets(window_)) {
      checkRoom(*widget);
      if (!shownText(*widget).isEmpty() || dynamic_cast<QAbstractButton*>(widget) != nullptr)
        checkSurroundings(*widget);
    }
    checkOverlaps();
    return std::move(faults_);
  }

 private:
  void report(const QWidget& widget, const std::string& what) {
    faults_.push_back(placeOf(widget) + " \"" + shownText(widget).toStdString() + "\": " + what);
  }
  void needs(const QWidget& widget, QSize needed, QSize given) {
    if (needed.width() <= given.width() + tolerance && needed.height() <= given.height() + tolerance) return;
    report(widget, "needs " + std::to_string(needed.width()) + "x" + std::to_string(needed.height()) + ", has " +
                       std::to_string(given.width()) + "x" + std::to_string(given.height()));
  }

  void checkRoom(const QWidget& widget) {
    if (const auto* label = dynamic_cast<const QLabel*>(&widget)) {
      if (label->text().isEmpty()) return;
      if (label->wordWrap()) {
        needs(widget, {0, label->heightForWidth(label->width())}, label->size());
      } else {
        needs(widget, label->sizeHint(), label->size());
      }
    } else if (const auto* figure = dynamic_cast<const FigureLabel*>(&widget)) {
      if (showsNames(widget)) return;
      const auto width = static_cast<int>(std::ceil(TabularText::width(figure->text(), figure->font())));
      needs(widget, {width, figure->fontMetrics().height()}, figure->size());
    } else if (const auto* button = dynamic_cast<const QAbstractButton*>(&widget)) {
      if (!button->text().isEmpty()) needs(widget, button->sizeHint(), button->size());
    } else if (const auto* box = dynamic_cast<const QComboBox*>(&widget)) {
      needs(widget, {box->minimumSizeHint().width(), box->fontMetrics().height()}, box->size());
    }
  }

  // Within everything that could cut it off; what scrolls vertically may be out of sight there.
  void checkSurroundings(const QWidget& widget) {
    const QRect own(QPoint(), widget.size());
    bool scrollsVertically = false;
    bool scrollsHorizontally = false;
    for (const QWidget* parent = widget.parentWidget(); parent != nullptr; parent = parent->parentWidget()) {
      const QRect inParent(widget.mapTo(parent, QPoint()), own.size());
      const bool cutWidth = inParent.left() < -tolerance || inParent.right() > parent->width() - 1 + tolerance;
      const bool cutHeight = inParent.top() < -tolerance || inParent.bottom() > parent->height() - 1 + tolerance;
      if ((cutWidth && !scrollsHorizontally) || (cutHeight && !scrollsVertically)) {
        report(widget, "is cut off by " + placeOf(*parent));
        return;
      }
      if (parent->isWindow()) return;
      const auto* area = dynamic_cast<const QAbstractScrollArea*>(parent->parentWidget());
      if (area != nullptr && area->viewport() == parent) continue;
      const auto* inside = dynamic_cast<const QScrollArea*>(
          parent->parentWidget() == nullptr ? nullptr : parent->parentWidget()->parentWidget());
      if (inside != nullptr && inside->widget() == parent) {
        scrollsVertically = scrollsVertically || inside->verticalScrollBarPolicy() != Qt::ScrollBarAlwaysOff;
        scrollsHorizontally = scrollsHorizontally || inside->horizontalScrollBarPolicy() == Qt::ScrollBarAlwaysOn;
      }
    }
  }

  void checkOverlaps() {
    std::vector<const QWidget*> texts;
    for (const QWidget* widget : visibleWidgets(window_)) {
      if (!shownText(*widget).isEmpty()) texts.push_back(widget);
    }
    for (std::size_t first = 0; first < texts.size(); ++first) {
      for (std::size_t second = first + 1; second < texts.size(); ++second) checkOverlap(*texts[first], *texts[second]);
    }
  }
  void checkOverlap(const QWidget& first, const QWidget& second) {
    // A text within a button or a tile belongs to it; what lies in different scrolled areas never meets.
    if (first.isAncestorOf(&second) || second.isAncestorOf(&first)) return;
    if (areaOf(first) != areaOf(second)) return;
    const auto rect = [this](const QWidget& widget) { return QRect(widget.mapTo(&window_, QPoint()), widget.size()); };
    const QRect common = rect(first).intersected(rect(second));
    if (common.width() > tolerance && common.height() > tolerance) {
      report(first, "lies over " + placeOf(second) + " \"" + shownText(second).toStdString() + "\"");
    }
  }
  static const QWidget* areaOf(const QWidget& widget) {
    for (const QWidget* parent = widget.parentWidget(); parent != nullptr; parent = parent->parentWidget()) {
      if (dynamic_cast<const QScrollArea*>(parent) != nullptr) return parent;
    }
    return nullptr;
  }

  QWidget& window_;
  std::vector<std::string> faults_;
};

}  // namespace

std::vector<std::string> layoutFaults(QWidget& window) {
  return Inspection(window).run();
}

}  // namespace quillmeter::test
