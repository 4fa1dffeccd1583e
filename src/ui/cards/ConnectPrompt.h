#pragma once

#include <functional>

#include <QWidget>

class QPushButton;

namespace quillmeter {

class Paragraph;

// Stands in a card in place of figures that cannot be had: why, and a button that leads to where it can be changed.
class ConnectPrompt : public QWidget {
 public:
  ConnectPrompt(bool isCompact, const QString& objectName, std::function<void()> act, QWidget* parent);
  // An empty `action` shows no button.
  void show(const QString& text, const QString& action);

 private:
  Paragraph* text_;
  QPushButton* button_;
};

}  // namespace quillmeter
