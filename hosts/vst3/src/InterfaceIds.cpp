// Ids of interfaces that the SDK declares, but whose definition its Debian package leaves out.
#include "pluginterfaces/gui/iplugview.h"

namespace Steinberg {
DEF_CLASS_IID(IPlugView)
DEF_CLASS_IID(IPlugFrame)
#if SMTG_OS_LINUX
DEF_CLASS_IID(Linux::IEventHandler)
DEF_CLASS_IID(Linux::ITimerHandler)
DEF_CLASS_IID(Linux::IRunLoop)
#endif
} // namespace Steinberg
