#pragma once

#include <QScrollArea>

class QVBoxLayout;

namespace quillmeter {

// A page that scrolls vertically, its column centred and no wider than `maximumWidth`. What gets the focus by key is
// scrolled into view.
class ScrollPage : public QScrollArea {
 public:
  explicit ScrollPage(int maximumWidth, QWidget* parent = nullptr);
  QVBoxLayout* column() const { return column_; }

  static constexpr int margin = 24;  // around the column

 private:
  QVBoxLayout* column_ = nullptr;
};

}  // namespace quillmeter
