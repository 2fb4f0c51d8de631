// What this module contains, and how it is made.
#include "frame/PluginModule.h"
#include "analysis/OrvelScope.h"

namespace {
constexpr std::uint32_t kUniqueId = Vardo::fourCharacterCode("Qrnt");
} // namespace

void getPluginDescriptions(Vardo::PluginDescriptionList& list) {
    Vardo::PluginDescription analyser;
    analyser.uniqueId = kUniqueId;
    analyser.effectName = "Orvel Scope";
    analyser.productName = "Quillmere Orvel Line";
    analyser.vendorName = "Quillmere";
    analyser.inputPairs = 1;
    analyser.outputPairs = 1;
    analyser.programs = 1;
    analyser.versionText = "1.0.4";
    analyser.category = Vardo::kCategoryEffect;
    analyser.hasSidechain = false;
    analyser.versionNumber = 0x10004;
    analyser.flags = 1;
    list.push_back(analyser);
}

Vardo::IPluginBase* createPlugin(Vardo::VardoCallback* callback, int id) {
    if (static_cast<std::uint32_t>(id) != kUniqueId) return nullptr;
    return new Orvel::COrvelScope(callback);
}
