#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "platform/HttpsClient.h"
#include "platform/MainExecutor.h"
#include "platform/NetworkPathMonitor.h"
#include "platform/WifiClient.h"

namespace quillmeter {

// The network as a test sets it.

class FakeWifiClient final : public WifiClient {
 public:
  WifiFacts read() override {
    ++reads;
    return facts;
  }
  WifiFacts facts;
  int reads = 0;
};

// Tells the path when a monitor starts, and each change; one monitor at a time.
class FakeNetworkPaths final : public NetworkPathMonitorFactory {
 public:
  explicit FakeNetworkPaths(MainExecutor& main) : main_(main) {}

  std::unique_ptr<NetworkPathMonitor> start(std::function<void(const NetworkPath&)> updated) override {
    updated_ = std::make_shared<std::function<void(const NetworkPath&)>>(std::move(updated));
    tell();
    return std::make_unique<Monitor>(*this);
  }
  void change(const NetworkPath& path) {
    path_ = path;
    tell();
  }

 private:
  class Monitor final : public NetworkPathMonitor {
   public:
    explicit Monitor(FakeNetworkPaths& owner) : owner_(owner) {}
    ~Monitor() override { owner_.updated_.reset(); }

   private:
    FakeNetworkPaths& owner_;
  };

  void tell() {
    main_.post([path = path_, handler = std::weak_ptr(updated_)] {
      if (const auto updated = handler.lock()) (*updated)(path);
    });
  }

  MainExecutor& main_;
  NetworkPath path_;
  std::shared_ptr<std::function<void(const NetworkPath&)>> updated_;
};

// Answers each request with `response` as soon as the main thread is free; while that is absent a request waits for
// answer().
class FakeHttpsClient final : public HttpsClient {
 public:
  using Answer = tl::expected<HttpsResponse, HttpsFailure>;
  explicit FakeHttpsClient(MainExecutor& main) : main_(main) {}

  std::unique_ptr<HttpsTransfer> get(const HttpsRequest& request, Completion completion) override {
    requests.push_back(request);
    auto transfer = std::make_unique<Transfer>();
    waiting_ = transfer->running;
    completion_ = std::move(completion);
    if (response) main_.post([this, answer = *response] { this->answer(answer); });
    return transfer;
  }
  void answer(const Answer& answer) {
    const auto completion = std::exchange(completion_, {});
    if (completion && !waiting_.expired()) completion(answer);
  }

  std::optional<Answer> response;
  std::vector<HttpsRequest> requests;

 private:
  struct Transfer final : HttpsTransfer {
    std::shared_ptr<bool> running = std::make_shared<bool>(true);
  };

  MainExecutor& main_;
  std::weak_ptr<bool> waiting_;
  Completion completion_;
};

}  // namespace quillmeter
