#pragma once

#include <functional>
#include <optional>

#include "navigation/SceneProbe.h"
#include "ui/EyeHeightPopUpBase.h"

namespace qv {

// The small window in which the eye height is set. It goes when another window is used.
class EyeHeightPopUp : public _EyeHeightPopUp {
 public:
  // What it shows and sets.
  struct Access {
    std::function<float()> height;
    std::function<std::optional<SceneBox>()> bounds;
    std::function<void(float)> setHeight;
  };

  EyeHeightPopUp(wxWindow* parent, Access access);

  // Comes up above that point of the screen, with the present height.
  void ShowAbove(const wxPoint& point);

 private:
  void OnEnter(wxCommandEvent& event) override;
  void OnUp(wxSpinEvent& event) override;
  void OnDown(wxSpinEvent& event) override;
  void OnActivate(wxActivateEvent& event) override;
  void OnCharHook(wxKeyEvent& event) override;

  void Take(float height);
  // What is typed, if it is a number that has not been taken yet.
  void TakeTyped();
  void ShowHeight();

  Access access_;
};

}  // namespace qv
