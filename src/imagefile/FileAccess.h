#pragma once

#include <FreeImage.h>

#include <filesystem>
#include <fstream>

namespace qv::imagefile {

// What FreeImage reads and writes files through: a stream, whose path may hold any letters on every
// system, which its own calls with narrow names may not. The handle of these calls is the
// std::fstream. Where a failure in writing has to be known, look at the stream: some of the formats
// do not tell.
FreeImageIO StreamCalls();

// The kind that the extension of the name tells; the file need not exist.
FREE_IMAGE_FORMAT FormatOfName(const std::filesystem::path& file);

// False if not all of it was written; then there may be a part of a file.
bool Write(FIBITMAP* bitmap, FREE_IMAGE_FORMAT format, const std::filesystem::path& file,
           int flags = 0);

}  // namespace qv::imagefile
