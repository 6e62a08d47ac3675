#include "e2e/support/TestHost.h"

#include <utility>

namespace qv::e2e {

std::unique_ptr<TestHost> TestHost::Start(const std::string& viewer, ViewerLog& log) {
  std::unique_ptr<TestHost> host(new TestHost);
  host->link_ = host::HostLink::Create(*host);
  if (!host->link_) return nullptr;
  bool started = false;
  log.Capture([&] { started = host->link_->StartViewer(viewer); });
  if (!started) return nullptr;
  return host;
}

TestHost::~TestHost() {
  if (link_ && link_->ViewerRunning()) link_->KillViewer();
}

void TestHost::SetProperty(const std::string& name, std::vector<std::byte> value) {
  const std::lock_guard lock(mutex_);
  properties[name] = std::move(value);
}

std::optional<std::vector<std::byte>> TestHost::Property(const std::string& name) {
  if (beforeProperty) beforeProperty(name);
  return PropertyValue(name);
}

std::optional<std::vector<std::byte>> TestHost::PropertyValue(const std::string& name) {
  const std::lock_guard lock(mutex_);
  const auto found = properties.find(name);
  if (found == properties.end()) return std::nullopt;
  return found->second;
}

}  // namespace qv::e2e
