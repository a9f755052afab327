// The SHA-256 of bytes that come in pieces.
#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace quillon {

class Sha256 {
 public:
  Sha256();
  ~Sha256();
  Sha256(const Sha256&) = delete;
  Sha256& operator=(const Sha256&) = delete;

  void Update(const void* bytes, std::size_t count);
  // 64 lower-case hexadecimal digits; empty when the library is not there or has failed, without
  // memory or because it is not allowed to compute this sum. Afterwards the object is at a new
  // beginning.
  [[nodiscard]] std::string Finish();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

// Linux only. The version of OpenSSL's libcrypto ("3.0.15"), which it loads; empty where it cannot
// be loaded.
std::string digestLibraryVersion();

}  // namespace quillon
