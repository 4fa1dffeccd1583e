#pragma once

#include "platform/Sha256.h"

namespace quillmeter {

// SHA-256 by libcrypto, which picks the processor's own instructions.
class CryptoSha256 final : public Sha256 {
 public:
  std::unique_ptr<Sha256Digest> begin() override;
};

}  // namespace quillmeter
