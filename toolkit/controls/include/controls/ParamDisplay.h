// Controls that show a text: the base with its looks, and the plain label.
#pragma once

#include "controls/Control.h"
#include "draw/FontDesc.h"

#include <string>

namespace Sorel {

/// Shows its value as a text. Style flags: see Style.
class CParamDisplay : public CControl {
  public:
    enum Style : std::int32_t {
        kShadowText = 0x01,
        kNoFrame = 0x02,
        kNoBackground = 0x04,
    };

    CParamDisplay(const CRect& size,
                  CControlListener* listener = nullptr,
                  std::int32_t tag = 0,
                  CBitmap* background = nullptr);

    void setHorizontalAlign(HorizontalAlign align);
    HorizontalAlign getHorizontalAlign() const { return align_; }
    /// Style of the font as in CDrawContext::setFont; size 0 is the font's own.
    void setFont(CFontDesc* font, double size = 0.0, std::int32_t style = kRegularFont);
    CFontDesc* getFont() const { return font_.get(); }
    double getFontSize() const { return fontSize_; }
    void setFontColor(CColor color) { store(fontColor_, color); }
    CColor getFontColor() const { return fontColor_; }
    void setBackColor(CColor color) { store(backColor_, color); }
    CColor getBackColor() const { return backColor_; }
    void setFrameColor(CColor color) { store(frameColor_, color); }
    CColor getFrameColor() const { return frameColor_; }
    void setShadowColor(CColor color) { store(shadowColor_, color); }
    CColor getShadowColor() const { return shadowColor_; }
    void setStyle(std::int32_t style) { store(style_, style); }
    std::int32_t getStyle() const { return style_; }
    void setAntialias(bool on) { store(antialias_, on); }
    bool getAntialias() const { return antialias_; }
    void setWantsFocusFrame(bool on) { store(wantsFocusFrame_, on); }
    bool getWantsFocusFrame() const { return wantsFocusFrame_; }

    void draw(CDrawContext& context) override;
    virtual void drawText(CDrawContext& context, const char* text);
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return new CParamDisplay(*this); }
    const char* getClassName() const override { return "CParamDisplay"; }

  protected:
    void drawBack(CDrawContext& context);
    void applyFont(CDrawContext& context) const;
    /// Where the text stands.
    virtual CRect textRect() const { return getViewSize(); }

  private:
    template <class T>
    void store(T& field, T value) {
        field = value;
        setDirty(true);
    }

    HorizontalAlign align_ = HorizontalAlign::kCentre;
    Counted<CFontDesc> font_;
    double fontSize_ = 0.0;
    std::int32_t fontStyle_ = kRegularFont;
    CColor fontColor_ = kWhiteCColor;
    CColor backColor_ = kBlackCColor;
    CColor frameColor_ = kBlackCColor;
    CColor shadowColor_ = kRedCColor;
    std::int32_t style_ = 0;
    bool antialias_ = true;
    bool wantsFocusFrame_ = true;
};

/// A text of its own instead of a value.
class CTextLabel : public CParamDisplay {
  public:
    CTextLabel(const CRect& size, const char* text);
    void setText(const char* text);
    const std::string& getText() const { return text_; }
    void draw(CDrawContext& context) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return new CTextLabel(*this); }
    const char* getClassName() const override { return "CTextLabel"; }

  private:
    std::string text_;
};

} // namespace Sorel
