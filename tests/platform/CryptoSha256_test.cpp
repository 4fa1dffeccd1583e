#include "platform/linux/CryptoSha256.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>

namespace quillmeter {
namespace {

std::string hexDigest(std::initializer_list<std::string_view> pieces) {
  CryptoSha256 sha256;
  const auto digest = sha256.begin();
  for (const std::string_view piece : pieces) digest->append(piece);
  const auto bytes = digest->finish();
  EXPECT_FALSE(digest->finish().has_value()) << "a digest is finished once";
  std::string text;
  for (const auto byte : bytes.value()) {
    char digits[3];
    std::snprintf(digits, sizeof(digits), "%02x", byte);
    text += digits;
  }
  return text;
}

// The examples of FIPS 180-4.
TEST(CryptoSha256, digestsPiecesAsOneText) {
  EXPECT_EQ(hexDigest({}), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(hexDigest({"abc"}), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_EQ(hexDigest({"a", "", "bc"}), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_EQ(hexDigest({std::string(500'000, 'a'), std::string(500'000, 'a')}),
            "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

}  // namespace
}  // namespace quillmeter
