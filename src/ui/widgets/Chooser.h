#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QComboBox>

namespace quillmeter {

// A choice of one out of many, as a field that opens a list. The wheel over it scrolls the page instead of changing it.
// Needs an accessible name.
class Chooser : public QComboBox {
 public:
  explicit Chooser(QWidget* parent = nullptr);
  struct Choice {
    std::string id;
    QString title;
    friend bool operator==(const Choice&, const Choice&) = default;
  };
  // Keeps the choice where its id is still there.
  void setChoices(std::vector<Choice> choices);
  // Does not call the handler. An id that is not among the choices shows none.
  void setChosen(const std::string& id);
  const std::string& chosen() const { return chosen_; }
  // The user chose.
  void setHandler(std::function<void(const std::string& id)> handler) { handler_ = std::move(handler); }

 protected:
  void wheelEvent(QWheelEvent* event) override;

 private:
  std::vector<Choice> choices_;
  std::string chosen_;
  std::function<void(const std::string&)> handler_;
};

}  // namespace quillmeter
