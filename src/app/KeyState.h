#pragma once

#include "navigation/NavigationInput.h"

namespace qv {

// Asks the system for the keys of `held`, where systems tell that; where they do not, what was kept
// from the window's own events stays. Buttons and pointer are left alone.
void AskForKeys(NavigationInput& held);

}  // namespace qv
