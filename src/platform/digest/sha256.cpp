#include "platform/sha256.h"

#include <openssl/evp.h>

#include <array>

namespace quillon {

struct Sha256::State {
  EVP_MD_CTX* context = EVP_MD_CTX_new();
  bool hasFailed = false;

  State() { begin(); }
  ~State() { EVP_MD_CTX_free(context); }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  void begin() {
    hasFailed = context == nullptr || EVP_DigestInit_ex(context, EVP_sha256(), nullptr) != 1;
  }
};

Sha256::Sha256() : state_(std::make_unique<State>()) {}
Sha256::~Sha256() = default;

void Sha256::Update(const void* bytes, std::size_t count) {
  if (state_->hasFailed) return;
  state_->hasFailed = EVP_DigestUpdate(state_->context, bytes, count) != 1;
}

std::string Sha256::Finish() {
  std::array<unsigned char, EVP_MAX_MD_SIZE> sum{};
  unsigned sumBytes = 0;
  const bool isDone =
      !state_->hasFailed && EVP_DigestFinal_ex(state_->context, sum.data(), &sumBytes) == 1;
  std::string hex;
  for (unsigned i = 0; isDone && i < sumBytes; ++i) {
    constexpr const char* kDigits = "0123456789abcdef";
    hex += kDigits[sum[i] >> 4];
    hex += kDigits[sum[i] & 15];
  }
  state_->begin();
  return hex;
}

}  // namespace quillon
