#include "platform/sha256.h"

#include <windows.h>

#include <wincrypt.h>

#include <array>

namespace quillon {

namespace {

// CALG_SHA_256: the headers have it for later systems alone.
constexpr ALG_ID kSha256 = ALG_CLASS_HASH | ALG_TYPE_ANY | 12;

}  // namespace

// By the system's provider, which has the sum since the third service pack of Windows XP.
struct Sha256::State {
  HCRYPTPROV provider = 0;
  HCRYPTHASH hash = 0;
  bool hasFailed = false;

  State() {
    if (CryptAcquireContextW(&provider, nullptr, nullptr, PROV_RSA_AES,
                             CRYPT_VERIFYCONTEXT | CRYPT_SILENT) == FALSE) {
      provider = 0;
    }
    begin();
  }
  ~State() {
    end();
    if (provider != 0) CryptReleaseContext(provider, 0);
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  void begin() {
    hasFailed = provider == 0 || CryptCreateHash(provider, kSha256, 0, 0, &hash) == FALSE;
    if (hasFailed) hash = 0;
  }
  void end() {
    if (hash != 0) CryptDestroyHash(hash);
    hash = 0;
  }
};

Sha256::Sha256() : state_(std::make_unique<State>()) {}
Sha256::~Sha256() = default;

void Sha256::Update(const void* bytes, std::size_t count) {
  constexpr std::size_t kMostAtOnce = std::size_t{1} << 30;
  const auto* at = static_cast<const BYTE*>(bytes);
  while (count > 0 && !state_->hasFailed) {
    const std::size_t piece = count < kMostAtOnce ? count : kMostAtOnce;
    state_->hasFailed = CryptHashData(state_->hash, at, static_cast<DWORD>(piece), 0) == FALSE;
    at += piece;
    count -= piece;
  }
}

std::string Sha256::Finish() {
  std::array<BYTE, 32> sum{};
  auto sumBytes = static_cast<DWORD>(sum.size());
  const bool isDone = !state_->hasFailed && CryptGetHashParam(state_->hash, HP_HASHVAL, sum.data(),
                                                              &sumBytes, 0) != FALSE;
  std::string hex;
  for (DWORD i = 0; isDone && i < sumBytes; ++i) {
    constexpr const char* kDigits = "0123456789abcdef";
    hex += kDigits[sum[i] >> 4];
    hex += kDigits[sum[i] & 15];
  }
  state_->end();
  state_->begin();
  return hex;
}

}  // namespace quillon
