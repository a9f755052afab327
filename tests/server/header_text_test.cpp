// LoadHeaderTextFromFile: what it answers, in which order it fails, and what it prepares.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "dicom/dict.h"
#include "foundation/com_base.h"
#include "foundation/com_values.h"
#include "platform/xml.h"
#include "server/media_object/media_rw.h"
#include "support/com_class.h"
#include "support/object_maker.h"
#include "support/temp_dir.h"
#ifndef _WIN32
#include "support/http_server.h"
#endif

namespace quillon::test {
namespace {

constexpr const char* kNamesOnly =
    "<xsl:stylesheet version='1.0' xmlns:xsl='http://www.w3.org/1999/XSL/Transform'>"
    "<xsl:output method='text'/><xsl:template match='/'>"
    "<xsl:value-of select=\"//tag[@grp='0010' and @element='0010']\"/>"
    "</xsl:template></xsl:stylesheet>";

class HeaderText : public ::testing::Test {
 protected:
  HeaderText() {
    ObjectDescription object;
    object.patientName = "DOE^J\xC4NE";
    makeObjectFile(dir_ / "object.dcm", object);
    writeText(dir_ / "names.xsl", kNamesOnly);
  }

  [[nodiscard]] std::string path(std::string_view name) const { return (dir_ / name).string(); }

  // What the host gets, or "<null>".
  std::string load(const std::string& file, const std::string& stylesheet) {
    const ScopedBstr fileName(WidenText(file, CP_UTF8));
    const ScopedBstr location(WidenText(stylesheet, CP_UTF8));
    ScopedBstr header;
    answer_ = media_.LoadHeaderTextFromFile(fileName.Get(), location.Get(), header.Put());
    return header.Get() == nullptr ? "<null>" : NarrowText(header.View(), CP_UTF8);
  }
  LONG result() {
    LONG value = 77;
    media_.get_Result(&value);
    return value;
  }
  std::string error() {
    ScopedBstr text;
    media_.get_ErrMessageText(text.Put());
    return NarrowText(text.View(), CP_UTF8);
  }

  TempDir dir_;
  CQuillonMediaRW media_;
  HRESULT answer_ = E_FAIL;
};

TEST_F(HeaderText, IsTheTransformedXmlOfTheFile) {
  std::vector<std::string> locations{path("names.xsl")};
#ifndef _WIN32
  HttpServer server({{200, {}, kNamesOnly, HttpAnswer::Ending::Whole}});
  locations.push_back(server.url("/names.xsl"));
#endif
  for (const std::string& location : locations) {
    SCOPED_TRACE(location);
    EXPECT_EQ(load(path("object.dcm"), location), "DOE^J\u00C4NE");
    EXPECT_EQ(answer_, S_OK);
    EXPECT_EQ(result(), S_OK);
    EXPECT_EQ(error(), "");
  }
}

TEST_F(HeaderText, FailsInTheOrderOfItsSteps) {
  writeText(dir_ / "no.dcm", "no DICOM");
  writeText(dir_ / "short.dcm", "nothing");
  writeText(dir_ / "no.xsl", "no XML");
  writeText(dir_ / "nothing.xsl",
            "<x:stylesheet version='1.0' xmlns:x='http://www.w3.org/1999/XSL/Transform'>"
            "<x:output method='text'/><x:template match='/'/></x:stylesheet>");
  const auto readFailure = [this](const char* name) {
    return "Cannot read the DICOM information from " + path(name) + ".";
  };
  struct {
    const char* what;
    std::string file;
    std::string stylesheet;
    std::string sentence;  // none: the parser's own, which is not empty
  } const cases[] = {
      {"file before stylesheet", path("missing.dcm"), path("missing.xsl"),
       readFailure("missing.dcm")},
      {"no DICOM", path("no.dcm"), path("names.xsl"), readFailure("no.dcm")},
      {"too short for an element", path("short.dcm"), path("names.xsl"), readFailure("short.dcm")},
      {"no stylesheet", path("object.dcm"), path("missing.xsl"), ""},
      {"a stylesheet that is no XML", path("object.dcm"), path("no.xsl"), ""},
      {"an URL that nobody serves", path("object.dcm"), "http://127.0.0.1:9/names.xsl", ""},
      {"an empty result", path("object.dcm"), path("nothing.xsl"),
       "Cannot retrieve the DICOM header information from \"" + path("object.dcm") + ".\""},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    ASSERT_EQ(load(path("object.dcm"), path("names.xsl")), "DOE^J\u00C4NE");
    EXPECT_EQ(load(c.file, c.stylesheet), "<null>");
    EXPECT_EQ(answer_, S_OK);
    EXPECT_EQ(result(), S_FALSE);
    if (c.sentence.empty()) {
      EXPECT_FALSE(error().empty());
      EXPECT_EQ(error().find("Cannot read the DICOM"), std::string::npos);
    } else {
      EXPECT_EQ(error(), c.sentence);
    }
  }
}

TEST_F(HeaderText, RefusesMissingArgumentsAndChangesNothingElse) {
  ScopedBstr empty{TextView()};
  const ScopedBstr file(WidenText(path("object.dcm"), CP_UTF8));
  const ScopedBstr sheet(WidenText(path("names.xsl"), CP_UTF8));
  struct {
    const char* what;
    BSTR file;
    BSTR sheet;
    bool hasOut;
  } const cases[] = {
      {"null file", nullptr, sheet.Get(), true},
      {"empty file", empty.Get(), sheet.Get(), true},
      {"null stylesheet", file.Get(), nullptr, true},
      {"empty stylesheet", file.Get(), empty.Get(), true},
      {"null out", file.Get(), sheet.Get(), false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    // Result is not reset: it still tells of the failure before.
    EXPECT_EQ(load(path("missing.dcm"), path("names.xsl")), "<null>");
    OLECHAR mark = 0;
    BSTR out = &mark;
    EXPECT_EQ(media_.LoadHeaderTextFromFile(c.file, c.sheet, c.hasOut ? &out : nullptr), S_FALSE);
    EXPECT_EQ(out, &mark);
    EXPECT_EQ(result(), S_FALSE);
    EXPECT_EQ(error(), "One or more arguments are invalid.");
  }
}

// Whatever the XML library throws: the host gets an answer.
TEST_F(HeaderText, NeedsTheXmlLibrary) {
  const CComBase apartment;
  const HiddenClass hidden(kClsidDomDocument);
  EXPECT_EQ(load(path("object.dcm"), path("names.xsl")), "<null>");
  EXPECT_EQ(answer_, S_OK);
  EXPECT_EQ(result(), S_FALSE);
  EXPECT_TRUE(error().starts_with(
      "CXmlDocument::SetCurrentXMLDocument - Cannot set the current XML document"));
}

TEST_F(HeaderText, PreparesTheToolkitOnce) {
  static_cast<void>(dcSetValueChecking(true));
  ASSERT_EQ(load(path("object.dcm"), path("names.xsl")), "DOE^J\u00C4NE");
  EXPECT_FALSE(dcValueChecking());
  struct {
    const char* uid;
    const char* description;
    DcUidKind kind;
  } const uids[] = {
      {"1.2.392.876543.9125.1.1.2", "Private Image Storage", DcUidKind::SopClassAdded},
      {"1.2.840.987654.1.2.1", "Tarn Private Wavelet Compression", DcUidKind::TransferSyntax},
  };
  for (const auto& c : uids) {
    SCOPED_TRACE(c.uid);
    DcUid id = DcUid::None;
    std::string description;
    DcUidKind kind = DcUidKind::Other;
    EXPECT_EQ(theDictionary().getUidDef(c.uid, &id), kDcOk);
    EXPECT_EQ(theDictionary().getDesc(id, &description), kDcOk);
    EXPECT_EQ(description, c.description);
    EXPECT_EQ(theDictionary().getUidType(id, &kind), kDcOk);
    EXPECT_EQ(kind, c.kind);
  }
  // The first call of an object prepares, no later one. Objects that are made switch it off as
  // well.
  CQuillonMediaRW another;
  static_cast<void>(dcSetValueChecking(true));
  ASSERT_EQ(load(path("object.dcm"), path("names.xsl")), "DOE^J\u00C4NE");
  EXPECT_TRUE(dcValueChecking());
  const ScopedBstr file(WidenText(path("object.dcm"), CP_UTF8));
  const ScopedBstr sheet(WidenText(path("names.xsl"), CP_UTF8));
  ScopedBstr header;
  EXPECT_EQ(another.LoadHeaderTextFromFile(file.Get(), sheet.Get(), header.Put()), S_OK);
  EXPECT_FALSE(dcValueChecking());
  static_cast<void>(dcSetValueChecking(true));
}

// Missing and malformed attributes of an image do not keep its header from being read.
TEST_F(HeaderText, IsThereForObjectsThatCouldNotBeAdded) {
  writeBytes(dir_ / "bare.dcm", dicomFile(DataSetBytes().text(0x00100010, "PN", "BARE").take(), "",
                                          "", kExplicitLittleUid));
  EXPECT_EQ(load(path("bare.dcm"), path("names.xsl")), "BARE") << error();
}

}  // namespace
}  // namespace quillon::test
