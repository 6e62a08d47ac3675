#include "imagefile/FileAccess.h"

#include <string>

#include "platform/PathText.h"

namespace qv::imagefile {
namespace {

std::fstream& StreamOf(fi_handle handle) {
  return *static_cast<std::fstream*>(handle);
}

unsigned DLL_CALLCONV ReadBytes(void* buffer, unsigned size, unsigned count, fi_handle handle) {
  std::fstream& stream = StreamOf(handle);
  stream.read(static_cast<char*>(buffer), static_cast<std::streamsize>(size) * count);
  const std::streamsize got = stream.gcount();
  // The end of the file keeps nobody from going back.
  if (stream.eof() && !stream.bad()) stream.clear();
  return size == 0 ? 0 : static_cast<unsigned>(got / size);
}

unsigned DLL_CALLCONV WriteBytes(void* buffer, unsigned size, unsigned count, fi_handle handle) {
  std::fstream& stream = StreamOf(handle);
  stream.write(static_cast<const char*>(buffer), static_cast<std::streamsize>(size) * count);
  return stream.good() ? count : 0;
}

int DLL_CALLCONV Seek(fi_handle handle, long offset, int origin) {
  std::fstream& stream = StreamOf(handle);
  const auto from = origin == SEEK_SET   ? std::ios::beg
                    : origin == SEEK_CUR ? std::ios::cur
                                         : std::ios::end;
  stream.seekp(offset, from);
  return stream.good() ? 0 : -1;
}

long DLL_CALLCONV Tell(fi_handle handle) {
  return static_cast<long>(StreamOf(handle).tellp());
}

}  // namespace

FreeImageIO StreamCalls() {
  return {&ReadBytes, &WriteBytes, &Seek, &Tell};
}

FREE_IMAGE_FORMAT FormatOfName(const std::filesystem::path& file) {
  // The library looks for the last dot itself.
  const std::string name = "picture" + platform::Utf8FromPath(file.extension());
  return FreeImage_GetFIFFromFilename(name.c_str());
}

bool Write(FIBITMAP* bitmap, FREE_IMAGE_FORMAT format, const std::filesystem::path& file,
           int flags) {
  std::fstream stream(file, std::ios::in | std::ios::out | std::ios::trunc | std::ios::binary);
  if (!stream) return false;
  FreeImageIO calls = StreamCalls();
  const bool saved = FreeImage_SaveToHandle(format, bitmap, &calls, &stream, flags) != 0;
  stream.close();
  return saved && stream.good();
}

}  // namespace qv::imagefile
