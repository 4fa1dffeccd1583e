#pragma once

#include <QWidget>

class QHBoxLayout;

namespace quillmeter {

class FigureLabel;
class ScrollPage;

// The line above a page: its title, a few words about its state and the page's controls. Stands still while the page
// scrolls, in line with its column.
class PageHeader : public QWidget {
 public:
  static constexpr int maximumWidth = 1120;  // of its column and the page's

  explicit PageHeader(QWidget* parent);
  void setTitle(const QString& title);
  void setSubtitle(const QString& subtitle);
  // Fills their common parent with the header and the page below it: the header stays in line with the page's column
  // beside the scroll bar, and is set off while the page is scrolled.
  void standAbove(ScrollPage& page);
  // Takes ownership; from left to right.
  void addControl(QWidget* control);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void align();

  FigureLabel* title_;
  FigureLabel* subtitle_;
  QHBoxLayout* controls_;
  ScrollPage* page_ = nullptr;
};

}  // namespace quillmeter
