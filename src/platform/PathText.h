#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace qv::platform {

// Paths and text are turned into each other by these alone: what std::filesystem makes of narrow
// text on Windows depends on the C locale, which is not UTF-8 there. On Linux names are bytes and
// stay as they are. What means nothing in its encoding becomes a replacement character. Any thread.

// The path that a text in UTF-8 names.
std::filesystem::path PathFromUtf8(std::string_view text);

// The text of a path, for people and for libraries that take UTF-8.
std::string Utf8FromPath(const std::filesystem::path& path);

// The path that a variable of the environment holds; empty if there is none of that name.
std::filesystem::path PathFromEnvironment(const char* name);

}  // namespace qv::platform
