#pragma once

namespace qv {

// Identifiers of menu entries, tools and controls. They are fixed, so that scripts which drive the
// windows keep working.
enum CommandId : int {
  kIdFlyMode = 1000,
  kIdWalkMode = 1001,
  kIdResetCameraRoll = 1002,
  kIdPreferences = 1003,
  kIdCameraLink = 1007,
  kIdSynchronizeCamera = 1008,
  kIdAmbientOcclusion = 1009,
  kIdLEM = 1010,
  kIdBackground = 1012,
  kIdCapture = 1013,
  kIdReloadData = 1015,
  kIdGauge = 10001,
  // Of the background dialog, which has numbers of its own.
  kIdTextureMode = 1000,
  kIdSimulationMode = 1001,
  kIdBackgroundList = 1002,
  kIdLogPanel = 10002,
};

}  // namespace qv
