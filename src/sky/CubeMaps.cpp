#include "sky/CubeMaps.h"

#include <algorithm>
#include <exception>
#include <new>
#include <system_error>

#include "core/Log.h"
#include "imagefile/ImageFile.h"
#include "platform/Folders.h"
#include "platform/PathText.h"

namespace qv::sky {
namespace {

namespace fs = std::filesystem;

constexpr const wchar_t* kDefaultName = L"asphalt_morning";
constexpr const char* kStems[] = {"FR", "LF", "BK", "RT", "UP", "DN"};
constexpr std::uint32_t kSize = CubeFaces::kFaceSize;

// Why the face cannot be shown; empty if it was read.
std::string ReadFace(const fs::path& path, std::vector<std::uint8_t>& pixels) {
  const imagefile::Complaints complaints;
  const auto size = imagefile::SizeOf(path);
  if (!size) return "cannot be read";
  if (size->width != kSize || size->height != kSize) {
    return "is " + std::to_string(size->width) + " by " + std::to_string(size->height) +
           " pixels, not " + std::to_string(kSize) + " by " + std::to_string(kSize);
  }
  const imagefile::Bitmap bitmap = imagefile::Load(path);
  const imagefile::Bitmap wide = bitmap ? imagefile::In32Bits(bitmap.get()) : nullptr;
  // What is read of a file that ends too early is grey from there on.
  if (!wide || !complaints.text().empty()) return "is damaged (" + complaints.text() + ")";
  pixels.resize(std::size_t{kSize} * kSize * 4);
  imagefile::CopyPixels(wide.get(), pixels);
  return {};
}

}  // namespace

fs::path CubeMapFolder(const fs::path& programFolder) {
  return programFolder / "CubeMaps";
}

bool IsCubeMapName(const std::wstring& name) {
  if (name.empty() || name == L"." || name == L"..") return false;
  return std::none_of(name.begin(), name.end(), [](wchar_t c) {
    return c == L'/' || c == L'\\' || c == L':' || c < 32 || c == 127;
  });
}

std::vector<std::wstring> ListCubeMaps(const fs::path& folder) {
  std::vector<std::wstring> names = platform::SubfolderNames(folder);
  std::erase_if(names, [](const std::wstring& name) { return !IsCubeMapName(name); });
  return names;
}

std::int32_t DefaultCubeMap(const std::vector<std::wstring>& names) {
  const auto found = std::find(names.begin(), names.end(), kDefaultName);
  return found == names.end() ? 0 : static_cast<std::int32_t>(found - names.begin());
}

std::string FaceFileName(int face) {
  return std::string(kStems[face]) + ".jpg";
}

CubeFaces LoadCubeMap(const fs::path& folder, const std::wstring& name) {
  CubeFaces faces;
  if (!IsCubeMapName(name)) return faces;
  for (int face = 0; face < 6; ++face) {
    std::vector<std::uint8_t>& pixels = faces.pixels[static_cast<std::size_t>(face)];
    std::string text = FaceFileName(face);
    std::string wrong;
    try {
      const fs::path path = folder / name / text;
      text = platform::Utf8FromPath(path);
      wrong = ReadFace(path, pixels);
    } catch (const std::exception& error) {
      // No memory, or a name that cannot be written in the system's encoding.
      pixels.clear();
      wrong = std::string("cannot be read: ") + error.what();
    }
    if (wrong.empty()) continue;
    std::string line = "face of the background ";
    line.append(text).append(" ").append(wrong);
    Log(LogLevel::kWarning, line);
  }
  return faces;
}

}  // namespace qv::sky
