#pragma once

namespace qv {

// Identifiers of menu entries, tools and controls. They are fixed, so that scripts which drive the
// windows keep working.
enum CommandId : int {
  kIdCameraLink = 1007,
  kIdSynchronizeCamera = 1008,
  kIdReloadData = 1015,
  kIdGauge = 10001,
};

}  // namespace qv
