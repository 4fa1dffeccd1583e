#include "platform/qt/QtMainExecutor.h"

#include <QMetaObject>
#include <QObject>
#include <utility>

namespace quillmeter {

QtMainExecutor::QtMainExecutor() : context_(std::make_unique<QObject>()) {}

QtMainExecutor::~QtMainExecutor() = default;

void QtMainExecutor::post(std::function<void()> job) {
  QMetaObject::invokeMethod(context_.get(), std::move(job), Qt::QueuedConnection);
}

}  // namespace quillmeter
