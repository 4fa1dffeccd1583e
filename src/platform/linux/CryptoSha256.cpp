#include "platform/linux/CryptoSha256.h"

#include <openssl/evp.h>

namespace quillmeter {

namespace {

class CryptoSha256Digest final : public Sha256Digest {
 public:
  CryptoSha256Digest() : context_(EVP_MD_CTX_new(), &EVP_MD_CTX_free) {
    usable_ = context_ != nullptr && EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr) == 1;
  }

  void append(std::string_view bytes) override {
    usable_ = usable_ && EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size()) == 1;
  }

  std::optional<Bytes> finish() override {
    Bytes digest{};
    usable_ = usable_ && EVP_DigestFinal_ex(context_.get(), digest.data(), nullptr) == 1;
    if (!usable_) return std::nullopt;
    usable_ = false;
    return digest;
  }

 private:
  std::unique_ptr<EVP_MD_CTX, decltype(&EVP_MD_CTX_free)> context_;
  bool usable_ = false;
};

}  // namespace

std::unique_ptr<Sha256Digest> CryptoSha256::begin() { return std::make_unique<CryptoSha256Digest>(); }

}  // namespace quillmeter
