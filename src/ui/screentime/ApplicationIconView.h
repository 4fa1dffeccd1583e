#pragma once

#include <string>

#include <QIcon>
#include <QWidget>

#include "screentime/model/ActivityApp.h"

namespace quillmeter {

class ApplicationIcons;

// The icon of an application, or its initial on a ground of its colour where it has none. Decoration: the name stands
// beside it.
class ApplicationIconView : public QWidget {
 public:
  // The icons outlive the view.
  ApplicationIconView(ApplicationIcons& icons, int points, QWidget* parent = nullptr);
  void setApplication(const ActivityApp& app, const std::string& tint);

  QSize sizeHint() const override { return {points_, points_}; }
  QSize minimumSizeHint() const override { return sizeHint(); }

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  ApplicationIcons& icons_;
  int points_;
  ActivityApp app_;
  std::string tint_;
  QIcon icon_;
};

}  // namespace quillmeter
