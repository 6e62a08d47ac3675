#pragma once

namespace qv {

// Identifiers of menu entries, tools and controls. They are fixed, so that scripts which drive the
// windows keep working.
enum CommandId : int {
  kIdFlyMode = 1000,
  kIdWalkMode = 1001,
  kIdResetCameraRoll = 1002,
  kIdPreferences = 1003,
  kIdPresetsPanel = 1005,
  kIdLightPanel = 1006,
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
  // Of the presets panel, which has numbers of its own too.
  kIdExplode = 0,
  kIdUpdateView = 1,
  kIdInsertView = 2,
  kIdPresetList = 1000,
  kIdAddView = 1001,
  kIdAddKeyframeAnimation = 1002,
  kIdAddTour = 1003,
  kIdRecordPath = 1004,
  kIdGenerateMovie = 1005,
  kIdMovePresetUp = 1006,
  kIdMovePresetDown = 1007,
  kIdDeletePreset = 1008,
  kIdImportPages = 1009,
  kIdImportPath = 1010,
};

}  // namespace qv
