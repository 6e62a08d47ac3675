#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace qv {

// The file that the test viewer writes, in a place of its own. Removed with this object.
class ViewerRecord {
 public:
  ViewerRecord();
  ~ViewerRecord();
  ViewerRecord(const ViewerRecord&) = delete;
  ViewerRecord& operator=(const ViewerRecord&) = delete;

  std::string path() const { return path_.string(); }
  // The lines that have come since the last call, those with "IsCameraLinked" left out: the host
  // asks that too.
  std::vector<std::string> NewLines();
  // Waits until that line has come, for ten seconds at most; gives whether it has.
  bool Await(const std::string& line) const;

 private:
  std::vector<std::string> AllLines() const;

  std::filesystem::path path_;
  std::size_t taken_ = 0;
};

}  // namespace qv
