#pragma once

#include <wx/string.h>

#include <cstddef>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "link/IpcInterfaceApp.h"
#include "presets/CameraStage.h"

namespace qv {

// What the presets need of the main frame. Calls belong to the GUI thread.
class PresetsFrame {
 public:
  // Place and moment of the renderer's sun.
  struct SunSite {
    double julianDate = 0;
    double latitude = 0;   // degrees
    double longitude = 0;  // degrees
  };

  virtual ~PresetsFrame() = default;
  virtual CameraStage& Stage() = 0;
  // Calls `moves`, which moves the camera on the stage for a while and has events handled
  // meanwhile. Another call may come from these.
  virtual void Play(const std::function<void()>& moves) = 0;
  virtual SunSite Sun() = 0;
  virtual float EyeHeight() = 0;
  virtual bool IsCameraLinked() = 0;
  // The host's side.
  virtual void SendDateTime(int year, int month, int day, int hour, int minute, int second) = 0;
  virtual std::vector<HostPage> GetPages() = 0;
  virtual void SetProperty(const std::string& name, std::span<const std::byte> value) = 0;
};

// The pictures of the list, in the order of its image list.
enum class PresetIcon : int { kImportedView = 0, kView = 1, kAnimation = 2 };

// The rows of the list as it is shown. Selected rows stay selected while others come and go.
class PresetRows {
 public:
  virtual ~PresetRows() = default;
  virtual void Clear() = 0;
  virtual void InsertRow(int row, const wxString& name, PresetIcon icon) = 0;
  virtual void RemoveRow(int row) = 0;
  virtual void SetRowText(int row, const wxString& name) = 0;
  // Selects a row and brings it into sight.
  virtual void SelectRow(int row) = 0;
  // Gives the column the width of its contents.
  virtual void FitColumn() = 0;
  // The picture of the record tool.
  virtual void ShowRecording(bool recording) = 0;
};

// What the user is asked and told. What can be cancelled gives nothing then.
class PresetsPrompts {
 public:
  struct Name {
    wxString name;
    bool recordSun = false;
  };
  struct Path {
    wxString name;
    float speed = 0;  // model units a second
  };

  virtual ~PresetsPrompts() = default;
  // `recordSun`: whether the position of the sun is recorded; not asked without it.
  virtual std::optional<Name> AskName(const wxString& proposal, std::optional<bool> recordSun) = 0;
  virtual std::optional<Path> AskPath(const wxString& proposal) = 0;
  virtual std::optional<wxString> ChoosePathFile(const wxString& folder) = 0;
  virtual void ShowMessage(const wxString& text) = 0;
};

}  // namespace qv
