#pragma once

#include <gtest/gtest.h>
#include <zip.h>

#include <filesystem>
#include <string>
#include <utility>
#include <vector>

namespace qv::host {

// Writes a zip archive of files with those names, whatever they are, and contents.
inline void WriteZip(const std::filesystem::path& path,
                     const std::vector<std::pair<std::string, std::string>>& files) {
  zipFile zip = zipOpen64(path.string().c_str(), APPEND_STATUS_CREATE);
  ASSERT_NE(zip, nullptr);
  for (const auto& [name, content] : files) {
    const zip_fileinfo info{};
    ASSERT_EQ(zipOpenNewFileInZip(zip, name.c_str(), &info, nullptr, 0, nullptr, 0, nullptr,
                                  Z_DEFLATED, Z_DEFAULT_COMPRESSION),
              ZIP_OK);
    ASSERT_EQ(zipWriteInFileInZip(zip, content.data(), static_cast<unsigned>(content.size())),
              ZIP_OK);
    ASSERT_EQ(zipCloseFileInZip(zip), ZIP_OK);
  }
  ASSERT_EQ(zipClose(zip, nullptr), ZIP_OK);
}

}  // namespace qv::host
