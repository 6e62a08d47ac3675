#include "host/app/PropertyStore.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <utility>

#include "platform/Clock.h"
#include "platform/Ids.h"
#include "platform/PathText.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr const char* kFormatName = "quorvane properties";
constexpr int kFormatVersion = 1;
constexpr char kHexDigits[] = "0123456789abcdef";

// 64-bit FNV-1a (G. Fowler, L. C. Noll, K.-P. Vo).
std::string HashOf(const std::string& text) {
  std::uint64_t hash = 14695981039346656037ULL;
  for (const char c : text) {
    hash = (hash ^ static_cast<unsigned char>(c)) * 1099511628211ULL;
  }
  std::string digits;
  for (int shift = 60; shift >= 0; shift -= 4) digits += kHexDigits[hash >> shift & 15];
  return digits;
}

std::string HexOf(const PropertyStore::Value& value) {
  std::string hex;
  hex.reserve(2 * value.size());
  for (const std::byte byte : value) {
    hex += kHexDigits[std::to_integer<unsigned>(byte >> 4)];
    hex += kHexDigits[std::to_integer<unsigned>(byte & std::byte{15})];
  }
  return hex;
}

std::optional<PropertyStore::Value> BytesOf(const std::string& hex) {
  if (hex.size() % 2 != 0) return std::nullopt;
  const std::string digits = kHexDigits;
  PropertyStore::Value value;
  value.reserve(hex.size() / 2);
  for (std::size_t i = 0; i < hex.size(); i += 2) {
    const auto high = digits.find(hex[i]);
    const auto low = digits.find(hex[i + 1]);
    if (high == std::string::npos || low == std::string::npos) return std::nullopt;
    value.push_back(static_cast<std::byte>(high << 4 | low));
  }
  return value;
}

std::optional<std::string> WholeFile(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  std::ostringstream text;
  // The insertion of nothing counts as a failure.
  if (file.peek() != std::ifstream::traits_type::eof()) text << file.rdbuf();
  if (!file.is_open() || file.bad() || !text) return std::nullopt;
  return text.str();
}

struct Content {
  std::map<std::string, PropertyStore::Value> values;
  bool later = false;  // of a version that may mean something else
};

// Nothing if the text is no property file.
std::optional<Content> ContentOf(const std::string& text) {
  const json document = json::parse(text, nullptr, false);
  if (!document.is_object() || document.value("format", json()) != kFormatName) return std::nullopt;
  const json version = document.value("version", json());
  if (version.is_number() && version > kFormatVersion) return Content{{}, true};
  if (!document.contains("properties") || !document["properties"].is_object()) return std::nullopt;
  std::map<std::string, PropertyStore::Value> values;
  for (const auto& [name, hex] : document["properties"].items()) {
    auto value = hex.is_string() ? BytesOf(hex.get<std::string>()) : std::nullopt;
    if (!value) return std::nullopt;
    values[name] = std::move(*value);
  }
  return Content{std::move(values), false};
}

// The later-written file first; files that do not exist come last.
std::array<fs::path, 2> NewestFirst(const fs::path& a, const fs::path& b) {
  std::error_code noA;
  std::error_code noB;
  const auto timeA = fs::last_write_time(a, noA);
  const auto timeB = fs::last_write_time(b, noB);
  const bool bFirst = !noB && (noA || timeB > timeA);
  return bFirst ? std::array{b, a} : std::array{a, b};
}

}  // namespace

PropertyStore::PropertyStore(const fs::path& model, const fs::path& userFolder) {
  std::error_code error;
  const fs::path absolute = fs::absolute(model, error).lexically_normal();
  model_ = platform::Utf8FromPath(absolute);
  besideModel_ = absolute;
  besideModel_ += ".quorvane.json";
  if (!userFolder.empty()) {
    inUserFolder_ = userFolder / absolute.filename();
    inUserFolder_ += '-' + HashOf(model_) + ".quorvane.json";
  }
  file_ = besideModel_;
  Refresh();
}

std::optional<PropertyStore::Value> PropertyStore::Get(const std::string& name) const {
  const std::lock_guard lock(mutex_);
  const auto value = values_.find(name);
  if (value == values_.end()) return std::nullopt;
  return value->second;
}

bool PropertyStore::Set(const std::string& name, Value value) {
  const std::lock_guard lock(mutex_);
  Refresh();
  values_[name] = std::move(value);
  unwritten_.insert(name);
  for (const fs::path& file : {besideModel_, inUserFolder_}) {
    if (!file.empty() && Write(file)) {
      file_ = file;
      unwritten_.clear();
      return true;
    }
  }
  return false;
}

fs::path PropertyStore::file() const {
  const std::lock_guard lock(mutex_);
  return file_;
}

std::vector<std::string> PropertyStore::warnings() const {
  const std::lock_guard lock(mutex_);
  return warnings_;
}

void PropertyStore::Refresh() {
  std::error_code error;
  for (const fs::path& file : NewestFirst(besideModel_, inUserFolder_)) {
    if (fs::is_regular_file(file, error) && Read(file)) return;
  }
}

bool PropertyStore::Read(const fs::path& file) {
  const auto text = WholeFile(file);
  if (!text) {
    Warn("The properties in " + platform::Utf8FromPath(file) + " can't be read.");
    return false;
  }
  auto content = ContentOf(*text);
  if (!content || content->later) {
    if (content) {
      SetAside(file, " was written by a later version", ".later");
    } else {
      SetAside(file, " holds no properties", ".broken");
    }
    return false;
  }
  for (auto& [name, value] : content->values) {
    if (unwritten_.count(name) == 0) values_[name] = std::move(value);
  }
  file_ = file;
  return true;
}

void PropertyStore::SetAside(const fs::path& file, const std::string& what,
                             const std::string& suffix) {
  constexpr int kMostKept = 100;
  std::error_code error;
  fs::path kept = file;
  kept += suffix;
  for (int i = 2; fs::exists(kept, error) && i <= kMostKept; ++i) {
    kept = file;
    kept += suffix + std::to_string(i);
  }
  fs::rename(file, kept, error);
  Warn(platform::Utf8FromPath(file) + what +
       (error ? "." : "; it is now " + platform::Utf8FromPath(kept) + "."));
}

void PropertyStore::Warn(const std::string& sentence) {
  if (std::find(warnings_.begin(), warnings_.end(), sentence) != warnings_.end()) return;
  warnings_.push_back(sentence);
}

bool PropertyStore::Write(const fs::path& file) const {
  json properties = json::object();
  for (const auto& [name, value] : values_) properties[name] = HexOf(value);
  const json document = {{"format", kFormatName},
                         {"version", kFormatVersion},
                         {"model", model_},
                         {"properties", properties}};
  std::error_code error;
  if (file == inUserFolder_) fs::create_directories(file.parent_path(), error);
  fs::path fresh = file;
  fresh += '.' + std::to_string(platform::CurrentProcessId()) + ".new";
  std::ofstream text(fresh, std::ios::binary | std::ios::trunc);
  // Names and paths need not be UTF-8.
  text << document.dump(2, ' ', false, json::error_handler_t::replace) << '\n';
  text.close();
  // On Windows a file keeps its place for as long as another program reads it.
  constexpr int kAttempts = 5;
  constexpr unsigned kRetryMilliseconds = 20;
  for (int i = 0; text && i < kAttempts; ++i) {
    if (i > 0) platform::SleepMilliseconds(kRetryMilliseconds);
    fs::rename(fresh, file, error);
    if (!error) return true;
  }
  std::error_code ignored;
  fs::remove(fresh, ignored);
  return false;
}

fs::path UserFolder() {
  const fs::path data = platform::PathFromEnvironment("XDG_DATA_HOME");
  if (data.is_absolute()) return data / "quorvane";
  const fs::path home = platform::PathFromEnvironment("HOME");
  if (home.is_absolute()) return home / ".local" / "share" / "quorvane";
  const fs::path local = platform::PathFromEnvironment("LOCALAPPDATA");
  return local.is_absolute() ? local / "quorvane" : fs::path();
}

}  // namespace qv::host
