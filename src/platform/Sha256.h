#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

namespace quillmeter {

// Digests bytes as they come by, so that they need not be in memory together.
class Sha256Digest {
 public:
  using Bytes = std::array<std::uint8_t, 32>;

  virtual ~Sha256Digest() = default;
  virtual void append(std::string_view bytes) = 0;
  // Ends the digest; absent when the library refused somewhere on the way.
  virtual std::optional<Bytes> finish() = 0;
};

// The system's SHA-256 (FIPS 180-4).
class Sha256 {
 public:
  virtual ~Sha256() = default;
  // Never null.
  virtual std::unique_ptr<Sha256Digest> begin() = 0;
};

}  // namespace quillmeter
