#include "platform/sha256.h"

#include <dlfcn.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/opensslv.h>

#include <array>
#include <type_traits>

namespace quillon {

namespace {

// libcrypto, loaded with the first sum: to load it takes a program half as long again as to start
// without it, and few of them compute a sum.
struct Library {
  decltype(&EVP_MD_CTX_new) newContext = nullptr;
  decltype(&EVP_MD_CTX_free) freeContext = nullptr;
  decltype(&EVP_sha256) sha256 = nullptr;
  decltype(&EVP_DigestInit_ex) begin = nullptr;
  decltype(&EVP_DigestUpdate) update = nullptr;
  decltype(&EVP_DigestFinal_ex) finish = nullptr;
  decltype(&OpenSSL_version) version = nullptr;
  bool isLoaded = false;

  Library() {
    constexpr const char* kName = "libcrypto.so." OPENSSL_MSTR(OPENSSL_SHLIB_VERSION);
    // Never unloaded: it keeps functions of its own for the end of the process.
    void* const library = dlopen(kName, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) return;
    const auto find = [library](const char* name, auto& function) {
      function =
          reinterpret_cast<std::remove_reference_t<decltype(function)>>(dlsym(library, name));
      return function != nullptr;
    };
    isLoaded = find("EVP_MD_CTX_new", newContext) && find("EVP_MD_CTX_free", freeContext) &&
               find("EVP_sha256", sha256) && find("EVP_DigestInit_ex", begin) &&
               find("EVP_DigestUpdate", update) && find("EVP_DigestFinal_ex", finish) &&
               find("OpenSSL_version", version);
  }
};

const Library& theLibrary() {
  static const Library library;
  return library;
}

}  // namespace

struct Sha256::State {
  const Library& library = theLibrary();
  EVP_MD_CTX* context = library.isLoaded ? library.newContext() : nullptr;
  bool hasFailed = false;

  State() { begin(); }
  ~State() {
    if (context != nullptr) library.freeContext(context);
  }
  State(const State&) = delete;
  State& operator=(const State&) = delete;

  void begin() {
    hasFailed = context == nullptr || library.begin(context, library.sha256(), nullptr) != 1;
  }
};

Sha256::Sha256() : state_(std::make_unique<State>()) {}
Sha256::~Sha256() = default;

void Sha256::Update(const void* bytes, std::size_t count) {
  if (state_->hasFailed) return;
  state_->hasFailed = state_->library.update(state_->context, bytes, count) != 1;
}

std::string Sha256::Finish() {
  std::array<unsigned char, EVP_MAX_MD_SIZE> sum{};
  unsigned sumBytes = 0;
  const bool isDone =
      !state_->hasFailed && state_->library.finish(state_->context, sum.data(), &sumBytes) == 1;
  std::string hex;
  for (unsigned i = 0; isDone && i < sumBytes; ++i) {
    constexpr const char* kDigits = "0123456789abcdef";
    hex += kDigits[sum[i] >> 4];
    hex += kDigits[sum[i] & 15];
  }
  state_->begin();
  return hex;
}

std::string digestLibraryVersion() {
  const Library& library = theLibrary();
  return library.isLoaded ? library.version(OPENSSL_VERSION_STRING) : std::string();
}

}  // namespace quillon
