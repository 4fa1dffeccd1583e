#include "platform/linux/audio/PulseConnection.h"

#include <pulse/pulseaudio.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

namespace quillmeter {
namespace {

constexpr double microsecondsPerSecond = 1'000'000;

bool isGood(pa_context* context) {
  return context != nullptr && PA_CONTEXT_IS_GOOD(pa_context_get_state(context)) != 0;
}

pa_context* newContext(pa_mainloop_api* api) {
  const std::unique_ptr<pa_proplist, decltype(&pa_proplist_free)> properties(pa_proplist_new(), pa_proplist_free);
  pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_ID, "com.kesto.Quillmeter");
  pa_proplist_sets(properties.get(), PA_PROP_APPLICATION_ICON_NAME, "com.kesto.Quillmeter");
  return pa_context_new_with_proplist(api, "Quillmeter", properties.get());
}

}  // namespace

PulseConnection::PulseConnection(std::string serverAddress, double patienceSeconds, const MonotonicClock& clock)
    : serverAddress_(std::move(serverAddress)),
      patienceSeconds_(patienceSeconds),
      clock_(clock),
      nextAttempt_(std::numeric_limits<double>::lowest()) {}

PulseConnection::~PulseConnection() {
  if (thread_ == nullptr) return;
  pa_threaded_mainloop_lock(thread_);
  dropContext();
  pa_threaded_mainloop_unlock(thread_);
  pa_threaded_mainloop_stop(thread_);
  pa_threaded_mainloop_free(thread_);
}

bool PulseConnection::startThread() {
  if (thread_ != nullptr) return true;
  thread_ = pa_threaded_mainloop_new();
  if (thread_ == nullptr) return false;
  pa_threaded_mainloop_set_name(thread_, "quick-audio");
  if (pa_threaded_mainloop_start(thread_) == 0) return true;
  pa_threaded_mainloop_free(std::exchange(thread_, nullptr));
  return false;
}

void PulseConnection::dropContext() {
  ready_ = false;
  if (context_ == nullptr) return;
  pa_context_set_state_callback(context_, nullptr, nullptr);
  pa_context_set_subscribe_callback(context_, nullptr, nullptr);
  pa_context_disconnect(context_);
  pa_context_unref(std::exchange(context_, nullptr));
}

void PulseConnection::noteFailedAttempt() {
  pauseSeconds_ = std::clamp(pauseSeconds_ * 2, firstPauseSeconds, longestPauseSeconds);
  nextAttempt_ = clock_.uptime() + pauseSeconds_;
}

// Once is enough until somebody looks.
void PulseConnection::becomeStale() {
  if (std::exchange(stale_, true)) return;
  const std::lock_guard lock(staleFunctionMutex_);
  if (staleFunction_) staleFunction_();
}

bool PulseConnection::takeStale() {
  return std::exchange(stale_, false);
}

void PulseConnection::onStale(std::function<void()> function) {
  const std::lock_guard lock(staleFunctionMutex_);
  staleFunction_ = std::move(function);
}

PulseConnection::Session::Session(PulseConnection& connection) : connection_(connection) {
  if (!connection_.startThread()) return;
  pa_threaded_mainloop_lock(connection_.thread_);
  if (!isGood(connection_.context_)) connection_.dropContext();
  if (connection_.context_ == nullptr && connection_.clock_.uptime() >= connection_.nextAttempt_) connect();
}

PulseConnection::Session::~Session() {
  if (connection_.thread_ == nullptr) return;
  if (deadline_ != nullptr) pa_threaded_mainloop_get_api(connection_.thread_)->time_free(deadline_);
  if (timedOut_) {
    connection_.dropContext();
    connection_.noteFailedAttempt();
  }
  pa_threaded_mainloop_unlock(connection_.thread_);
}

bool PulseConnection::Session::isConnected() const {
  return !timedOut_ && connection_.ready_;
}

void PulseConnection::Session::connect() {
  PulseConnection& connection = connection_;
  connection.context_ = newContext(pa_threaded_mainloop_get_api(connection.thread_));
  if (connection.context_ == nullptr) return;
  pa_context_set_state_callback(
      connection.context_,
      [](pa_context* context, void* self) {
        auto& owner = *static_cast<PulseConnection*>(self);
        if (!isGood(context) && std::exchange(owner.ready_, false)) owner.becomeStale();
        pa_threaded_mainloop_signal(owner.thread_, 0);
      },
      &connection);
  pa_context_set_subscribe_callback(
      connection.context_,
      [](pa_context*, pa_subscription_event_type_t, std::uint32_t, void* self) {
        static_cast<PulseConnection*>(self)->becomeStale();
      },
      &connection);

  const char* address = connection.serverAddress_.empty() ? nullptr : connection.serverAddress_.c_str();
  pa_context* const context = connection.context_;
  constexpr auto announced =
      static_cast<pa_subscription_mask_t>(PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SERVER);
  connection.ready_ =
      pa_context_connect(context, address, PA_CONTEXT_NOAUTOSPAWN, nullptr) == 0 &&
      waitWhile([context] { return isGood(context) && pa_context_get_state(context) != PA_CONTEXT_READY; }) &&
      isGood(context) && finish(pa_context_subscribe(context, announced, nullptr, nullptr));
  if (connection.ready_) {
    connection.pauseSeconds_ = 0;
    connection.stale_ = true;
  } else if (!timedOut_) {
    connection.dropContext();
    connection.noteFailedAttempt();
  }
}

template <typename Pending>
bool PulseConnection::Session::waitWhile(const Pending& pending) {
  if (deadline_ == nullptr) {
    const auto patience = static_cast<pa_usec_t>(connection_.patienceSeconds_ * microsecondsPerSecond);
    deadline_ = pa_context_rttime_new(
        connection_.context_, pa_rtclock_now() + patience,
        [](pa_mainloop_api*, pa_time_event*, const timeval*, void* self) {
          auto& session = *static_cast<Session*>(self);
          session.timedOut_ = true;
          pa_threaded_mainloop_signal(session.connection_.thread_, 0);
        },
        this);
    if (deadline_ == nullptr) return false;
  }
  while (!timedOut_ && pending()) pa_threaded_mainloop_wait(connection_.thread_);
  return !timedOut_;
}

bool PulseConnection::Session::finish(pa_operation* operation) {
  if (operation == nullptr) return false;
  pa_operation_set_state_callback(
      operation,
      [](pa_operation*, void* thread) { pa_threaded_mainloop_signal(static_cast<pa_threaded_mainloop*>(thread), 0); },
      connection_.thread_);
  waitWhile([operation] { return pa_operation_get_state(operation) == PA_OPERATION_RUNNING; });
  const bool done = pa_operation_get_state(operation) == PA_OPERATION_DONE;
  pa_operation_set_state_callback(operation, nullptr, nullptr);
  pa_operation_cancel(operation);
  pa_operation_unref(operation);
  return done;
}

}  // namespace quillmeter
