// The versions of the libraries that XML and HTTP stand on, for a program that loads them when it
// needs them (on_demand/). It loads them all.
#pragma once

#include <string>

namespace quillon::platform {

// "2.9.14"; empty where it cannot be loaded.
struct XmlLibraryVersions {
  std::string libxml2;
  std::string libxslt;
  std::string libcurl;
};
XmlLibraryVersions xmlLibraryVersions();

}  // namespace quillon::platform
