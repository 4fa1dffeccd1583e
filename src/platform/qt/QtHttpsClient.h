#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/HttpsClient.h"

namespace quillmeter {

// HTTPS by Qt's network stack, in the Qt event loop of the calling thread. Each transfer has a network manager of its
// own, so that nothing (cookie, cache, open connection) is left for the next one.
class QtHttpsClient final : public HttpsClient {
 public:
  QtHttpsClient() = default;
  // Trusts these certificates (PEM) as well as the system's.
  explicit QtHttpsClient(std::vector<std::string> additionalAuthorities)
      : additionalAuthorities_(std::move(additionalAuthorities)) {}

  std::unique_ptr<HttpsTransfer> get(const HttpsRequest& request, Completion completion) override;

 private:
  std::vector<std::string> additionalAuthorities_;
};

}  // namespace quillmeter
