#include "platform/NarrowText.h"

#include <iconv.h>
#include <langinfo.h>

#include <cstdint>
#include <optional>

namespace qv::platform {

namespace {

// No encoding's byte needs more in UTF-8.
constexpr std::size_t kMostBytesForOne = 4;

// Nothing where a byte has no meaning in that encoding.
std::optional<std::string> ToUtf8(const std::string& text, const char* encoding) {
  const iconv_t converter = iconv_open("UTF-8", encoding);
  if (reinterpret_cast<std::intptr_t>(converter) == -1) return std::nullopt;
  std::string converted(kMostBytesForOne * text.size(), '\0');
  char* from = const_cast<char*>(text.data());  // read only
  char* to = converted.data();
  std::size_t left = text.size();
  std::size_t room = converted.size();
  const bool done = iconv(converter, &from, &left, &to, &room) != static_cast<std::size_t>(-1);
  iconv_close(converter);
  if (!done) return std::nullopt;
  converted.resize(converted.size() - room);
  return converted;
}

}  // namespace

// In Latin-1 every byte is a character.
std::string Utf8FromNarrow(const std::string& text) {
  const char* const encodings[] = {"UTF-8", nl_langinfo(CODESET), "ISO-8859-1"};
  for (const char* encoding : encodings) {
    if (const auto converted = ToUtf8(text, encoding)) return *converted;
  }
  return {};
}

std::string FileNameFromNarrow(const std::string& name) {
  return name;
}

}  // namespace qv::platform
