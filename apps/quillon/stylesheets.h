// The stylesheets that ship with the program.
#pragma once

#include <string>

namespace quillon::cli {

// The path of a stylesheet that ships with the program when `given` is its short name ("text",
// "html"); otherwise `given`, which is a path or a URL.
std::string stylesheetLocation(const std::string& given);

// Whether `given` names the shipped stylesheet that writes for a terminal.
bool isTextStylesheet(const std::string& given);

// The one that gives the header's own XML back.
std::string xmlStylesheetLocation();

}  // namespace quillon::cli
