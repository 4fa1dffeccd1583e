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
  // Takes ownership; from left to right.
  void addControl(QWidget* control);
  FigureLabel* subtitle() const { return subtitle_; }

 private:
  FigureLabel* title_;
  FigureLabel* subtitle_;
  QHBoxLayout* controls_;
};

}  // namespace quillmeter
