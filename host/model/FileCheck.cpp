#include "host/model/FileCheck.h"

#include <cstdint>
#include <fstream>
#include <sstream>

namespace qv::host {
namespace {

namespace fs = std::filesystem;

// The Object File Format: a word ending in OFF, the number of vertices, then of faces; each of them
// takes two bytes at the very least.
bool PromisesTooMuch(std::istream& file, std::uintmax_t size) {
  std::string word;
  if (!(file >> word) || word.size() < 3 || word.size() > 8 ||
      word.compare(word.size() - 3, 3, "OFF") != 0) {
    return false;
  }
  std::string vertices;
  std::string faces;
  if (!(file >> vertices >> faces)) return false;
  const auto exceeds = [&](const std::string& count) {
    if (count.find_first_not_of("0123456789") != std::string::npos) return false;
    return count.size() > 18 || std::stoull(count) > size / 2;
  };
  return exceeds(vertices) || exceeds(faces);
}

}  // namespace

std::optional<std::string> WhyNotReadable(const fs::path& path) {
  std::error_code error;
  const fs::file_status status = fs::status(path, error);
  if (status.type() == fs::file_type::not_found) return "there is no such file";
  if (error) return error.message();
  if (fs::is_directory(status)) return "it is a folder";
  if (!fs::is_regular_file(status)) return "it is no regular file";
  const std::uintmax_t size = fs::file_size(path, error);
  if (error) return error.message();
  if (size == 0) return "it is empty";
  std::ifstream file(path, std::ios::binary);
  if (!file) return "it can't be opened";
  if (PromisesTooMuch(file, size)) return "its header promises more than the file holds";
  return std::nullopt;
}

}  // namespace qv::host
