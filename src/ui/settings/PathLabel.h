#pragma once

#include <filesystem>

#include <QWidget>

namespace quillmeter {

// The place of a file or folder on one line, the user's home as "~". Too long, it loses its middle; the tooltip and the
// accessible name have it whole.
class PathLabel final : public QWidget {
 public:
  explicit PathLabel(QWidget* parent = nullptr);

  void setPath(const std::filesystem::path& path, const std::filesystem::path& home);
  // Fainter, for a place that is only expected.
  void setIsExpected(bool isExpected);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString text_;
  bool isExpected_ = false;
};

}  // namespace quillmeter
