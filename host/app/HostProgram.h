#pragma once

#include <chrono>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "host/app/Console.h"
#include "host/app/ModelLoader.h"
#include "host/app/Options.h"
#include "host/app/PropertyStore.h"
#include "host/app/Session.h"
#include "host/link/HostLink.h"
#include "host/model/Scene.h"
#include "host/model/SendScene.h"

namespace qv::host {

// The program: reads a model, starts the viewer, hands the model over, and answers the viewer until
// it is closed.
class HostProgram {
 public:
  static constexpr int kFailure = 1;

  // `endRequested` is 0, or the exit code that somebody wants the program to end with.
  HostProgram(Options options, Console& console, std::function<int()> endRequested);

  // The exit code: 0 when the viewer was closed, what `endRequested` gave, or kFailure.
  int Run();
  // Whether a thread was left behind that still reads a model: the process must then end without
  // destroying what it uses.
  bool leftThreadBehind() const { return leftThreadBehind_; }

 private:
  enum class Event { kDone, kEndRequested, kViewerClosed, kViewerDied, kFailed };

  bool FindViewer();
  bool SettleBackground();
  // Waits until `done` holds, or something happens that ends the program.
  Event WaitUntil(const std::function<bool(std::chrono::milliseconds)>& done);
  Event EventOfEnd();
  Event Load(LoadedScene& result);
  void Show(LoadedScene loaded);
  bool StartViewer();
  Event Send();
  Event WhyNotSent(bool answered);
  Event Reload();
  Event Serve();
  int End(Event event);
  int EndAfterClose();
  void EndViewer();
  void Describe();

  Options options_;
  Console& console_;
  std::function<int()> endRequested_;
  PropertyStore properties_;
  Session session_;
  std::unique_ptr<Scene> scene_;
  std::optional<LocationAndTime> shownWhen_;  // what the files last read wanted
  std::filesystem::path viewer_;
  bool leftThreadBehind_ = false;
  std::unique_ptr<HostLink> link_;  // its thread uses the session, so that it goes first
};

}  // namespace qv::host
