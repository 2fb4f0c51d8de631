// The analyser's state as one chunk of bytes, and back.
#include "analysis/OrvelScope.h"
#include "frame/StateChunk.h"

#include <cmath>
#include <cstring>

namespace Orvel {

namespace {

template <typename Value>
bool readValue(const Core::CDataStore& store, const char* key, Value& value) {
    const void* const data = store.find("", key, static_cast<int>(sizeof value));
    if (data != nullptr) std::memcpy(&value, data, sizeof value);
    return data != nullptr;
}

} // namespace

int COrvelScope::getChunk(void** data) {
    store_.clear();
    void* blob = nullptr;
    const int blobSize = properties_.makeBlob(&blob);
    const float projector = projectorHz_;
    const std::int32_t page = activePage_;
    store_.setBlob(Vardo::StateKeys::kParameters, blob, blobSize);
    store_.setBlob(Vardo::StateKeys::kProjectorFrequency, &projector, sizeof projector);
    store_.setBlob(Vardo::StateKeys::kActivePage, &page, sizeof page);

    int size = 0;
    store_.serialise(data, &size);
    return size;
}

void COrvelScope::setChunk(const void* data, int size) {
    store_.parse(data, size);
    loadParameters();
    loadProjectorFrequency();
    loadActivePage();
    store_.clear();

    resetOvers();
    hostRefreshWanted_ = true;
    if (editor_ != nullptr) editor_->stateReplaced(activePage_);
}

void COrvelScope::loadParameters() {
    // No freeze ends because of the timing that is loaded along with it.
    loadingState_ = true;
    properties_.suspendNotifications();
    properties_.resetAll();
    const void* blob = nullptr;
    int size = 0;
    if (store_.getBlob(Vardo::StateKeys::kParameters, &blob, &size))
        properties_.loadBlob(blob, size);
    properties_.resumeNotifications();
    loadingState_ = false;
}

// The parameter alone is a share of the range up to half the sample rate, which may be another one
// now; the frequency that goes with it survives in hertz.
void COrvelScope::loadProjectorFrequency() {
    float hz = 0;
    readValue(store_, Vardo::StateKeys::kProjectorFrequency, hz);
    if (hz == projectorHz_.load()) return; // same rate: the parameter says it exactly
    if (!(hz <= sampleRate_ * 0.5F)) hz = 0;
    setProjectorPosition(projectorPosition(double{hz}, double{sampleRate_}));
}

void COrvelScope::setProjectorPosition(double position) {
    Vardo::IPluginParameter& projector = parameter(kSpectrumProjectorFrequency);
    const double normalized{projector.plainToNormalized(position)};
    if (projector.getNormalizedValue() == static_cast<float>(normalized)) {
        // Unmoved as a position; the frequency follows the sample rate.
        parameterChanged(&projector);
        return;
    }
    projector.setNormalizedValue(normalized, Vardo::kFromHost);
    hostRefreshWanted_ = true;
}

void COrvelScope::loadActivePage() {
    std::int32_t page = -1;
    readValue(store_, Vardo::StateKeys::kActivePage, page);
    setActivePage(page);
}

} // namespace Orvel
