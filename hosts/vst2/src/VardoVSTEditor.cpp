#include "VardoVSTEditor.h"

#include "frame/IdleList.h"
#include "frame/PluginEditor.h"

namespace Vardo {

namespace {
// The numbers of keys and modifiers are the same on both sides.
KeyEvent keyEvent(const vst2::VstKeyCode& key) { return {key.character, key.virt, key.modifier}; }
} // namespace

CVardoVST2_Editor::~CVardoVST2_Editor() { CVardoVST2_Editor::close(); }

bool CVardoVST2_Editor::getRect(vst2::ERect** rect) {
    int width = 0;
    int height = 0;
    if (editor_ != nullptr) editor_->getSize(&width, &height);
    rect_ = {0, 0, static_cast<std::int16_t>(height), static_cast<std::int16_t>(width)};
    *rect = &rect_;
    return true;
}

bool CVardoVST2_Editor::open(void* parent) {
    if (editor_ == nullptr || parent == nullptr) return false;
    if (editor_->isOpen()) editor_->close(); // some hosts forget to
    editor_->open(parent);
    return editor_->isOpen();
}

void CVardoVST2_Editor::close() {
    if (editor_ != nullptr && editor_->isOpen()) editor_->close();
}

bool CVardoVST2_Editor::onKeyDown(const vst2::VstKeyCode& key) {
    return editor_ != nullptr && editor_->onKeyDown(keyEvent(key));
}

bool CVardoVST2_Editor::onKeyUp(const vst2::VstKeyCode& key) {
    return editor_ != nullptr && editor_->onKeyUp(keyEvent(key));
}

bool CVardoVST2_Editor::onWheel(float distance) {
    return editor_ != nullptr && editor_->onWheel(distance);
}

bool CVardoVST2_Editor::setKnobMode(std::int32_t mode) {
    return editor_ != nullptr && editor_->setKnobMode(mode) != 0;
}

void CVardoVST2_Editor::idle() { IdleList::instance().tick(); }

} // namespace Vardo
