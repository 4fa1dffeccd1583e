#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "agents/adapters/CountingOpener.h"
#include "agents/adapters/OpenClawUsageAdapter.h"
#include "agents/adapters/SqliteWriter.h"
#include "agents/adapters/ZstdWriter.h"
#include "platform/linux/CryptoSha256.h"
#include "support/TemporaryDirectory.h"

namespace quillmeter::test {

class SetClock final : public Clock {
 public:
  Date now() const override { return instant; }
  Date instant = Date::distantFuture();
};

// An answer of `tokens` input tokens; without response id when that is empty.
inline std::string answer(const std::string& responseID, std::int64_t tokens,
                          const std::string& timestamp = "1700000000000") {
  return R"({"type":"message","id":"x","message":{"role":"assistant","usage":{"input":)" + std::to_string(tokens) +
         "}" + (timestamp.empty() ? "" : R"(,"timestamp":)" + timestamp) +
         (responseID.empty() ? "" : R"(,"responseId":")" + responseID + "\"") + "}}";
}

inline std::string jsonText(const std::string& text) {
  std::string quoted = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') quoted += '\\';
    quoted += c;
  }
  return quoted + "\"";
}

inline std::string coldEvent(const std::string& event, bool nested = true) {
  const std::string fields = R"("seq":1,"event_json":)" + jsonText(event) + R"(,"created_at":1700000000000)";
  return nested ? R"({"kind":"event","row":{)" + fields + "}}\n" : R"({"kind":"event",)" + fields + "}\n";
}

inline constexpr const char* coldHeader = R"({"kind":"header","version":1,"sessionId":"s","generation":"g"})"
                                          "\n";

inline std::string hexDigest(const std::string& bytes) {
  CryptoSha256 sha256;
  const auto digest = sha256.begin();
  digest->append(bytes);
  const auto value = digest->finish().value();
  std::string text;
  for (const auto byte : value) {
    char digits[3];
    std::snprintf(digits, sizeof(digits), "%02x", byte);
    text += digits;
  }
  return text;
}

// One agent "main" below a scan root, and the adapter that reads it.
class OpenClawTest : public ::testing::Test {
 protected:
  std::filesystem::path writeSession(const std::string& name, const std::string& bytes) {
    return folder.write("main/sessions/" + name, bytes);
  }

  // Tokens by session.
  std::map<std::string, std::int64_t> scan(Date since = Date::distantPast()) { return scanWith(adapter, since); }
  std::map<std::string, std::int64_t> scanWith(OpenClawUsageAdapter& reader, Date since = Date::distantPast()) {
    std::map<std::string, std::int64_t> totals;
    for (const auto& session : reader.sessions(folder.path(), since))
      totals[session.id] = session.metrics().totalTokens;
    return totals;
  }

  using Totals = std::map<std::string, std::int64_t>;

  TemporaryDirectory folder;
  CountingOpener opener;
  CryptoSha256 sha256;
  SetClock clock;
  OpenClawUsageAdapter adapter{opener, sha256, clock};
};

}  // namespace quillmeter::test
