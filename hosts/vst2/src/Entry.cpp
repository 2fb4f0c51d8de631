// The names by which VST2 hosts find this module, the only ones it exports.
#include "VardoVST.h"

#if defined(_WIN32)
#define ORVEL_EXPORT __declspec(dllexport)
#else
#define ORVEL_EXPORT __attribute__((visibility("default")))
#endif

extern "C" {

ORVEL_EXPORT vst2::AEffect* VSTPluginMain(vst2::HostCallback host) {
    return Vardo::createEffect(host);
}

ORVEL_EXPORT vst2::AEffect* MAIN(vst2::HostCallback host) { return Vardo::createEffect(host); }

#if !defined(_WIN32)
// Hosts of old look for `main`, a name that the language keeps for programs.
ORVEL_EXPORT vst2::AEffect* entryOfOldHosts(vst2::HostCallback host) asm("main")
    __attribute__((alias("VSTPluginMain")));
#endif

} // extern "C"
