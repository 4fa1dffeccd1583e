#pragma once

#include <functional>
#include <mutex>
#include <string>

#include "base/Clock.h"

struct pa_context;
struct pa_operation;
struct pa_threaded_mainloop;
struct pa_time_event;

namespace quillmeter {

// The connection to the sound server, whose changes it announces. libpulse's own thread serves it: it sleeps as long as
// the server says nothing, and exists from the first session on. A lost connection is made again by the next session;
// after a failed attempt sessions go without for a while, so that a machine without sound server is not asked each
// time. Sessions are made on one thread. `clock` outlives the connection.
class PulseConnection {
 public:
  static constexpr double firstPauseSeconds = 1;  // after a failed attempt; doubles with each
  static constexpr double longestPauseSeconds = 8;

  // An empty address is the user's own server. It is never started from here.
  PulseConnection(std::string serverAddress, double patienceSeconds, const MonotonicClock& clock);
  ~PulseConnection();
  PulseConnection(const PulseConnection&) = delete;
  PulseConnection& operator=(const PulseConnection&) = delete;

  // One use of the connection, which is locked meanwhile. No longer than `patienceSeconds` is waited in it altogether;
  // a server that takes longer is taken for dead, and the connection is cut.
  class Session {
   public:
    explicit Session(PulseConnection& connection);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    bool isConnected() const;
    pa_context* context() const { return connection_.context_; }
    // Waits for an operation to end, and releases it (null: one that did not start). False when it was cancelled or
    // took too long; its callback is not called any more then.
    bool finish(pa_operation* operation);

   private:
    void connect();
    template <typename Pending>
    bool waitWhile(const Pending& pending);

    PulseConnection& connection_;
    pa_time_event* deadline_ = nullptr;
    bool timedOut_ = false;
  };

  // Whether outputs may have changed since this was last asked. Within a session.
  bool takeStale();
  // Lets takeStale() say yes, without a call.
  void keepStale() { stale_ = true; }
  // Called, on libpulse's thread, when that turns true. Not called any more once this returned.
  void onStale(std::function<void()> function);

 private:
  bool startThread();
  void dropContext();
  void noteFailedAttempt();
  void becomeStale();

  const std::string serverAddress_;
  const double patienceSeconds_;
  const MonotonicClock& clock_;
  pa_threaded_mainloop* thread_ = nullptr;
  pa_context* context_ = nullptr;
  bool ready_ = false;  // the connection was made and has not been lost
  bool stale_ = true;
  double pauseSeconds_ = 0;
  double nextAttempt_ = 0;  // not before, in the clock's seconds
  std::mutex staleFunctionMutex_;
  std::function<void()> staleFunction_;
};

}  // namespace quillmeter
