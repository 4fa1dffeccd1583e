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
  PageHeader(int maximumWidth, QWidget* parent);
  void setTitle(const QString& title);
  void setSubtitle(const QString& subtitle);
  // The page below: the header stays in line with its column beside the scroll bar, and is set off while the page is
  // scrolled.
  void follow(ScrollPage& page);
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
