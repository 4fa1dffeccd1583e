#pragma once

#include <filesystem>

#include <QObject>
#include <QString>

class QWidget;

namespace quillmeter {

// Where the user left the windows: each opens again with the size and, where programs have a say in it, at the place it
// was closed with. Kept in a file of its own, since nobody sets it; one that cannot be read or written is as good as
// none. Main thread.
class WindowPlaces final : public QObject {
 public:
  // A path that is not absolute (there is no home): nothing is kept.
  explicit WindowPlaces(const std::filesystem::path& file);

  // Before the window is shown for the first time. Told apart by their object names.
  void follow(QWidget& window);

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;

  const QString file_;
};

}  // namespace quillmeter
