// Editing one line of text.
#include "common/TextEditModel.h"

#include "core/Utf8.h"

#include <algorithm>
#include <utility>

namespace Sorel {

namespace Utf8 = Core::Utf8;

namespace {

constexpr char32_t kZeroWidthJoiner = 0x200D;

/// Letters, digits and everything beyond ASCII that is no space or punctuation there.
bool isWordCharacter(char32_t code) {
    if (code < 0x80)
        return (code >= '0' && code <= '9') || (code >= 'A' && code <= 'Z') ||
               (code >= 'a' && code <= 'z') || code == '_';
    if (code >= 0x80 && code <= 0xBF) return code == 0xAA || code == 0xB5 || code == 0xBA;
    return !(code >= 0x2000 && code <= 0x206F) && !(code >= 0x3000 && code <= 0x303F);
}

bool isWordAt(const std::string& text, std::size_t offset) {
    return isWordCharacter(Utf8::decode(text, offset).code);
}

} // namespace

std::size_t TextEditModel::selectionStart() const { return std::min(now_.anchor, now_.caret); }
std::size_t TextEditModel::selectionEnd() const { return std::max(now_.anchor, now_.caret); }

std::string TextEditModel::selectedText() const {
    return now_.text.substr(selectionStart(), selectionEnd() - selectionStart());
}

void TextEditModel::setText(std::string_view utf8) {
    // No more than the limit is looked at: each byte makes at least one.
    std::string line = Utf8::oneLine(utf8.substr(0, maxBytes_ + 4));
    line.resize(Utf8::boundaryAtOrBefore(line, maxBytes_));
    now_ = {line, line.size(), line.size()};
    canUndo_ = false;
    running_ = Change::kNone;
}

std::size_t TextEditModel::after(std::size_t offset) const {
    const std::string& text = now_.text;
    if (offset >= text.size()) return text.size();
    Utf8::Decoded last = Utf8::decode(text, offset);
    offset += last.length;
    while (offset < text.size()) {
        const Utf8::Decoded next = Utf8::decode(text, offset);
        const bool joined = last.code == kZeroWidthJoiner;
        if (!Utf8::isExtending(next.code) && !joined) break;
        last = next;
        offset += next.length;
    }
    return offset;
}

std::size_t TextEditModel::before(std::size_t offset) const {
    // Clusters are only known from their beginning. Lines are short.
    std::size_t at = 0;
    while (at < now_.text.size()) {
        const std::size_t next = after(at);
        if (next >= offset) break;
        at = next;
    }
    return at;
}

std::size_t TextEditModel::snapped(std::size_t offset) const {
    if (offset >= now_.text.size()) return now_.text.size();
    const std::size_t start = before(offset);
    return after(start) == offset ? offset : start;
}

void TextEditModel::select(std::size_t anchor, std::size_t caret) {
    now_.anchor = snapped(anchor);
    now_.caret = snapped(caret);
    running_ = Change::kNone;
}

void TextEditModel::selectWordAt(std::size_t offset) {
    const std::string& text = now_.text;
    std::size_t start = snapped(offset);
    if (start == text.size()) start = before(start);
    if (text.empty()) return;
    const bool word = isWordAt(text, start);
    std::size_t end = start;
    while (start > 0 && isWordAt(text, before(start)) == word)
        start = before(start);
    while (end < text.size() && isWordAt(text, end) == word)
        end = after(end);
    select(start, end);
}

std::size_t TextEditModel::target(Motion motion) const {
    const std::string& text = now_.text;
    std::size_t at = now_.caret;
    switch (motion) {
    case Motion::kCharacterLeft:
        return at == 0 ? 0 : before(at);
    case Motion::kCharacterRight:
        return after(at);
    case Motion::kWordLeft:
        while (at > 0 && !isWordAt(text, before(at)))
            at = before(at);
        while (at > 0 && isWordAt(text, before(at)))
            at = before(at);
        return at;
    case Motion::kWordRight:
        while (at < text.size() && !isWordAt(text, at))
            at = after(at);
        while (at < text.size() && isWordAt(text, at))
            at = after(at);
        return at;
    case Motion::kStart:
        return 0;
    case Motion::kEnd:
        break;
    }
    return text.size();
}

void TextEditModel::move(Motion motion, bool extend) {
    std::size_t to = target(motion);
    // A plain arrow first drops the selection on its side.
    if (!extend && hasSelection()) {
        if (motion == Motion::kCharacterLeft) to = selectionStart();
        if (motion == Motion::kCharacterRight) to = selectionEnd();
    }
    select(extend ? now_.anchor : to, to);
}

void TextEditModel::beginChange(Change kind) {
    if (running_ != kind) previous_ = now_;
    running_ = kind;
    canUndo_ = true;
}

void TextEditModel::removeSelection() {
    const std::size_t start = selectionStart();
    now_.text.erase(start, selectionEnd() - start);
    now_.caret = now_.anchor = start;
}

void TextEditModel::insert(std::string_view utf8) {
    std::string line = Utf8::oneLine(utf8.substr(0, maxBytes_ + 4));
    const std::size_t kept = now_.text.size() - (selectionEnd() - selectionStart());
    line.resize(Utf8::boundaryAtOrBefore(line, maxBytes_ - kept));
    if (line.empty()) return;
    beginChange(Change::kTyping);
    removeSelection();
    now_.text.insert(now_.caret, line);
    now_.caret += line.size();
    now_.anchor = now_.caret;
}

void TextEditModel::erase(Motion motion) {
    const std::size_t to = target(motion);
    if (!hasSelection() && to == now_.caret) return;
    beginChange(Change::kErasing);
    if (!hasSelection()) now_.anchor = to;
    removeSelection();
}

bool TextEditModel::undo() {
    if (!canUndo_) return false;
    std::swap(now_, previous_);
    running_ = Change::kNone;
    return true;
}

} // namespace Sorel
