// com_client: drives the server as a host does, by a script, and prints what comes back in a form
// that is the same on both systems.
//
//   com_client SCRIPT [NAME=TEXT ...]
//
// Lines of a script (NAME is an operation, texts stand in quotation marks, $NAME is replaced):
//   create PROGID         by ProgID through CoCreateInstance, as IDispatch
//   create {CLSID}        by class identifier, as the interface
//   get|put|call NAME ... by name through IDispatch; eget|eput|ecall through the vtable
//   release               gives the object back
//   module PATH           loads the server as a library, for: class {CLSID}, lock, unlock, unload,
//                         aggregate, register, unregister
//   free                  CoFreeUnusedLibraries
//   registry              what registration wrote
//   typelib PATH, table   the operations by the type library, and by the client's own table
#include <cstdio>
#include <fstream>

#include "binding.h"
#include "server_module.h"

namespace quillon::client {
namespace {

class Client {
 public:
  explicit Client(Variables variables) : variables_(std::move(variables)) {}

  // False for a line that is no command.
  bool Run(const std::vector<Token>& line) {
    const std::string& command = line[0].text;
    const std::string argument = line.size() > 1 ? line[1].text : "";
    if (command == "create") return Create(argument);
    if (command == "module") return Tell(command, module_.Load(argument) ? "loaded" : "failed");
    if (command == "class") return AskForClass(argument);
    if (command == "lock" || command == "unlock") return Lock(command == "lock");
    if (command == "unload") return Tell(command, shown(module_.CanUnload()));
    if (command == "register") return Tell(command, shown(module_.Register()));
    if (command == "unregister") return Tell(command, shown(module_.Unregister()));
    if (command == "aggregate") return Tell(command, aggregate(module_));
    if (command == "registry") return Print(registryListing());
    if (command == "table") return Print(operationTable());
    if (command == "typelib") return Print(typeLibraryTable(argument));
    if (command == "free") {
      CoFreeUnusedLibraries();
      return Tell(command, "done");
    }
    if (command == "release") {
      early_.Reset();
      late_.Reset();
      return Tell(command, "done");
    }
    return Call(line);
  }

 private:
  static bool Print(const std::string& text) {
    std::fputs(text.c_str(), stdout);
    return true;
  }
  static bool Tell(const std::string& what, const std::string& result) {
    return Print(what + " -> " + result + "\n");
  }

  bool Create(const std::string& name) {
    early_.Reset();
    late_.Reset();
    BSTR wideName = bstrOf(name);
    CLSID clsid{};
    HRESULT hr =
        name[0] == '{' ? CLSIDFromString(wideName, &clsid) : CLSIDFromProgID(wideName, &clsid);
    SysFreeString(wideName);
    if (SUCCEEDED(hr) && name[0] == '{') {
      hr = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IQuillonMediaRW,
                            early_.PutVoid());
      if (SUCCEEDED(hr)) hr = early_.As(IID_IDispatch, late_);
    } else if (SUCCEEDED(hr)) {
      hr = CoCreateInstance(clsid, nullptr, CLSCTX_INPROC_SERVER, IID_IDispatch, late_.PutVoid());
      if (SUCCEEDED(hr)) hr = late_.As(IID_IQuillonMediaRW, early_);
    }
    return Tell("create " + name, shown(hr));
  }

  bool AskForClass(const std::string& text) {
    BSTR wideText = bstrOf(text);
    CLSID clsid{};
    CLSIDFromString(wideText, &clsid);
    SysFreeString(wideText);
    ComPtr<IUnknown> factory;
    const HRESULT hr = module_.ClassObject(clsid, IID_IClassFactory, factory.PutVoid());
    return Tell("class " + text, shown(hr) + (factory ? " given" : " null"));
  }

  bool Lock(bool locks) {
    ComPtr<IClassFactory> factory;
    HRESULT hr = module_.ClassObject(CLSID_QuillonMediaRW, IID_IClassFactory, factory.PutVoid());
    if (SUCCEEDED(hr)) hr = factory->LockServer(locks ? TRUE : FALSE);
    return Tell(locks ? "lock" : "unlock", shown(hr));
  }

  bool Call(const std::vector<Token>& line) {
    std::string verb = line[0].text;
    const bool isEarly = verb[0] == 'e';
    if (isEarly) verb.erase(0, 1);
    if (line.size() < 2 || (verb != "get" && verb != "put" && verb != "call")) return false;
    const Kind kind = verb == "get" ? Kind::Get : verb == "put" ? Kind::Put : Kind::Call;
    const std::vector<Token> arguments(line.begin() + 2, line.end());
    std::string what = line[0].text + " " + line[1].text;
    for (const Token& argument : arguments) {
      what += " " + (argument.isQuoted ? shownText(argument.text, variables_) : argument.text);
    }
    if (!late_ || !early_) return Tell(what, "no object");
    Answer answer;
    if (isEarly) {
      const auto called = callEarly(*early_, kind, line[1], arguments, variables_);
      if (!called) return false;
      answer = *called;
    } else {
      answer = callLate(*late_, kind, line[1], arguments, variables_);
    }
    std::string result = shown(answer.hr);
    if (!answer.value.empty()) result += " " + answer.value;
    return Tell(what, result + State());
  }

  // What the object says of the last operation, read through the vtable.
  std::string State() {
    LONG result = 0;
    early_->get_Result(&result);
    Value text;
    text.Get().vt = VT_BSTR;
    early_->get_ErrMessageText(&text.Get().bstrVal);
    return "\n    Result " + shown(result) + ", " + shownValue(text.Get(), variables_);
  }

  Variables variables_;
  ServerModule module_;
  ComPtr<IDispatch> late_;
  ComPtr<IQuillonMediaRW> early_;
};

int run(int argc, char** argv) {
  Variables variables;
  for (int i = 2; i < argc; ++i) {
    const std::string_view argument = argv[i];
    const std::size_t equals = argument.find('=');
    if (equals == std::string_view::npos) return 2;
    variables.emplace(argument.substr(0, equals), argument.substr(equals + 1));
  }
  std::ifstream script(argv[1]);
  if (!script) return 2;
  Client client(variables);
  std::string line;
  while (std::getline(script, line)) {
    const std::vector<Token> tokens = tokensOf(line, variables);
    if (tokens.empty()) continue;
    if (!client.Run(tokens)) {
      std::fprintf(stderr, "com_client: no command: %s\n", line.c_str());
      return 2;
    }
    std::fflush(stdout);
  }
  return 0;
}

}  // namespace
}  // namespace quillon::client

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  CoInitialize(nullptr);
  const int status = quillon::client::run(argc, argv);
  CoUninitialize();
  return status;
}
