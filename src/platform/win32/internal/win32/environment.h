// Where the user's data and settings live, and the making of directories there.
#pragma once

#include <string>

namespace quillon::platform {

std::string environmentValue(const char* name);  // empty when unset
std::string userDataDirectory();                 // $XDG_DATA_HOME, else ~/.local/share
std::string userConfigDirectory();               // $XDG_CONFIG_HOME, else ~/.config
std::string userCacheDirectory();                // $XDG_CACHE_HOME, else ~/.cache
// A directory that only this user can enter, for files that nobody else is to see; empty, with
// errno, when there is none. The one in the user's cache comes first: what XDG_RUNTIME_DIR names
// lies in memory and goes when the user logs out.
std::string ownTemporaryDirectory();
// Makes the directory and those above it; what exists stays. False leaves errno.
bool makeDirectories(const std::string& path);
// Waits until the names in a directory are on the disk.
void syncDirectory(const std::string& path);

}  // namespace quillon::platform
