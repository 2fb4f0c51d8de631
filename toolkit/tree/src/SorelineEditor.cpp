#include "tree/SorelineEditor.h"

#include "frame/PluginBase.h"
#include "frame/VardoCallback.h"
#include "tree/TimerObject.h"

#include <algorithm>
#include <utility>

namespace Sorel {

namespace {
constexpr std::uint64_t kHintMs = 1000;
constexpr std::uint64_t kStillMs = 1000;
} // namespace

CSorelineEditor::CSorelineEditor(Vardo::IPluginBase* plugin, Vardo::VardoCallback* callback)
    : plugin_(plugin)
    , callback_(callback) {}

CSorelineEditor::~CSorelineEditor() {
    closeFrame();
    for (auto& [index, binding] : controlsByParameter_)
        binding.parameter->removeListener(this);
}

CFrame* CSorelineEditor::createFrame(const CRect& rect, void* parentWindow) {
    return new CFrame(rect, parentWindow, this, windowTitle());
}

void CSorelineEditor::openFrame(void* parentWindow) {
    if (frame_ != nullptr) return;
    frame_ = createFrame(rect_, parentWindow);
    onFrameCreated(*frame_);
    lastIdleTime_ = platform().ticks();
    idleFrame();
}

void CSorelineEditor::closeFrame() {
    if (frame_ == nullptr) return;
    onFrameClosing();
    CFrame* frame = std::exchange(frame_, nullptr);
    frame->close();
    frame->release();
}

void CSorelineEditor::idleFrame() {
    if (!lock_.tryEnter()) return;
    if (frame_ != nullptr && !idling_) {
        idling_ = true;
        lastIdleTime_ = platform().ticks();
        CTimerRegistry::instance().pump(lastIdleTime_);
        const Counted<CFrame> frame(frame_);
        if (frame) frame->doIdle();
        if (frame_ != nullptr) onIdle();
        if (hintText_.c_str()[0] != 0 && lastIdleTime_ > timeOfHint_ + kHintMs)
            hintText_.assign("");
        idling_ = false;
    }
    lock_.leave();
}

bool CSorelineEditor::isFrameStill() const {
    return frame_ != nullptr && platform().ticks() > frame_->lastPaintTime() + kStillMs;
}

void CSorelineEditor::setRect(double width, double height) {
    rect_ = {0.0, 0.0, width, height};
    if (frame_ != nullptr) frame_->setSize(width, height);
}

void CSorelineEditor::setHostSize(int width, int height) {
    if (width > 0 && height > 0) setRect(width / scale_, height / scale_);
}

bool CSorelineEditor::getHostSize(int* width, int* height) const {
    *width = static_cast<int>(rect_.width() * scale_);
    *height = static_cast<int>(rect_.height() * scale_);
    return true;
}

void CSorelineEditor::setHint(const char* text) {
    hintText_.assign(text);
    timeOfHint_ = platform().ticks();
}

void CSorelineEditor::addControlToParameter(Vardo::IPluginParameter& parameter, CView* control) {
    Binding& binding = controlsByParameter_[parameter.getId()];
    if (binding.parameter == nullptr) {
        binding.parameter = &parameter;
        parameter.addListener(this, false);
    }
    if (std::find(binding.controls.begin(), binding.controls.end(), control) ==
        binding.controls.end())
        binding.controls.push_back(control);
}

void CSorelineEditor::removeControl(const CView* control) {
    for (auto entry = controlsByParameter_.begin(); entry != controlsByParameter_.end();) {
        Binding& binding = entry->second;
        std::erase(binding.controls, control);
        if (binding.controls.empty()) {
            binding.parameter->removeListener(this);
            entry = controlsByParameter_.erase(entry);
        } else {
            ++entry;
        }
    }
}

void CSorelineEditor::parameterChanged(int parameterIndex, const CView* except) {
    const auto found = controlsByParameter_.find(parameterIndex);
    if (found == controlsByParameter_.end()) return;
    std::vector<Counted<CView>> controls;
    for (CView* control : found->second.controls)
        if (control != except) controls.emplace_back(control);
    for (const auto& control : controls)
        control->onParameterChanged(parameterIndex);
}

void CSorelineEditor::parameterChanged(Vardo::IPluginParameter* parameter) {
    if (parameter != nullptr) parameterChanged(parameter->getId(), nullptr);
}

void CSorelineEditor::beginEdit(Vardo::IPluginParameter& parameter) {
    if (callback_ != nullptr) callback_->beginEdit(parameter.getHostIndex());
}

void CSorelineEditor::endEdit(Vardo::IPluginParameter& parameter) {
    if (callback_ != nullptr) callback_->endEdit(parameter.getHostIndex());
}

void CSorelineEditor::performEdit(Vardo::IPluginParameter& parameter,
                                  double normalized,
                                  CView* except) {
    parameter.setNormalizedValueFrom(this, static_cast<float>(normalized));
    if (callback_ != nullptr)
        callback_->automate(parameter.getHostIndex(), parameter.getNormalizedValue());
    parameterChanged(parameter.getId(), except);
}

} // namespace Sorel
