#pragma once

#include <cstdint>

namespace qv {

// Numbers of the window messages between viewer and host.
enum HostMessage : std::uint32_t {
  WM_HOST_RESEND_SCENE = 32969,
  WM_HOST_CAMERA_CHANGED = 32970,
  WM_HOST_VIEWER_CLOSED = 32971,
  WM_HOST_DATE_TIME_CHANGED = 32972,
  WM_HOST_GET_PAGES = 32973,
  WM_HOST_GET_CAMERA = 32974,
  WM_HOST_SET_PROPERTY = 32975,
  WM_HOST_GET_PROPERTY = 32976,
  WM_VIEWER_RELEASE_SHARED = 32978,
  WM_VIEWER_REOPEN_SHARED = 32979,
  WM_HOST_GET_LOCATION = 32980,
};

}  // namespace qv
