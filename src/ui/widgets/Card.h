#pragma once

#include <string>

#include <QWidget>

class QBoxLayout;
class QVBoxLayout;

namespace quillmeter {

// A rounded surface with an optional header line: symbol in a tint, title, and room at the end for a control. What it
// shows goes into content(). Painted from the theme's colours; its accessible name is the title.
class Card : public QWidget {
 public:
  explicit Card(QWidget* parent = nullptr);

  // `tint` is six hexadecimal digits; empty takes the text's colour. An empty symbol shows none.
  void setHeader(std::string symbol, std::string tint, const QString& title);
  // A short figure or state at the end of the header, in secondary text; empty for none.
  void setHeaderNote(const QString& note);
  // Takes ownership; stands at the end of the header.
  void addHeaderControl(QWidget* control);
  QVBoxLayout* content() const { return content_; }
  // Between the edge and what the card holds; 16 at first.
  void setPadding(int points);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  class Header;
  Header& header();

  Header* header_ = nullptr;
  QVBoxLayout* content_ = nullptr;
};

}  // namespace quillmeter
