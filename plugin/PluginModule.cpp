// What this module contains, and how it is made.
#include "frame/PluginModule.h"
#include "analysis/OrvelScope.h"
#include "online/UpdateCheck.h"
#include "platform/X11.h"
#include "views/OrvelScopeEditor.h"

#include <string>

namespace {
constexpr std::uint32_t kUniqueId = Vardo::fourCharacterCode("Qrnt");
constexpr const char* kProduct = "Orvel Scope";
constexpr const char* kVersion = "1.0.4";
constexpr std::uint32_t kVersionNumber = 0x10004;

Orvel::EditorFactory editorFactory(Vardo::VardoCallback* callback) {
    return [callback](Orvel::COrvelScope& analyser) {
        Orvel::EditorSurroundings surroundings;
        surroundings.callback = callback;
        surroundings.desktop = []() -> Sorel::IPlatform& { return Sorel::x11Platform(); };
        surroundings.versionText =
            std::string("Version ") + kVersion + (sizeof(void*) == 8 ? ", 64 bit" : ", 32 bit");
        surroundings.product = kProduct;
        surroundings.version = kVersion;
        surroundings.versionNumber = kVersionNumber;
        surroundings.webId = "SCOPE";
        surroundings.updateServer = Dorna::updateServer();
        return std::make_unique<Orvel::COrvelScopeEditor>(analyser, std::move(surroundings));
    };
}
} // namespace

void getPluginDescriptions(Vardo::PluginDescriptionList& list) {
    Vardo::PluginDescription analyser;
    analyser.uniqueId = kUniqueId;
    analyser.effectName = kProduct;
    analyser.productName = "Quillmere Orvel Line";
    analyser.vendorName = "Quillmere";
    analyser.inputPairs = 1;
    analyser.outputPairs = 1;
    analyser.programs = 1;
    analyser.versionText = kVersion;
    analyser.category = Vardo::kCategoryEffect;
    analyser.hasSidechain = false;
    analyser.versionNumber = kVersionNumber;
    analyser.flags = 1;
    list.push_back(analyser);
}

Vardo::IPluginBase* createPlugin(Vardo::VardoCallback* callback, int id) {
    if (static_cast<std::uint32_t>(id) != kUniqueId) return nullptr;
    return new Orvel::COrvelScope(callback, editorFactory(callback));
}
