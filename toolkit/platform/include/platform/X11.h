// The X11 desktop.
#pragma once

#include "platform/Frame.h"

namespace Sorel {

/// The desktop's platform: XCB windows, shared-memory pictures, xkbcommon keys. One for the
/// process; each frame has its own connection to the display, made when it opens. With ORVEL_NO_SHM
/// in the environment, pixels are sent instead of shared.
IPlatform& x11Platform();

} // namespace Sorel
