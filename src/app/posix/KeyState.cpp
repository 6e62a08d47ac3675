#include "app/KeyState.h"

namespace qv {

// Window systems tell the keys only to the window that has them, as events.
void AskForKeys(NavigationInput&) {}

}  // namespace qv
