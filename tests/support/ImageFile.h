#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

namespace qv::test {

// A path for a file of the running test, in a folder of this process that is removed when it ends.
std::string ScratchPath(const std::string& name);

// All bytes of a file; empty if there is none.
std::string ReadBytes(const std::filesystem::path& path);
void WriteBytes(const std::filesystem::path& path, const std::string& bytes);

// Writes red, green, blue, alpha bytes, top row first, as a PNG file with an alpha channel, and
// gives its path.
std::string WritePng(const std::string& name, int width, int height,
                     std::span<const std::uint8_t> rgba);

// The same of one colour.
std::string WritePlainPng(const std::string& name, int width, int height, std::uint8_t r,
                          std::uint8_t g, std::uint8_t b, std::uint8_t a);

}  // namespace qv::test
