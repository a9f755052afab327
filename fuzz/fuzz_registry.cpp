// The registry's file: what is understood of it, written again, says the same.
#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "registry_file.h"

namespace {

using namespace quillon::platform;

bool isSame(const RegistryKey& a, const RegistryKey& b) {
  const auto hasSameData = [](const auto& x, const auto& y) {
    return x.first == y.first && x.second.type == y.second.type && x.second.data == y.second.data;
  };
  const auto isSameBelow = [](const auto& x, const auto& y) {
    return x.first == y.first && isSame(x.second, y.second);
  };
  return std::equal(a.values.begin(), a.values.end(), b.values.begin(), b.values.end(),
                    hasSameData) &&
         std::equal(a.subkeys.begin(), a.subkeys.end(), b.subkeys.begin(), b.subkeys.end(),
                    isSameBelow);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  RegistryDocument document = parseRegistry(bytes);
  if (document.damaged) return 0;  // such a file is never written
  // Predefined keys are always there: an empty one is not written.
  std::erase_if(document.roots.subkeys, [](const auto& root) {
    return root.second.values.empty() && root.second.subkeys.empty();
  });
  const RegistryDocument again = parseRegistry(writeRegistry(document));
  if (again.damaged || !isSame(document.roots, again.roots)) std::abort();
  return 0;
}
