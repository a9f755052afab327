// The stylesheets that make the pages of a medium: those that ship, which are part of the program
// and the server so that every host has them, or a host's own.
#pragma once

#include <string>

#include "dicomobjects/xml_document.h"
#include "foundation/base_item.h"

namespace quillon {

// In a host's directory: what is missing there is the one that ships.
inline constexpr const OLECHAR* kPageStylesheetName = OLESTR("pages.xsl");
inline constexpr const OLECHAR* kHeaderStylesheetName = OLESTR("html.xsl");
inline constexpr const OLECHAR* kPageStyleSourceName = OLESTR("pages.css");

class PageStylesheets : public CBaseItem {
 public:
  PageStylesheets();

  // Empty: those that ship. False, with a sentence, for a directory that has none of the three, and
  // for one that cannot be read or is no XML.
  [[nodiscard]] bool Load(const Text& directory);

  // Each makes a page of its XML, in UTF-8. False, with a sentence, when that fails or makes
  // nothing.
  [[nodiscard]] bool RenderPage(const Text& xml, std::string& page);
  [[nodiscard]] bool RenderHeader(const Text& xml, std::string& page);
  // The style that all pages share.
  [[nodiscard]] const std::string& Style() const { return style_; }

 private:
  struct Stylesheet {
    Text location;  // empty: it ships
    CXmlDocument document;
  };
  [[nodiscard]] bool LoadOne(const Text& directory, const OLECHAR* name, const char* shipped,
                             Stylesheet& stylesheet, bool& isFound);
  [[nodiscard]] bool LoadStyle(const Text& directory, bool& isFound);
  [[nodiscard]] bool Render(const Stylesheet& stylesheet, const Text& xml, std::string& page);
  [[nodiscard]] bool FailAt(const Text& location, TextView reason);

  Stylesheet pages_;
  Stylesheet header_;
  std::string style_;
};

}  // namespace quillon
