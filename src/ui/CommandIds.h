#pragma once

namespace qv {

// Identifiers of menu entries, tools and controls. They are fixed, so that scripts which drive the
// windows keep working.
enum CommandId : int {
  kIdPreferences = 1003,
  kIdCameraLink = 1007,
  kIdSynchronizeCamera = 1008,
  kIdAmbientOcclusion = 1009,
  kIdLEM = 1010,
  kIdCapture = 1013,
  kIdReloadData = 1015,
  kIdGauge = 10001,
  kIdLogPanel = 10002,
};

}  // namespace qv
