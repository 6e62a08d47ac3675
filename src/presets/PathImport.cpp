#include "presets/PathImport.h"

#include <wx/convauto.h>
#include <wx/file.h>
#include <wx/intl.h>
#include <wx/log.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "core/Log.h"

namespace qv {
namespace {

constexpr double kKeySeconds = 0.5;
constexpr std::size_t kValues = 6;
// No path comes near this; it keeps a wrong choice of file from filling the memory.
constexpr wxFileOffset kLargestFile = 32 << 20;

using Tokens = std::array<std::wstring_view, kValues>;

// Takes the next line off the text, without its end: a line feed, a carriage return, or both.
std::wstring_view TakeLine(std::wstring_view& text) {
  const std::size_t end = text.find_first_of(L"\r\n");
  const std::wstring_view line = text.substr(0, end);
  std::size_t next = end == text.npos ? text.size() : end + 1;
  if (next < text.size() && text[end] == L'\r' && text[next] == L'\n') ++next;
  text.remove_prefix(next);
  return line;
}

std::wstring_view TrimRight(std::wstring_view line) {
  return line.substr(0, line.find_last_not_of(L" \t\v\f") + 1);
}

// The first tokens of a line, with any run of separators between them; nothing if there are fewer.
std::optional<Tokens> Split(std::wstring_view line) {
  constexpr const wchar_t* kSeparators = L"\t\r\n,";
  Tokens tokens;
  std::size_t at = 0;
  for (std::wstring_view& token : tokens) {
    at = line.find_first_not_of(kSeparators, at);
    if (at == line.npos) return std::nullopt;
    const std::size_t end = std::min(line.find_first_of(kSeparators, at), line.size());
    token = line.substr(at, end - at);
    at = end;
  }
  return tokens;
}

std::optional<Vec3> ParsePoint(std::span<const std::wstring_view, 3> tokens) {
  Vec3 point;
  for (int axis = 0; axis < 3; ++axis) {
    const std::wstring_view token = tokens[axis];
    double value = 0;
    if (!wxString(token.data(), token.size()).ToCDouble(&value)) return std::nullopt;
    if (!(std::abs(value) <= std::numeric_limits<float>::max())) return std::nullopt;
    point[axis] = static_cast<float>(value);
  }
  return point;
}

// Appends the key of a line, if it has one.
std::optional<PathFault> ReadPathLine(std::wstring_view line, float fieldOfView,
                                      std::vector<CameraKey>& keys) {
  line = TrimRight(line);
  if (line.empty() || line.front() == L'#') return std::nullopt;
  const std::optional<Tokens> tokens = Split(line);
  if (!tokens) return PathFault::kFormat;
  const auto position = ParsePoint(std::span(*tokens).first<3>());
  if (!position) return PathFault::kPosition;
  const auto target = ParsePoint(std::span(*tokens).last<3>());
  if (!target) return PathFault::kTarget;

  // The way between two of the farthest points is more than a float holds.
  const Eigen::Vector3d way = target->cast<double>() - position->cast<double>();
  const auto [yaw, pitch] = YawPitchFromDirection(way.normalized().cast<float>());
  keys.push_back({static_cast<double>(keys.size()) * kKeySeconds,
                  {*position, QuaternionFromYawPitch(yaw, pitch), fieldOfView},
                  {}});
  return std::nullopt;
}

}  // namespace

std::wstring DecodePathText(std::span<const std::byte> bytes) {
  // Text of two bytes a character may have been cut in the middle of one.
  constexpr std::size_t kLongestCharacter = 4;
  const auto* text = reinterpret_cast<const char*>(bytes.data());
  for (std::size_t cut = 0; cut < kLongestCharacter && cut < bytes.size(); ++cut) {
    std::size_t length = 0;
    const wxWCharBuffer decoded = wxConvAuto().cMB2WC(text, bytes.size() - cut, &length);
    if (decoded.data() && length > 0) return {decoded.data(), length};
  }
  return {};
}

ImportedPath ReadPath(std::wstring_view text, float fieldOfView) {
  ImportedPath path;
  for (int line = 1; !text.empty(); ++line) {
    if (const auto fault = ReadPathLine(TakeLine(text), fieldOfView, path.keys)) {
      path.fault = PathLineFault{*fault, line};
      break;
    }
  }
  return path;
}

ImportedPath ReadPathFile(const wxString& file, float fieldOfView) {
  const wxLogNull quiet;
  wxFile opened;
  if (!wxFile::Exists(file) || !opened.Open(file)) return {};
  const wxFileOffset size = opened.Length();
  if (size <= 0 || size > kLargestFile) {
    Log(LogLevel::kWarning, "Presets: a path file is empty or too large");
    return {};
  }
  std::vector<std::byte> bytes(static_cast<std::size_t>(size));
  const ssize_t read = opened.Read(bytes.data(), bytes.size());
  if (read <= 0) return {};
  bytes.resize(static_cast<std::size_t>(read));
  return ReadPath(DecodePathText(bytes), fieldOfView);
}

wxString PathFaultText(const PathLineFault& fault) {
  switch (fault.fault) {
    case PathFault::kPosition:
      return wxString::Format(_("Cannot read a position at line %d."), fault.line);
    case PathFault::kTarget:
      return wxString::Format(_("Cannot read a target at line %d."), fault.line);
    case PathFault::kFormat:
      break;
  }
  return wxString::Format(_("Invalid format at line %d."), fault.line);
}

}  // namespace qv
