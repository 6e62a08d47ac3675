#include "host/model/TextureFinder.h"

#include <algorithm>
#include <cctype>
#include <vector>

#include "platform/PathText.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;

// Limits of the search for a file by its last part alone.
constexpr int kMaximumDepth = 4;
constexpr std::size_t kMaximumFiles = 20000;

std::string Lower(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return text;
}

bool IsFile(const fs::path& path) {
  std::error_code error;
  return fs::is_regular_file(path, error);
}

int HexDigit(char c) {
  if (c >= '0' && c <= '9') return c - '0';
  const char lower = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

std::string PercentDecoded(const std::string& text) {
  std::string decoded;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const int high = text[i] == '%' && i + 2 < text.size() ? HexDigit(text[i + 1]) : -1;
    const int low = high >= 0 ? HexDigit(text[i + 2]) : -1;
    if (low >= 0) {
      decoded += static_cast<char>(high * 16 + low);
      i += 2;
    } else {
      decoded += text[i];
    }
  }
  return decoded;
}

// Without quotes, blanks and the scheme of a file address, with forward slashes.
std::string Cleaned(std::string name) {
  const char* const around = " \t\r\n\"";
  const auto first = name.find_first_not_of(around);
  if (first == std::string::npos) return "";
  name = name.substr(first, name.find_last_not_of(around) - first + 1);
  name = name.substr(0, name.find('"'));  // the first of several in quotes
  std::replace(name.begin(), name.end(), '\\', '/');
  const std::string scheme = "file://";
  if (Lower(name.substr(0, scheme.size())) == scheme) name = name.substr(scheme.size());
  return name;
}

std::vector<std::string> PartsOf(const std::string& name) {
  std::vector<std::string> parts;
  std::string part;
  for (const char c : name + '/') {
    if (c != '/') {
      part += c;
    } else if (!part.empty()) {
      if (part != ".") parts.push_back(part);
      part.clear();
    }
  }
  return parts;
}

// An entry of a folder whatever the case of its letters.
std::optional<fs::path> Entry(const fs::path& folder, const std::string& name) {
  std::error_code error;
  fs::path asNamed = folder / platform::PathFromUtf8(name);
  if (fs::exists(asNamed, error)) return asNamed;
  const std::string lower = Lower(name);
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    if (Lower(platform::Utf8FromPath(entry->path().filename())) == lower) return entry->path();
  }
  return std::nullopt;
}

std::optional<fs::path> FileBelow(fs::path folder, const std::vector<std::string>& parts,
                                  std::size_t firstPart) {
  for (std::size_t i = firstPart; i < parts.size(); ++i) {
    auto next = Entry(folder, parts[i]);
    if (!next) return std::nullopt;
    folder = std::move(*next);
  }
  if (!IsFile(folder)) return std::nullopt;
  return folder.lexically_normal();
}

}  // namespace

std::optional<fs::path> TextureFinder::Find(const std::string& name) {
  const std::string cleaned = Cleaned(name);
  if (auto found = FindCleaned(cleaned)) return found;
  const std::string decoded = PercentDecoded(cleaned);
  return decoded == cleaned ? std::nullopt : FindCleaned(decoded);
}

std::optional<fs::path> TextureFinder::FindCleaned(const std::string& name) {
  const std::vector<std::string> parts = PartsOf(name);
  if (parts.empty()) return std::nullopt;
  const fs::path whole = platform::PathFromUtf8(name);
  if (whole.is_absolute() && IsFile(whole)) return whole.lexically_normal();
  for (std::size_t first = 0; first < parts.size(); ++first) {
    if (auto found = FileBelow(directory_, parts, first)) return found;
  }
  return FindByLastPart(parts.back());
}

std::optional<fs::path> TextureFinder::FindByLastPart(const std::string& name) {
  if (!listed_) {
    listed_ = true;
    ListFolder(directory_, 0);
    for (const char* beside : {"textures", "texture", "maps", "images"}) {
      if (const auto folder = Entry(directory_.parent_path(), beside)) ListFolder(*folder, 0);
    }
  }
  const auto found = fileOfName_.find(Lower(name));
  if (found == fileOfName_.end()) return std::nullopt;
  return found->second;
}

// Nearer files come first and are kept.
void TextureFinder::ListFolder(const fs::path& folder, int depth) {
  std::vector<fs::path> folders;
  std::error_code error;
  for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
       entry.increment(error)) {
    if (fileOfName_.size() >= kMaximumFiles) return;
    std::error_code ignored;
    if (entry->is_directory(ignored)) {
      if (!entry->is_symlink(ignored)) folders.push_back(entry->path());
    } else {
      fileOfName_.try_emplace(Lower(platform::Utf8FromPath(entry->path().filename())),
                              entry->path());
    }
  }
  std::sort(folders.begin(), folders.end());
  if (depth == kMaximumDepth) return;
  for (const fs::path& below : folders) ListFolder(below, depth + 1);
}

}  // namespace qv::host
