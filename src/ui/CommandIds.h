#pragma once

namespace qv {

// Identifiers of menu entries, tools and controls. They are fixed, so that scripts which drive the
// windows keep working.
enum CommandId : int {
  kIdFlyMode = 1000,
  kIdWalkMode = 1001,
  kIdResetCameraRoll = 1002,
  kIdCameraLink = 1007,
  kIdSynchronizeCamera = 1008,
  kIdBackground = 1012,
  kIdReloadData = 1015,
  kIdGauge = 10001,
  // Of the background dialog, which has numbers of its own.
  kIdTextureMode = 1000,
  kIdSimulationMode = 1001,
  kIdBackgroundList = 1002,
};

}  // namespace qv
