// Construction: the plug-in, its parameters as the host sees them, and what audio needs.
#include "Vardo_AAX_Wrapper.h"

#include "ChannelPointers.h"
#include "EffectTexts.h"
#include "Guard.h"

#include "AAX_CBinaryDisplayDelegate.h"
#include "AAX_CBinaryTaperDelegate.h"
#include "AAX_CLinearTaperDelegate.h"
#include "AAX_CNumberDisplayDelegate.h"
#include "AAX_CParameter.h"
#include "AAX_IController.h"
#include "core/Utf8.h"
#include "frame/PluginModule.h"
#include "frame/PluginParameter.h"

#include <algorithm>
#include <cmath>
#include <cstring>

using namespace Vardo;
using namespace Vardo::Aax;

namespace {
constexpr const char* kBypassNames[] = {"kBypass", "Bypass"};
constexpr std::size_t kLongestId = 31;    // bytes that the SDK keeps of an id
constexpr std::size_t kMostEvents = 1024; // of one block

bool isBypassName(const char* name) {
    return std::any_of(std::begin(kBypassNames), std::end(kBypassNames),
                       [name](const char* bypass) { return std::strcmp(name, bypass) == 0; });
}

std::string idFromName(const char* name) {
    std::string id = name;
    id.resize(Core::Utf8::boundaryAtOrBefore(id, kLongestId));
    return id;
}
} // namespace

Vardo_AAX_Wrapper::~Vardo_AAX_Wrapper() {
    plugin_.reset(); // while all that it may ask for is still there
}

AAX_Result Vardo_AAX_Wrapper::EffectInit() {
    return guarded([this]() -> AAX_Result {
        delivery_.claimThread();
        if (!findRecord()) return AAX_ERROR_NULL_OBJECT;
        prepareBuffers(); // before there is a plug-in that could need them
        plugin_.reset(createPlugin(this, static_cast<int>(record_.uniqueId)));
        if (plugin_ == nullptr) return AAX_ERROR_NULL_OBJECT;
        setUpPlugin();
        parameters_.build(*plugin_);
        addParameters();
        if (bypassIndex_ < 0) addBypassParameter();
        mPacketDispatcher.Initialize(Controller(), this);
        return AAX_SUCCESS;
    });
}

bool Vardo_AAX_Wrapper::findRecord() {
    PluginDescriptionList records;
    getPluginDescriptions(records);
    if (recordIndex_ < 0 || recordIndex_ >= static_cast<int>(records.size())) return false;
    record_ = records[static_cast<std::size_t>(recordIndex_)];
    return true;
}

void Vardo_AAX_Wrapper::prepareBuffers() {
    outputPairs_ = std::clamp(record_.outputPairs, 1, ChannelPointers::kMost / 2);
    hasSidechain_ = record_.hasSidechain;
    takesMidi_ = takesMidi(record_);
    if (takesMidi_) events_.reserve(kMostEvents);
    silence_.assign(kAnnouncedBlock, 0.0F);
    scrap_.assign(kAnnouncedBlock, 0.0F);
}

void Vardo_AAX_Wrapper::setUpPlugin() {
    AAX_CSampleRate rate = 0;
    if (Controller() != nullptr && Controller()->GetSampleRate(&rate) == AAX_SUCCESS &&
        std::isfinite(rate) && rate > 0)
        sampleRate_ = static_cast<double>(rate);
    plugin_->setSampleRate(sampleRate_);
    plugin_->setBlockSize(kAnnouncedBlock);
}

void Vardo_AAX_Wrapper::addParameters() {
    const AAX_CLinearTaperDelegate<float> taper(0.0F, 1.0F);
    const AAX_CNumberDisplayDelegate<float> display;
    idTexts_.reserve(static_cast<std::size_t>(parameters_.size()));
    for (int i = 0; i < parameters_.size(); ++i) {
        IPluginParameter& parameter = *parameters_.parameter(i);
        const char* name = parameter.getNameText();
        if (bypassIndex_ < 0 && isBypassName(name)) bypassIndex_ = i;
        const std::string& id = idTexts_.emplace_back(idFromName(name));
        auto shown = std::make_unique<AAX_CParameter<float>>(id.c_str(), AAX_CString(name),
                                                             parameter.getDefaultNormalizedValue(),
                                                             taper, display, true);
        shown->SetNormalizedValue(static_cast<double>(parameter.getNormalizedValue()));
        mParameterManager.AddParameter(shown.release());
    }
}

void Vardo_AAX_Wrapper::addBypassParameter() {
    auto bypass = std::make_unique<AAX_CParameter<bool>>(
        cDefaultMasterBypassID, AAX_CString("Master Bypass"), false,
        AAX_CBinaryTaperDelegate<bool>(), AAX_CBinaryDisplayDelegate<bool>("bypass", "on"), true);
    mParameterManager.AddParameter(bypass.release());
}

IPluginEditor* Vardo_AAX_Wrapper::editor() {
    return plugin_ == nullptr ? nullptr : plugin_->getEditor();
}
