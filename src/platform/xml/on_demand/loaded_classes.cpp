// The classes DOMDocument and XMLHTTP for a program that seldom makes one: the libraries that they
// stand on take longer to load than most of what it does, so they come with the first object. Takes
// the place of classes.cpp, by defining the same symbol.
#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <string>

#include "platform/com/class_table.h"
#include "platform/win32.h"
#include "platform/xml.h"
#include "win32/own_library.h"
#include "xml/library_versions.h"

using namespace quillon;
using namespace quillon::platform;

namespace {

// Null when it cannot be loaded.
CreateObject fromLibrary(const char* name) {
  void* const library = openOwnLibrary(name).handle;
  if (library == nullptr) return nullptr;
  return reinterpret_cast<CreateObject>(::dlsym(library, "quillonCreateObject"));
}

HRESULT create(CreateObject creator, REFIID riid, void** object) {
  if (creator != nullptr) return creator(riid, object);
  SetLastError(ERROR_MOD_NOT_FOUND);
  return HRESULT_FROM_WIN32(ERROR_MOD_NOT_FOUND);
}

HRESULT createDom(REFIID riid, void** object) {
  static const CreateObject creator = fromLibrary("libquillon_xml.so");
  return create(creator, riid, object);
}

HRESULT createHttp(REFIID riid, void** object) {
  static const CreateObject creator = fromLibrary("libquillon_http.so");
  return create(creator, riid, object);
}

// A variable of a library that ours brings with it, and a function; empty for none.
std::string textOf(void* library, const char* variable) {
  const void* const found = library == nullptr ? nullptr : ::dlsym(library, variable);
  return found == nullptr ? std::string() : *static_cast<const char* const*>(found);
}
std::string textFrom(void* library, const char* function) {
  void* const found = library == nullptr ? nullptr : ::dlsym(library, function);
  return found == nullptr ? std::string() : reinterpret_cast<const char* (*)()>(found)();
}

// Of "20914", with a build's name behind it or not.
std::string dotted(const std::string& number) {
  const int value = std::atoi(number.c_str());
  if (value == 0) return {};
  return std::to_string(value / 10000) + "." + std::to_string(value / 100 % 100) + "." +
         std::to_string(value % 100);
}

}  // namespace

extern "C" bool quillon_xml_classes;
bool quillon_xml_classes =
    RegisterBuiltInClasses({{kClsidDomDocument, createDom}, {kClsidXmlHttp, createHttp}});

XmlLibraryVersions quillon::platform::xmlLibraryVersions() {
  void* const xml = openOwnLibrary("libquillon_xml.so").handle;
  void* const http = openOwnLibrary("libquillon_http.so").handle;
  // "libcurl/7.88.1 GnuTLS/3.7.9 ..."
  const std::string curl = textFrom(http, "curl_version");
  const std::size_t start = std::min(curl.find('/'), curl.size() - 1) + 1;
  return {dotted(textOf(xml, "xmlParserVersion")), dotted(textOf(xml, "xsltEngineVersion")),
          curl.empty() ? curl : curl.substr(start, curl.find(' ') - start)};
}
