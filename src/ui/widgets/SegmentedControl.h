#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QWidget>

namespace quillmeter {

// A choice of a few, side by side; one is chosen. Arrow keys move the choice, each segment is a radio button to
// accessibility.
class SegmentedControl : public QWidget {
 public:
  explicit SegmentedControl(QWidget* parent = nullptr);
  struct Segment {
    std::string id;
    QString title;
    friend bool operator==(const Segment&, const Segment&) = default;
  };
  // Keeps the choice where its id is still there.
  void setSegments(std::vector<Segment> segments);
  // Does not call the handler.
  void setChosen(const std::string& id);
  const std::string& chosen() const { return chosen_; }
  // The user chose.
  void setHandler(std::function<void(const std::string& id)> handler) { handler_ = std::move(handler); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  class Button;
  void rebuild();
  void nameButtons();
  // A copy: the handler may set other segments.
  void choose(std::string id);

  std::vector<Segment> segments_;
  std::vector<Button*> buttons_;
  std::string chosen_;
  std::function<void(const std::string&)> handler_;
};

}  // namespace quillmeter
