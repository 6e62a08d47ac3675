#include "host/app/ModelLoader.h"

#include <utility>

namespace qv::host {

ModelLoader::ModelLoader(const std::filesystem::path& model, const LoadOptions& options)
    : temporaryFiles_(std::make_shared<TemporaryFolder>()) {
  LoadOptions own = options;
  own.temporaryFiles = temporaryFiles_;
  std::packaged_task<LoadedScene()> task([model, own] { return LoadScene(model, own); });
  result_ = task.get_future();
  thread_ = std::thread(std::move(task));
}

ModelLoader::~ModelLoader() {
  if (thread_.joinable()) thread_.join();
}

bool ModelLoader::WaitFor(std::chrono::milliseconds time) {
  return result_.wait_for(time) == std::future_status::ready;
}

LoadedScene ModelLoader::Take() {
  return result_.get();
}

void ModelLoader::GiveUp() {
  temporaryFiles_->Remove();
  thread_.detach();
}

}  // namespace qv::host
