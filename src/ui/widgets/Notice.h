#pragma once

#include <functional>

#include <QWidget>

class QPushButton;

namespace quillmeter {

class Paragraph;
class SymbolView;

// A message in the flow of a page: what went wrong or what to know, with at most one button. Hidden while it has no
// text. Announced to accessibility when its text changes.
class Notice : public QWidget {
 public:
  enum class Kind { information, success, warning, error };
  explicit Notice(QWidget* parent = nullptr);
  void show(Kind kind, const QString& text);
  void clear();
  QString text() const;
  void setAction(const QString& title, std::function<void()> action);
  void removeAction();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void adopt();

  Kind kind_ = Kind::information;
  SymbolView* symbol_ = nullptr;
  Paragraph* text_ = nullptr;
  QPushButton* action_ = nullptr;
  std::function<void()> act_;
};

}  // namespace quillmeter
