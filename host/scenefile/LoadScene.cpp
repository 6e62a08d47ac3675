#include "host/scenefile/LoadScene.h"

#include <algorithm>
#include <cctype>
#include <cstdint>
#include <exception>
#include <fstream>
#include <iterator>
#include <new>
#include <utility>

#include "host/scenefile/AssembleScene.h"
#include "host/scenefile/ReadSceneFile.h"
#include "host/scenefile/SceneFileError.h"
#include "platform/PathText.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t kMaximumBytes = std::uintmax_t{16} << 20;

std::string TextOf(const fs::path& path) {
  std::error_code error;
  if (!fs::is_regular_file(path, error)) throw SceneFileError("there is no such file");
  if (fs::file_size(path, error) > kMaximumBytes) throw SceneFileError("it is too large");
  std::ifstream file(path, std::ios::binary);
  std::string text{std::istreambuf_iterator<char>(file), {}};
  if (!file.is_open() || file.bad()) throw SceneFileError("the file can't be read");
  return text;
}

LoadedScene LoadSceneFile(const fs::path& path, const LoadOptions& options) {
  const fs::path absolute = fs::absolute(path).lexically_normal();
  SceneFile file = ReadSceneFile(TextOf(absolute));
  const auto temporaryFiles =
      options.temporaryFiles ? options.temporaryFiles : std::make_shared<TemporaryFolder>();
  LoadedScene loaded;
  loaded.scene = AssembleScene(file, absolute.parent_path(), temporaryFiles);
  loaded.when = file.when;
  loaded.look = std::move(file.look);
  return loaded;
}

}  // namespace

bool IsSceneFile(const fs::path& path) {
  std::string ending = platform::Utf8FromPath(path.extension());
  std::transform(ending.begin(), ending.end(), ending.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return ending == ".json";
}

LoadedScene LoadScene(const fs::path& path, const LoadOptions& options) {
  LoadedScene loaded;
  if (!IsSceneFile(path)) {
    LoadResult result = LoadModel(path, options);
    loaded.scene = std::move(result.scene);
    loaded.error = std::move(result.error);
    return loaded;
  }
  try {
    return LoadSceneFile(path, options);
  } catch (const std::bad_alloc&) {
    loaded.error = "there is not enough memory";
  } catch (const std::exception& exception) {
    loaded.error = exception.what();
  }
  loaded.error = "The scene " + platform::Utf8FromPath(path) + " can't be read: " + loaded.error;
  return loaded;
}

}  // namespace qv::host
