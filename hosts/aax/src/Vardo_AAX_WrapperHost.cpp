// What the plug-in asks of the AAX host. Main thread.
#include "Vardo_AAX_Wrapper.h"

#include "SongPosition.h"

#include "AAX_CString.h"
#include "AAX_Errors.h"
#include "AAX_IController.h"
#include "hosting/Text.h"

#include <algorithm>

using namespace Vardo;
using namespace Vardo::Aax;

namespace {
constexpr std::size_t kHostNameRoom = 65; // bytes that a plug-in lends, the zero included
}

int Vardo_AAX_Wrapper::getHostProductString(char* text) {
    if (text == nullptr || Controller() == nullptr) return 0;
    AAX_CString name;
    if (Controller()->GetHostName(&name) != AAX_SUCCESS || name.Get() == nullptr) return 0;
    copyText(text, name.Get(), kHostNameRoom);
    return 1;
}

int Vardo_AAX_Wrapper::setLatency(int samples) {
    if (Controller() == nullptr) return 0;
    return Controller()->SetSignalLatency(std::max(samples, 0)) == AAX_SUCCESS ? 1 : 0;
}

float Vardo_AAX_Wrapper::getTempo() {
    return static_cast<float>(SongPosition::read(Transport()).tempo);
}

int Vardo_AAX_Wrapper::getInterfaceKind() { return static_cast<int>(InterfaceKind::aax); }
