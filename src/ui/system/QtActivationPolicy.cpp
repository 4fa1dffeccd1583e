#include "ui/system/QtActivationPolicy.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QWindow>

#include "ui/system/X11Server.h"
#include "ui/system/X11Taskbar.h"

namespace quillmeter {

QtActivationPolicy::QtActivationPolicy() {
  if (auto* connection = X11Server::connection()) taskbar_ = std::make_unique<X11Taskbar>(connection);
}

QtActivationPolicy::~QtActivationPolicy() = default;

bool QtActivationPolicy::setListed(bool listed) {
  if (taskbar_ == nullptr) return listed;
  taskbar_->setListed(listed);
  return true;
}

// All windows come to the front; the newest gets the keyboard unless one of them has it.
void QtActivationPolicy::activate() {
  QWindow* const focused = QGuiApplication::focusWindow();
  QWindow* active = focused;
  for (QWindow* window : QGuiApplication::topLevelWindows()) {
    if (!window->isVisible() || (window->type() != Qt::Window && window->type() != Qt::Dialog)) continue;
    if (window->flags().testFlag(Qt::BypassWindowManagerHint)) continue;  // the item in the panel
    if (window->windowStates().testFlag(Qt::WindowMinimized)) {
      window->setWindowStates(window->windowStates() & ~Qt::WindowMinimized);
    }
    window->raise();
    if (focused == nullptr) active = window;
  }
  if (active == nullptr) return;
  active->raise();
  active->requestActivate();
}

}  // namespace quillmeter
