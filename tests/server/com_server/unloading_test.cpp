// The library that hosts load, in a host that uses the same XML library.
#include <libxml/parser.h>

#include <cstdlib>

#include "com_test_tools.h"
#include "foundation/com_values.h"
#include "platform/com.h"
#include "support/object_maker.h"
#include "support/temp_dir.h"
#include "support/text.h"

namespace quillon::test {
namespace {

constexpr const char* kSheet =
    "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
    "<xsl:output method='text'/><xsl:template match='/'>a header</xsl:template></xsl:stylesheet>";

std::string headerThroughServer(const TempDir& dir) {
  ComPtr<IQuillonMediaRW> media;
  EXPECT_EQ(CoCreateInstance(CLSID_QuillonMediaRW, nullptr, CLSCTX_INPROC_SERVER,
                             IID_IQuillonMediaRW, media.PutVoid()),
            S_OK);
  if (media == nullptr) return {};
  const ScopedBstr file(WideOf(dir / "object.dcm"));
  const ScopedBstr sheet(WideOf(dir / "sheet.xsl"));
  ScopedBstr header;
  EXPECT_EQ(media->LoadHeaderTextFromFile(file.Get(), sheet.Get(), header.Put()), S_OK);
  return Plain(header.View());
}

TEST(Library, LeavesAHostItsXmlLibraryWhenNobodyUsesItAnyMore) {
  const TempDir dir;
  makeObjectFile(dir / "object.dcm", {});
  writeText(dir / "sheet.xsl", kSheet);
  writeText(dir / "registry.reg",
            "Windows Registry Editor Version 5.00\n\n"
            "[HKEY_CLASSES_ROOT\\CLSID\\{CEBD10F1-26E1-4807-A72F-F5C5AC05BF61}\\InprocServer32]\n"
            "@=\"" QUILLON_LIBRARY "\"\n");
  ::setenv("QUILLON_REGISTRY", (dir / "registry.reg").c_str(), 1);
  CoInitialize(nullptr);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(headerThroughServer(dir), "a header");
    CoFreeUnusedLibraries();
    constexpr std::string_view kXml = "<!DOCTYPE a [<!ENTITY e 'text'>]><a b='c'>&e;</a>";
    xmlDoc* const document = xmlReadMemory(kXml.data(), static_cast<int>(kXml.size()), nullptr,
                                           nullptr, XML_PARSE_NOENT);
    EXPECT_NE(document, nullptr);
    xmlFreeDoc(document);
    // The place of a loader of further documents is one for the whole process, too.
    EXPECT_EQ(
        xmlReadFile((dir / "none.xml").c_str(), nullptr, XML_PARSE_NOERROR | XML_PARSE_NOWARNING),
        nullptr);
  }
  CoUninitialize();
  ::unsetenv("QUILLON_REGISTRY");
}

}  // namespace
}  // namespace quillon::test
