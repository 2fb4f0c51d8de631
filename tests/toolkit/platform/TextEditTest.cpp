// Editing a line: whatever is typed, pasted or selected, the text stays well formed and bounded,
// and editing ends once.
#include "Recorder.h"
#include "common/InFrameTextEdit.h"
#include "core/Utf8.h"
#include "platform/Offscreen.h"

#include <gtest/gtest.h>

#include <random>

using namespace Sorel;

namespace Utf8 = Core::Utf8;

namespace {

/// A box in an off-screen frame, with the keyboard.
class TextEditTest : public testing::Test {
  protected:
    void SetUp() override {
        events.frame = platform.createFrame(events, {0, 0, 100, 50}, nullptr, "");
        box = events.frame->createTextEdit(edit, {});
        box->setFocus();
        events.textEdit = box.get();
    }
    void TearDown() override {
        box.reset();
        events.frame->release();
    }
    COffscreenFrame& user() { return *platform.frame(); }
    void control(char letter) { user().key(KeyEvent{letter, 0, Modifier::kControl}); }
    /// The text with [ ] around the selection, or | at the caret.
    std::string shown() const {
        const IOSTextEdit::InFrame& in = *box->inFrame();
        std::string text;
        for (std::size_t i = 0; i <= in.text.size(); ++i) {
            const bool selected = in.selectionStart != in.selectionEnd;
            if (selected && i == in.selectionStart) text += '[';
            if (selected && i == in.selectionEnd) text += ']';
            if (!selected && i == in.caret) text += '|';
            if (i < in.text.size()) text += in.text[i];
        }
        return text;
    }

    COffscreenPlatform platform;
    Recorder events;
    EditRecorder edit;
    std::unique_ptr<IOSTextEdit> box;
};

TEST_F(TextEditTest, EditsLikeAnyTextBox) {
    user().type("Mix 9 bus, loud");
    EXPECT_EQ(shown(), "Mix 9 bus, loud|");
    user().key(Key::kLeft, Modifier::kControl);
    user().key(Key::kLeft, Modifier::kControl | Modifier::kShift);
    EXPECT_EQ(shown(), "Mix 9 [bus, ]loud");
    user().type("X");
    EXPECT_EQ(shown(), "Mix 9 X|loud");
    control('z');
    EXPECT_EQ(shown(), "Mix 9 [bus, ]loud");
    control('z');
    EXPECT_EQ(shown(), "Mix 9 X|loud");
    user().key(Key::kBack, Modifier::kControl);
    user().key(Key::kDelete);
    EXPECT_EQ(shown(), "Mix 9 |oud");
    user().key(Key::kHome, Modifier::kShift);
    user().key(Key::kRight);
    EXPECT_EQ(shown(), "Mix 9 |oud") << "an arrow leaves the selection on its side";
    box->onMouse(1, false, true);
    EXPECT_EQ(shown(), "[Mix] 9 oud");
    box->onMouse(5, true, false);
    EXPECT_EQ(shown(), "[Mix 9] oud");
    control('a');
    user().key(Key::kBack);
    EXPECT_EQ(shown(), "|");
}

TEST_F(TextEditTest, CutsCopiesAndPastes) {
    box->setText("one two");
    box->setSelection(0, 3);
    control('x');
    EXPECT_EQ(platform.clipboard(), "one");
    EXPECT_EQ(shown(), "| two");
    user().key(Key::kEnd);
    control('v');
    EXPECT_EQ(shown(), " twoone|");
    platform.setClipboard("a\nb\x01\xFF"
                          "c\r\n");
    control('a');
    user().key(Key::kInsert, Modifier::kShift);
    EXPECT_EQ(box->getText(), "a b \uFFFD"
                              "c");
    control('c');
    EXPECT_NE(platform.clipboard(), "") << "copying nothing keeps what is there";
}

TEST_F(TextEditTest, MovesByWhatIsSeenAsACharacter) {
    box->setText("e\u0301\U0001F469\u200D\U0001F4BBz"); // accent on its own; a joined picture
    user().key(Key::kLeft);
    user().key(Key::kLeft);
    EXPECT_EQ(box->inFrame()->caret, 3U);
    user().key(Key::kBack);
    EXPECT_EQ(box->getText(), "\U0001F469\u200D\U0001F4BBz");
    user().key(Key::kDelete);
    EXPECT_EQ(box->getText(), "z");
    box->setText("\u00E9\u00E9");
    box->setSelection(1, 3); // inside characters
    EXPECT_EQ(shown(), "[\u00E9]\u00E9");
}

TEST_F(TextEditTest, HoldsAtMost255Bytes) {
    std::string euros;
    for (int i = 0; i < 90; ++i)
        euros += "\u20AC";
    box->setText("a" + euros);
    EXPECT_EQ(box->getText().size(), 1 + 84 * 3U);
    user().type("bc\u00E9d");
    EXPECT_EQ(box->getText().size(), 255U);
    EXPECT_EQ(box->getText().substr(253), "bc");
}

TEST_F(TextEditTest, EndsOnceHoweverItEnds) {
    user().key(Key::kReturn);
    user().loseFocus();
    EXPECT_EQ(edit.log, "commit ");
    EXPECT_FALSE(events.frame->hasKeyboardFocus());

    // The callee may delete the box inside the call.
    edit.log.clear();
    edit.atEnd = [this] {
        events.textEdit = nullptr;
        box.reset();
    };
    for (const int way : {0, 1, 2}) {
        box = events.frame->createTextEdit(edit, {});
        events.textEdit = box.get();
        box->setFocus();
        if (way == 0) user().key(Key::kEscape);
        if (way == 1) user().loseFocus();
        if (way == 2) events.frame->createTextEdit(edit, {})->setFocus(); // another box
        EXPECT_EQ(box, nullptr);
    }
    EXPECT_EQ(edit.log, "restore commit commit ");

    // A clipboard's answer that comes too late finds nobody; a window that goes first is no harm.
    edit.log.clear();
    box = events.frame->createTextEdit(edit, {});
    box->setFocus();
    events.frame->destroyWindow();
    box->onKeyDown({0, Key::kInsert, Modifier::kShift});
    box->onKeyDown({0, Key::kReturn, 0});
    EXPECT_EQ(edit.log, "commit ");
}

TEST_F(TextEditTest, HandsOnTheKeysItDoesNotUse) {
    user().key(Key::kTab, Modifier::kShift);
    user().key(Key::kF1);
    EXPECT_EQ(edit.log, "key2 key40 ");
    EXPECT_EQ(box->getText(), "");
}

TEST_F(TextEditTest, TheCaretBlinksAndShowsWhileTyping) {
    box->onIdle(10000);
    EXPECT_TRUE(box->inFrame()->caretShown);
    box->onIdle(10500);
    EXPECT_FALSE(box->inFrame()->caretShown);
    user().type("x");
    EXPECT_TRUE(box->inFrame()->caretShown);
    box->onIdle(10999);
    EXPECT_TRUE(box->inFrame()->caretShown);
}

TEST(Utf8, IsSafeAgainstAnyBytes) {
    std::mt19937 random(7);
    for (int run = 0; run < 3000; ++run) {
        std::string bytes(random() % 40, ' ');
        for (char& c : bytes)
            c = static_cast<char>(random() % 3 == 0 ? 0xC0 + random() % 64 : random() % 256);
        const std::string line = Utf8::oneLine(bytes);
        // What comes out is well formed: a second time changes nothing.
        ASSERT_EQ(Utf8::oneLine(line), line) << "seed 7, run " << run;
        TextEditModel model(16);
        for (int step = 0; step < 30; ++step) {
            if (step % 3 == 0) model.insert(bytes.substr(random() % (bytes.size() + 1)));
            if (step % 3 == 1) model.select(random() % 20, random() % 20);
            if (step % 3 == 2) model.erase(static_cast<TextEditModel::Motion>(random() % 6));
            if (step % 7 == 0) model.undo();
            ASSERT_LE(model.text().size(), 16U);
            ASSERT_EQ(Utf8::oneLine(model.text()), model.text());
            ASSERT_EQ(Utf8::boundaryAtOrBefore(model.text(), model.caret()), model.caret());
        }
    }
    // Overlong forms, surrogates and codes beyond the last one.
    EXPECT_EQ(Utf8::oneLine("\xC0\xAF"), "\uFFFD\uFFFD");
    EXPECT_EQ(Utf8::oneLine("\xE0\x80\xAF"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(Utf8::oneLine("\xED\xA0\x80"), "\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(Utf8::oneLine("\xF4\x90\x80\x80").size(), 4 * 3U);
}

} // namespace
