#pragma once

#include <cstddef>
#include <filesystem>
#include <map>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace qv::host {

// The named values that the viewer keeps with a model, in a JSON file: beside the model as
// "<model>.quorvane.json", or, where that can't be written, below `userFolder` under a name made of
// the model's name and its absolute path. The newer of the two files is read. Each change is
// written at once, to a file beside that then takes the old one's name, together with what another
// program with the same model has written before. Any thread.
//
// A file that is no property file any more, or one of a later version, is kept under the name with
// ".broken" or ".later" added.
class PropertyStore {
 public:
  using Value = std::vector<std::byte>;

  PropertyStore(const std::filesystem::path& model, const std::filesystem::path& userFolder);

  std::optional<Value> Get(const std::string& name) const;
  // False if the value could not be written anywhere; it is kept for as long as this object lives.
  bool Set(const std::string& name, Value value);

  // What went wrong with reading until now, one sentence each.
  std::vector<std::string> warnings() const;
  // Where the values are written.
  std::filesystem::path file() const;

 private:
  using Path = std::filesystem::path;

  // With the lock held, or before there are threads: takes over what the newer of the files has and
  // was not set here since the last writing.
  void Refresh();
  bool Read(const Path& file);
  void SetAside(const Path& file, const std::string& what, const std::string& suffix);
  void Warn(const std::string& sentence);
  bool Write(const Path& file) const;

  std::string model_;
  Path besideModel_;
  Path inUserFolder_;
  std::vector<std::string> warnings_;
  mutable std::mutex mutex_;
  std::map<std::string, Value> values_;
  std::set<std::string> unwritten_;
  Path file_;
};

// Where programs keep what belongs to the user: $XDG_DATA_HOME, or its default below $HOME; on
// Windows %LOCALAPPDATA%. With "quorvane" added. Empty if the environment names none.
std::filesystem::path UserFolder();

}  // namespace qv::host
