#include "platform/qt/QtDescriptorWatcher.h"

#include <QObject>
#include <QSocketNotifier>
#include <utility>

namespace quillmeter {
namespace {

class QtDescriptorWatch final : public DescriptorWatch {
 public:
  QtDescriptorWatch(int descriptor, QSocketNotifier::Type type, std::function<void()> ready)
      : notifier_(new QSocketNotifier(descriptor, type)) {
    QObject::connect(notifier_, &QSocketNotifier::activated, notifier_, [ready = std::move(ready)] { ready(); });
  }
  // Its own call may end it. Disabled at once, since the descriptor may be closed next; deleted when the event loop
  // turns.
  ~QtDescriptorWatch() override {
    notifier_->setEnabled(false);
    notifier_->deleteLater();
  }
  QtDescriptorWatch(const QtDescriptorWatch&) = delete;
  QtDescriptorWatch& operator=(const QtDescriptorWatch&) = delete;

 private:
  QSocketNotifier* notifier_;
};

}  // namespace

std::unique_ptr<DescriptorWatch> QtDescriptorWatcher::watch(int descriptor, DescriptorEvent event,
                                                            std::function<void()> ready) {
  const auto type = event == DescriptorEvent::readable ? QSocketNotifier::Read : QSocketNotifier::Write;
  return std::make_unique<QtDescriptorWatch>(descriptor, type, std::move(ready));
}

}  // namespace quillmeter
