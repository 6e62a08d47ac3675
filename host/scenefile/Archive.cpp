#include "host/scenefile/Archive.h"

#include <unzip.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <memory>
#include <string_view>
#include <vector>

#include "host/scenefile/SceneFileError.h"
#include "platform/PathText.h"

namespace qv::host {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t kMaximumName = 1024;

// The archive library's file calls, by streams: paths go as every system writes them.
void* OpenStream(void* path, const void*, int mode) {
  if ((mode & ZLIB_FILEFUNC_MODE_READWRITEFILTER) != ZLIB_FILEFUNC_MODE_READ) return nullptr;
  auto stream = std::make_unique<std::ifstream>(*static_cast<const fs::path*>(path),
                                                std::ios::in | std::ios::binary);
  return stream->is_open() ? stream.release() : nullptr;
}

std::ifstream& StreamOf(void* stream) {
  return *static_cast<std::ifstream*>(stream);
}

uLong ReadStream(void*, void* stream, void* buffer, uLong size) {
  StreamOf(stream).read(static_cast<char*>(buffer), static_cast<std::streamsize>(size));
  return static_cast<uLong>(StreamOf(stream).gcount());
}

ZPOS64_T TellStream(void*, void* stream) {
  StreamOf(stream).clear();
  return static_cast<ZPOS64_T>(StreamOf(stream).tellg());
}

long SeekStream(void*, void* stream, ZPOS64_T offset, int origin) {
  StreamOf(stream).clear();
  const std::ios::seekdir from = origin == ZLIB_FILEFUNC_SEEK_SET   ? std::ios::beg
                                 : origin == ZLIB_FILEFUNC_SEEK_CUR ? std::ios::cur
                                                                    : std::ios::end;
  StreamOf(stream).seekg(static_cast<std::streamoff>(offset), from);
  return StreamOf(stream) ? 0 : -1;
}

int CloseStream(void*, void* stream) {
  const std::unique_ptr<std::ifstream> closed(static_cast<std::ifstream*>(stream));
  return 0;
}

int StreamError(void*, void* stream) {
  return StreamOf(stream).bad() ? 1 : 0;
}

struct ArchiveCloser {
  void operator()(void* archive) const { unzClose(archive); }
};
using OpenArchive = std::unique_ptr<void, ArchiveCloser>;

OpenArchive Open(fs::path path) {
  std::error_code error;
  if (!fs::is_regular_file(path, error)) {
    throw SceneFileError("there is no file " + platform::Utf8FromPath(path));
  }
  zlib_filefunc64_def calls{};
  calls.zopen64_file = OpenStream;
  calls.zread_file = ReadStream;
  calls.ztell64_file = TellStream;
  calls.zseek64_file = SeekStream;
  calls.zclose_file = CloseStream;
  calls.zerror_file = StreamError;
  // The path is only used while it is opened.
  calls.opaque = &path;
  OpenArchive archive(unzOpen2_64("", &calls));
  if (!archive) throw SceneFileError(platform::Utf8FromPath(path) + " is no zip archive");
  return archive;
}

// Whether a name stays below the folder that it is unpacked to, on every system.
bool StaysInside(const std::string& name) {
  constexpr std::string_view kForbidden(":\\\0", 3);
  if (name.empty() || name.front() == '/' || name.find_first_of(kForbidden) != std::string::npos) {
    return false;
  }
  const fs::path path = platform::PathFromUtf8(name);
  return path.is_relative() &&
         std::none_of(path.begin(), path.end(), [](const fs::path& part) { return part == ".."; });
}

class Unpacker {
 public:
  Unpacker(const fs::path& archive, const ArchiveLimits& limits)
      : name_(platform::Utf8FromPath(archive)), limits_(limits), archive_(Open(archive)) {}

  // All entries whose names begin with `folder`; whether `wanted` was among them.
  bool Unpack(const std::string& folder, const std::string& wanted, const fs::path& target) {
    bool found = false;
    std::size_t entries = 0;
    for (int result = unzGoToFirstFile(archive_.get()); result != UNZ_END_OF_LIST_OF_FILE;
         result = unzGoToNextFile(archive_.get())) {
      if (result != UNZ_OK) Fail("is damaged");
      if (++entries > limits_.entries) Fail("holds too many files");
      const std::string name = EntryName();
      if (!StaysInside(name)) Fail("holds a file \"" + name + "\", which leads out of its folder");
      if (name.compare(0, folder.size(), folder) != 0 || name.back() == '/') continue;
      WriteEntry(name, target / platform::PathFromUtf8(name));
      found |= name == wanted;
    }
    return found;
  }

  [[noreturn]] void Fail(const std::string& what) const {
    throw SceneFileError("the archive " + name_ + ' ' + what);
  }

 private:
  std::string EntryName() {
    unz_file_info64 info{};
    std::array<char, kMaximumName + 1> name{};
    if (unzGetCurrentFileInfo64(archive_.get(), &info, name.data(), kMaximumName, nullptr, 0,
                                nullptr, 0) != UNZ_OK ||
        info.size_filename > kMaximumName) {
      Fail("is damaged");
    }
    return {name.data(), info.size_filename};
  }

  void WriteEntry(const std::string& name, const fs::path& path) {
    std::error_code error;
    fs::create_directories(path.parent_path(), error);
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    if (unzOpenCurrentFile(archive_.get()) != UNZ_OK) Fail("holds a damaged file \"" + name + '"');
    std::vector<char> buffer(std::size_t{1} << 16);
    std::uint64_t written = 0;
    int count = 0;
    while ((count = unzReadCurrentFile(archive_.get(), buffer.data(),
                                       static_cast<unsigned>(buffer.size()))) > 0) {
      written += static_cast<std::uint64_t>(count);
      written_ += static_cast<std::uint64_t>(count);
      if (written > limits_.bytesOfFile || written_ > limits_.bytesOfAll) {
        unzCloseCurrentFile(archive_.get());
        Fail("holds more than is read of one, at \"" + name + '"');
      }
      file.write(buffer.data(), count);
    }
    // Compares the check sum.
    const int closed = unzCloseCurrentFile(archive_.get());
    if (count < 0 || closed != UNZ_OK) Fail("holds a damaged file \"" + name + '"');
    file.close();
    if (!file)
      throw SceneFileError("the file " + platform::Utf8FromPath(path) + " can't be written");
  }

  std::string name_;
  ArchiveLimits limits_;
  OpenArchive archive_;
  std::uint64_t written_ = 0;
};

}  // namespace

fs::path UnpackFolderOf(const fs::path& archive, const std::string& entry, const fs::path& target,
                        const ArchiveLimits& limits) {
  Unpacker unpacker(archive, limits);
  const auto slash = entry.rfind('/');
  const std::string folder = slash == std::string::npos ? "" : entry.substr(0, slash + 1);
  if (!unpacker.Unpack(folder, entry, target)) {
    unpacker.Fail("holds no file \"" + entry + '"');
  }
  return target / platform::PathFromUtf8(entry);
}

}  // namespace qv::host
