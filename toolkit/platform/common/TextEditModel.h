// Editing one line of text: caret, selection, changes, one step back. Draws nothing.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Sorel {

/// The text is well-formed UTF-8 at all times and at most `maxBytes` long. Offsets are bytes and
/// lie between characters; a base character and the marks on it count as one.
class TextEditModel {
  public:
    enum class Motion { kCharacterLeft, kCharacterRight, kWordLeft, kWordRight, kStart, kEnd };

    explicit TextEditModel(std::size_t maxBytes)
        : maxBytes_(maxBytes) {}

    const std::string& text() const { return now_.text; }
    std::size_t caret() const { return now_.caret; }
    std::size_t selectionStart() const;
    std::size_t selectionEnd() const;
    bool hasSelection() const { return now_.anchor != now_.caret; }
    std::string selectedText() const;

    /// The caret goes to the end; there is no step back from here.
    void setText(std::string_view utf8);
    /// Moved to character boundaries inside the text.
    void select(std::size_t anchor, std::size_t caret);
    void selectAll() { select(0, now_.text.size()); }
    void selectWordAt(std::size_t offset);
    void extendTo(std::size_t offset) { select(now_.anchor, offset); }
    void move(Motion motion, bool extend);

    /// In place of the selection; what does not fit is left out. Typing one character after the
    /// other counts as one change.
    void insert(std::string_view utf8);
    /// The selection, or else what lies between the caret and where `motion` leads.
    void erase(Motion motion);
    /// Swaps the text with the one before the last change, so a second call does it again.
    bool undo();

  private:
    enum class Change { kNone, kTyping, kErasing };
    struct State {
        std::string text;
        std::size_t caret = 0;
        std::size_t anchor = 0;
    };

    std::size_t snapped(std::size_t offset) const;
    std::size_t before(std::size_t offset) const;
    std::size_t after(std::size_t offset) const;
    std::size_t target(Motion motion) const;
    void beginChange(Change kind);
    void removeSelection();

    std::size_t maxBytes_;
    State now_;
    State previous_;
    bool canUndo_ = false;
    Change running_ = Change::kNone;
};

} // namespace Sorel
