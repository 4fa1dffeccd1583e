#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <tl/expected.hpp>

namespace quillmeter {

struct HttpsRequest {
  std::string url;  // "https://..."; everything else is refused
  std::vector<std::pair<std::string, std::string>> headers;
  double requestTimeoutSeconds = 15;   // the longest time without a byte
  double resourceTimeoutSeconds = 20;  // the whole exchange
  std::size_t maximumBodyBytes = 1'048'576;
};

struct HttpsResponse {
  int status = 0;
  std::string body;
  friend bool operator==(const HttpsResponse&, const HttpsResponse&) = default;
};

// Why there is no response; for diagnostics, not for users.
enum class HttpsFailure { refusedUrl, transport, timedOut, tooLarge };

// A running request; destroying it cancels the request, and its completion is not called any more.
class HttpsTransfer {
 public:
  virtual ~HttpsTransfer() = default;
};

// Fetches over HTTPS with the system's trusted certificates: no cookies, no cache, redirects are not followed (they are
// responses of their own). Main thread; never blocks.
class HttpsClient {
 public:
  using Completion = std::function<void(const tl::expected<HttpsResponse, HttpsFailure>&)>;
  virtual ~HttpsClient() = default;
  // `completion` is called once on the main thread, never before get() returns.
  [[nodiscard]] virtual std::unique_ptr<HttpsTransfer> get(const HttpsRequest& request, Completion completion) = 0;
};

}  // namespace quillmeter
