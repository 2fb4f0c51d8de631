// Text that the user can change.
#pragma once

#include "controls/ParamDisplay.h"
#include "core/Strings.h"
#include "platform/TextEdit.h"

#include <memory>

namespace Sorel {

/// Holds a text of up to 255 bytes and, while it is being changed, the platform's text box.
class CTextEdit : public CParamDisplay {
  public:
    static constexpr std::size_t kTextBytes = IOSTextEdit::kMaxBytes + 1;

    CTextEdit(const CRect& size, CControlListener* listener, std::int32_t tag, const char* text);
    ~CTextEdit() override;

    /// Cut to 255 bytes, between characters. Also replaces what is being typed.
    virtual void setText(const char* text);
    /// What was there before an edit that is going on.
    virtual const char* getText() const { return text_.c_str(); }
    bool isEditing() const { return platformEdit_ != nullptr; }

    void draw(CDrawContext& context) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return nullptr; }
    const char* getClassName() const override { return "CTextEdit"; }

  protected:
    void storeText(const std::string& text);
    std::unique_ptr<IOSTextEdit> platformEdit_;

  private:
    Core::CStringBufferd<kTextBytes> text_;
};

/// A typed home for long lists of construction arguments.
struct Sorel_ObjectConstructorInfoBase {
    CRect size;
};

/// The text box of the product. A press opens it; Return and the loss of focus commit, Escape gives
/// the old text back; each end is reported once, by valueChanged.
class Sorel_TextEdit : public CTextEdit, public ITextEditCallback {
  public:
    struct CInfo : Sorel_ObjectConstructorInfoBase {
        CFontDesc* font = kDefaultFont;
        double fontSize = 11.0;
        std::int32_t fontStyle = kRegularFont;
        CColor fontColor{236, 236, 244, 235};
        /// Of the field, when `drawsField`.
        CColor selectionColor{250, 200, 60, 70};
        CColor focusColor{250, 200, 60, 170};
        CColor caretColor{250, 200, 60, 255};
        HorizontalAlign align = HorizontalAlign::kLeft;
        /// Bytes.
        int maxLength = static_cast<int>(IOSTextEdit::kMaxBytes);
        /// Pixels left and right of the text.
        double margin = 4.0;
        bool drawsField = true;
        double fieldRadius = 4.0;
        /// Where the text is given back on loss of focus instead of committed.
        bool cancelOnLoseFocus = false;
        const char* text = "";
    };

    Sorel_TextEdit(const CInfo& info, CControlListener* listener, std::int32_t tag);
    ~Sorel_TextEdit() override;

    /// The last edit ended with Return or loss of focus.
    bool wasCommitted() const { return committed_; }
    /// Ends an edit that is going on.
    void finishEditing(bool commit);
    /// A press opens the box; off: it only opens through takeFocus.
    void setOpensOnPress(bool on) { opensOnPress_ = on; }

    void setText(const char* text) override;
    void draw(CDrawContext& context) override;
    int onMouseDown(CPoint where, std::int32_t* buttons) override;
    int onMouseUp(CPoint where, std::int32_t* buttons) override;
    int onMouseMoved(CPoint where, std::int32_t* buttons) override;
    int onMouseEntered(CPoint where, std::int32_t* buttons) override;
    int onMouseExited(CPoint where, std::int32_t* buttons) override;
    int onKeyDown(const KeyEvent& key) override;
    void onIdle() override;
    void takeFocus() override;
    void looseFocus() override;
    int removed(CViewContainer* parent) override;
    void setViewSize(const CRect& rect, bool invalidate = true) override;
    bool isTypeOf(const char* name) const override;
    const char* getClassName() const override { return "Sorel_TextEdit"; }

    // ITextEditCallback
    void platformLooseFocus(bool commit) override;
    bool platformKey(const KeyEvent& key) override;
    void platformTextChanged() override;

  protected:
    CRect textRect() const override;

  private:
    void drawEditing(CDrawContext& context, const IOSTextEdit::InFrame& state);
    std::size_t byteOffsetAt(double x);
    double widthOf(CDrawContext& context, std::string_view text) const;
    /// Left end of the text while it is edited.
    double textLeft(CDrawContext& context, const IOSTextEdit::InFrame& state);

    CInfo info_;
    bool committed_ = false;
    bool opensOnPress_ = true;
    bool selecting_ = false;
    bool ending_ = false;
    double scroll_ = 0.0;
};

} // namespace Sorel
