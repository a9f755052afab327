#include "support/system_sentence.h"

namespace quillon::test {

#ifdef _WIN32
bool runsUnderWine() {
  return GetProcAddress(GetModuleHandleW(L"ntdll"), "wine_get_version") != nullptr;
}

std::string systemSentence(HRESULT code, const std::string& onWindows) {
  if (!runsUnderWine()) return onWindows;
  char text[256];
  const DWORD units =
      FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                     static_cast<DWORD>(code), 0, text, sizeof text, nullptr);
  const std::string sentence(text, units);
  return sentence.substr(0, sentence.find_last_not_of("\r\n") + 1);
}
#else
bool runsUnderWine() { return false; }

std::string systemSentence(HRESULT, const std::string& onWindows) { return onWindows; }
#endif

}  // namespace quillon::test
