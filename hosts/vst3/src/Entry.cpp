// The names by which VST3 hosts find this module, the only ones it exports.
#include "HostContext.h"
#include "PluginFactory.h"

#if defined(_WIN32)
#define ORVEL_EXPORT __declspec(dllexport)
#else
#define ORVEL_EXPORT __attribute__((visibility("default")))
#endif

namespace {
// Nothing is to be set up before the first factory; what is left at the end belongs to the host.
bool enterModule() { return true; }

bool leaveModule() {
    Vardo::HostContext::set(nullptr);
    return true;
}
} // namespace

extern "C" {

ORVEL_EXPORT Steinberg::IPluginFactory* PLUGIN_API GetPluginFactory() {
    return Vardo::PluginFactory::get();
}

// Linux passes the handle of the module.
ORVEL_EXPORT bool ModuleEntry(void* /*module*/) { return enterModule(); }
ORVEL_EXPORT bool ModuleExit() { return leaveModule(); }

// Windows.
ORVEL_EXPORT bool InitDll() { return enterModule(); }
ORVEL_EXPORT bool ExitDll() { return leaveModule(); }

} // extern "C"
