#include "app/ViewNavigation.h"

#include <algorithm>

#include "core/Calendar.h"
#include "platform/Clock.h"

namespace qv {
namespace {

// As often as the window's events allow: the next tick is asked for when one is done, so that
// pictures and other events come between however long it took.
constexpr int kTickMilliseconds = 1;
// While something is held that moves nothing.
constexpr int kRestMilliseconds = 10;

const wxEventTypeTag<wxMouseEvent> kButtonDown[] = {wxEVT_LEFT_DOWN,     wxEVT_MIDDLE_DOWN,
                                                    wxEVT_RIGHT_DOWN,    wxEVT_LEFT_DCLICK,
                                                    wxEVT_MIDDLE_DCLICK, wxEVT_RIGHT_DCLICK};
const wxEventTypeTag<wxMouseEvent> kMouseChanged[] = {wxEVT_LEFT_UP, wxEVT_MIDDLE_UP,
                                                      wxEVT_RIGHT_UP, wxEVT_MOTION};

wxStockCursor CursorOf(const NavigationInput& held) {
  if (held.left && held.right) return wxCURSOR_ARROW;
  if (held.left) return held.control ? wxCURSOR_SIZEWE : wxCURSOR_SIZING;
  if (held.middle) return held.shift ? wxCURSOR_HAND : wxCURSOR_CROSS;
  return held.right ? wxCURSOR_CROSS : wxCURSOR_ARROW;
}

}  // namespace

ViewNavigation::ViewNavigation(wxFrame& frame, wxWindow& view, NavigationSite& site)
    : frame_(frame),
      view_(view),
      site_(site),
      probe_(frame, view, site),
      navigator_(probe_, *this) {
  timer_.Bind(wxEVT_TIMER, [this](wxTimerEvent&) { OnTick(); });
  BindView();
}

void ViewNavigation::BindView() {
  view_.Bind(wxEVT_KEY_DOWN, &ViewNavigation::OnKeyDown, this);
  view_.Bind(wxEVT_KEY_UP, &ViewNavigation::OnKeyUp, this);
  view_.Bind(wxEVT_KILL_FOCUS, &ViewNavigation::OnFocusLost, this);
  // The view keeps the focus while a menu has the keys.
  frame_.Bind(wxEVT_MENU_OPEN, &ViewNavigation::OnMenuOpened, this);
  for (const auto& type : kButtonDown) view_.Bind(type, &ViewNavigation::OnButtonDown, this);
  for (const auto& type : kMouseChanged) view_.Bind(type, &ViewNavigation::OnMouseChanged, this);
  view_.Bind(wxEVT_MOUSEWHEEL, &ViewNavigation::OnWheel, this);
  view_.Bind(wxEVT_MOUSE_CAPTURE_LOST, &ViewNavigation::OnCaptureLost, this);
}

NavigationInput ViewNavigation::Held() const {
  return held_.Now(frame_.IsActive(), view_.HasCapture());
}

NavigationInput ViewNavigation::Kept() const {
  return held_.Kept(view_.HasCapture());
}

void ViewNavigation::OnKeyDown(wxKeyEvent& event) {
  // What goes with Alt belongs to the menus.
  if (event.AltDown() || !held_.KeyDown(event)) {
    event.Skip();
    return;
  }
  if (site_.NavigableRenderer()) navigator_.KeyPressed(Kept(), platform::NowSeconds());
}

void ViewNavigation::OnKeyUp(wxKeyEvent& event) {
  const NavigationInput before = Kept();
  if (!held_.KeyUp(event)) event.Skip();
  navigator_.Released(before, Held(), platform::NowSeconds());
}

void ViewNavigation::OnFocusLost(wxFocusEvent& event) {
  event.Skip();
  LoseKeys();
}

void ViewNavigation::OnMenuOpened(wxMenuEvent& event) {
  event.Skip();
  LoseKeys();
}

void ViewNavigation::LoseKeys() {
  held_.ForgetKeys();
  navigator_.Released(Held(), Held(), platform::NowSeconds());
}

void ViewNavigation::OnButtonDown(wxMouseEvent& event) {
  if (!site_.NavigableRenderer()) return;
  view_.SetFocus();
  if (!view_.HasCapture()) {
    held_.ForgetButtons();
    view_.CaptureMouse();
  }
  held_.Mouse(event);
  const NavigationInput held = Held();
  ShowCursor(held);
  navigator_.ButtonPressed(held, event.MiddleDown() || event.MiddleDClick(),
                           platform::NowSeconds());
}

void ViewNavigation::OnMouseChanged(wxMouseEvent& event) {
  NavigationInput before = Kept();
  held_.Mouse(event);
  const NavigationInput after = Held();
  // The motion up to where a button was let go still belongs to it.
  before.x = after.x;
  before.y = after.y;
  const bool released = (before.left && !after.left) || (before.middle && !after.middle) ||
                        (before.right && !after.right);
  if (!after.AnyButton()) ReleaseMouse();
  if (!released) return;
  ShowCursor(after);
  navigator_.Released(before, after, platform::NowSeconds());
}

void ViewNavigation::OnCaptureLost(wxMouseCaptureLostEvent&) {
  ReleaseMouse();
  held_.ForgetButtons();
  ShowCursor(Held());
  navigator_.Released(Held(), Held(), platform::NowSeconds());
}

void ViewNavigation::OnWheel(wxMouseEvent& event) {
  held_.Mouse(event);
  const bool inside = view_.GetClientRect().Contains(event.GetPosition());
  if (!site_.NavigableRenderer() || !inside || event.MiddleIsDown() ||
      event.GetWheelAxis() != wxMOUSE_WHEEL_VERTICAL) {
    return;
  }
  const double delta = std::max(event.GetWheelDelta(), 1);
  navigator_.Wheel(event.GetX(), event.GetY(), event.GetWheelRotation() / delta);
}

void ViewNavigation::OnTick() {
  if (!ticking_) return;
  moved_ = false;
  if (site_.NavigableRenderer()) {
    navigator_.Tick(Held(), platform::NowSeconds());
    site_.CameraStepped();
  }
  if (ticking_) timer_.StartOnce(moved_ ? kTickMilliseconds : kRestMilliseconds);
}

void ViewNavigation::ReleaseMouse() {
  if (view_.HasCapture()) view_.ReleaseMouse();
}

void ViewNavigation::ShowCursor(const NavigationInput& held) {
  const wxStockCursor cursor = CursorOf(held);
  if (cursor == cursor_) return;
  cursor_ = cursor;
  view_.SetCursor(cursor == wxCURSOR_ARROW ? wxNullCursor : wxCursor(cursor));
}

void ViewNavigation::ResetRoll() {
  if (site_.NavigableRenderer()) navigator_.ResetRoll();
}

void ViewNavigation::EyeHeightChanged() {
  if (site_.NavigableRenderer()) navigator_.EyeHeightChanged(platform::NowSeconds());
}

void ViewNavigation::Stop() {
  held_.ForgetKeys();
  held_.ForgetButtons();
  ReleaseMouse();
  ShowCursor({});
  navigator_.Stop();
}

RenderCamera ViewNavigation::Camera() const {
  const RaytraceImpl* renderer = site_.NavigableRenderer();
  return renderer ? renderer->PendingCamera() : RenderCamera();
}

void ViewNavigation::SetTicking(bool on) {
  ticking_ = on;
  if (on) {
    timer_.StartOnce(kTickMilliseconds);
  } else {
    timer_.Stop();
  }
}

void ViewNavigation::ShowMoving(const RenderCamera& camera) {
  moved_ = true;
  if (RaytraceImpl* renderer = site_.NavigableRenderer()) {
    renderer->StartRender(camera.position, camera.forward, camera.up, camera.fieldOfView,
                          camera.target, ModeMotion, true);
  }
}

void ViewNavigation::ShowStill(const RenderCamera& camera) {
  if (RaytraceImpl* renderer = site_.NavigableRenderer()) {
    renderer->StartRender(camera.position, camera.forward, camera.up, camera.fieldOfView,
                          camera.target, ModeStill, true);
    site_.CameraStepped();
  }
}

void ViewNavigation::AddDays(double days) {
  moved_ = true;
  RaytraceImpl* renderer = site_.NavigableRenderer();
  if (!renderer) return;
  const double julianDate = renderer->JulianDate() + days;
  renderer->SetJulianDate(julianDate);
  site_.RefreshStatusBar();
  renderer->StartRenderSameCamera(ModeSunMotion);
  if (site_.FollowsCamera()) SendDate(julianDate, renderer->Longitude());
}

void ViewNavigation::SendDate(double julianDate, float longitude) {
  IpcInterfaceApp* link = site_.Link();
  if (!link) return;
  const CalendarTime time = CalendarTimeFromJulianDate(julianDate, longitude);
  link->SendDateTime(time.year, time.month, time.day, time.hour, time.minute, time.second);
}

std::optional<Vec3> ViewNavigation::AskHostTarget() {
  IpcInterfaceApp* link = site_.Link();
  const auto camera = link ? link->GetCamera() : std::nullopt;
  if (!camera) return std::nullopt;
  return camera->target;
}

void ViewNavigation::SendCamera() {
  IpcInterfaceApp* link = site_.Link();
  const RaytraceImpl* renderer = site_.NavigableRenderer();
  if (!link || !renderer) return;
  const RenderCamera camera = renderer->PendingCamera();
  link->SendCamera(camera.position, camera.forward, camera.up, camera.fieldOfView);
}

}  // namespace qv
