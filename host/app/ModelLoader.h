#pragma once

#include <filesystem>
#include <future>
#include <memory>
#include <optional>
#include <thread>

#include "host/scenefile/LoadScene.h"

namespace qv::host {

// Reads a model or a scene file on a thread of its own, which the import library gives no means to
// stop.
class ModelLoader {
 public:
  ModelLoader(const std::filesystem::path& model, const LoadOptions& options);
  // Waits, unless given up.
  ~ModelLoader();
  ModelLoader(const ModelLoader&) = delete;
  ModelLoader& operator=(const ModelLoader&) = delete;

  // True when Take will not block.
  bool WaitFor(std::chrono::milliseconds time);
  LoadedScene Take();
  // Lets the thread run on without this object; its temporary files are gone, and it makes no new
  // ones. The process is to end without destroying what the thread still uses.
  void GiveUp();

 private:
  std::shared_ptr<TemporaryFolder> temporaryFiles_;
  std::future<LoadedScene> result_;
  std::thread thread_;
};

}  // namespace qv::host
