#pragma once

#include <functional>
#include <string>
#include <vector>

#include <QAbstractButton>
#include <QWidget>

namespace quillmeter {

// A page's line in the list: symbol and title; a radio button to keyboard and accessibility.
class PageListItem final : public QAbstractButton {
 public:
  PageListItem(std::string id, std::string symbol, QWidget* parent);
  const std::string& id() const { return id_; }
  QSize sizeHint() const override;
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  const std::string id_;
  const std::string symbol_;
};

// The list of pages at the left of a window; one is chosen. Arrow keys move the choice.
class PageList final : public QWidget {
 public:
  explicit PageList(QWidget* parent = nullptr);

  // `objectName` addresses the line.
  void addPage(std::string id, std::string symbol, const QString& objectName);
  void setTitle(std::size_t index, const QString& title);
  void setChosen(const std::string& id);
  // Called for each change of the choice, by the user or by setChosen().
  void setHandler(std::function<void(const std::string& id)> handler) { handler_ = std::move(handler); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::vector<PageListItem*> items_;
  std::function<void(const std::string&)> handler_;
};

}  // namespace quillmeter
