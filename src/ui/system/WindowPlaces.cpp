#include "ui/system/WindowPlaces.h"

#include <QByteArray>
#include <QEvent>
#include <QSettings>
#include <QWidget>

namespace quillmeter {

WindowPlaces::WindowPlaces(const std::filesystem::path& file)
    : file_(file.is_absolute() ? QString::fromStdString(file.string()) : QString()) {}

void WindowPlaces::follow(QWidget& window) {
  if (file_.isEmpty()) return;
  const QSettings places(file_, QSettings::IniFormat);
  window.restoreGeometry(places.value(window.objectName()).toByteArray());
  window.installEventFilter(this);
}

bool WindowPlaces::eventFilter(QObject* watched, QEvent* event) {
  auto* window = dynamic_cast<QWidget*>(watched);
  if (event->type() != QEvent::Close || window == nullptr) return false;
  QSettings places(file_, QSettings::IniFormat);
  const QByteArray place = window->saveGeometry();
  if (places.value(window->objectName()) != place) places.setValue(window->objectName(), place);
  return false;
}

}  // namespace quillmeter
