#include <dlfcn.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <system_error>
#include <utility>

#include "commands.h"
#include "foundation/text.h"
#include "platform/services.h"
#include "result_output.h"
#include "win32/own_library.h"

namespace quillon::cli {

namespace {

namespace fs = std::filesystem;

constexpr const char* kLibrary = "libQuillonMediaRW.so";

constexpr const char* kFooter =
    R"(The registry is a text file: $QUILLON_REGISTRY, else $XDG_CONFIG_HOME/quillon/registry.reg, else
/etc/quillon/registry.reg.

Exit status: 0 done, 1 the job failed, 2 wrong usage.)";

struct Verb {
  const char* name;
  const char* exportName;
  const char* description;
};
constexpr Verb kRegister{"register", "DllRegisterServer",
                         "Registers the COM server for hosts that ask for it by its class"};
constexpr Verb kUnregister{"unregister", "DllUnregisterServer",
                           "Removes what register wrote into the registry"};

struct Options {
  std::string library;
  bool isJson = false;
};

std::string systemText(HRESULT hr) {
  std::array<OLECHAR, 256> buffer{};
  const DWORD length = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS,
                                      nullptr, static_cast<DWORD>(hr), 0, buffer.data(),
                                      static_cast<DWORD>(buffer.size()), nullptr);
  std::string text = NarrowText({buffer.data(), length}, FileSystemCodePage());
  while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) text.pop_back();
  if (!text.empty()) return text;
  std::array<char, 32> code{};
  std::snprintf(code.data(), code.size(), "code 0x%08X.", static_cast<unsigned>(hr));
  return code.data();
}

// Lets the library register itself: it knows its classes, and its path goes into the registry.
Outcome runExport(const Verb& verb, const std::string& given, fs::path& library) {
  std::error_code error;
  library =
      given.empty() ? fs::path(platform::ownLibraryPath(kLibrary)) : fs::absolute(given, error);
  if (library.empty()) {
    return std::string("Cannot ") + verb.name + ": there is no " + kLibrary +
           " of this installation (package libquillon-media0).";
  }
  const std::string what = std::string("Cannot ") + verb.name + " " + library.string() + ": ";
  void* const module = ::dlopen(library.c_str(), RTLD_NOW | RTLD_LOCAL);
  if (module == nullptr) return what + ::dlerror() + ".";
  const auto run = reinterpret_cast<HRESULT (*)()>(::dlsym(module, verb.exportName));
  if (run == nullptr) return what + "it is not a COM server.";
  const HRESULT hr = run();
  if (FAILED(hr)) return what + systemText(hr);
  return {};
}

void addCommand(CLI::App& program, const Verb& verb, int& exitStatus) {
  CLI::App* const command = program.add_subcommand(verb.name, verb.description);
  command->footer(kFooter);
  const auto options = std::make_shared<Options>();
  command->add_option("LIBRARY", options->library,
                      "The server (default: the one installed with the program)");
  addJsonOption(*command, options->isJson);
  command->callback([&verb, options, &exitStatus] {
    fs::path library;
    const Outcome outcome = runExport(verb, options->library, library);
    Json object;
    object["library"] = textOrNull(library.string());
    exitStatus = finish(
        Output::asItIs(options->isJson ? jsonObject(std::move(object), outcome) : ""), outcome, {});
  });
}

}  // namespace

void addRegisterCommands(CLI::App& program, int& exitStatus) {
  addCommand(program, kRegister, exitStatus);
  addCommand(program, kUnregister, exitStatus);
}

}  // namespace quillon::cli
