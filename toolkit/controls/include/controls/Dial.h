// The product's dials: knob, ring of lights, value and label, and a box to type the value in.
#pragma once

#include "controls/AnimKnob.h"
#include "controls/DialTextEdit.h"
#include "core/Strings.h"
#include "tree/TimerObject.h"

#include <array>

namespace Sorel {

/// A dial of 72 by 76 pixels. Its picture is made of a background and up to three film-strip
/// layers, each cross-faded between its frames. A press on the value opens it for typing.
class CDial : public Sorel_AnimKnob, public CTimerObject, public CControlListener {
  public:
    /// Steps of animation come this often, however often the host idles.
    static constexpr int kTimerMs = 25;
    static constexpr int kMaxLayers = 3;

    /// Pictures may be null: the dial then draws without them.
    struct Pictures {
        CBitmap* background = nullptr; // 72 by 76
        CBitmap* ring = nullptr;       // 65 frames of 60 by 55
        CBitmap* knob = nullptr;       // 65 frames of 43 by 43
    };

    CDial(CPoint topLeft,
          CControlListener* listener,
          std::int32_t tag,
          const char* label,
          const Pictures& pictures,
          Vardo::IPluginParameter* parameter = nullptr);
    ~CDial() override;

    void setLabel(const char* text);
    const char* getLabel() const { return label_.c_str(); }
    void setFontColor(CColor color);
    /// Off: the label stands alone.
    void setHasValueText(bool on);
    /// Steps follow from the parameter: max - min + 1.
    void setSteppedByParameter(bool on);

    void setParameter(Vardo::IPluginParameter* parameter) override;
    void setActive(bool state) override;
    void onParameterChanged(int parameterIndex) override;
    void startAnimation(bool smooth) override;
    void draw(CDrawContext& context) override;
    int onMouseDown(CPoint where, std::int32_t* buttons) override;
    bool hitTest(CPoint where, std::int32_t buttons = Buttons::kAny) const override;
    int removed(CViewContainer* parent) override;
    bool isTypeOf(const char* name) const override;
    CView* newCopy() const override { return nullptr; } // has listeners of its own
    const char* getClassName() const override { return "CDial"; }
    void onTimer(std::int64_t elapsedMilliseconds) override;
    void valueChanged(CControl* control) override; // the typing box

    /// Opens the value for typing.
    void openTyping();
    bool isTyping() const { return static_cast<bool>(typing_); }
    /// Where the value stands, in the parent's coordinates.
    CRect valueBox() const;

  protected:
    struct Layer {
        Counted<CBitmap> picture;
        Counted<CBitmap> offscreen;
        int frameCount = 0;
        int frameHeight = 0;
        CRect rect; // from the dial's top left corner
        /// Shows its first frame while the dial is inactive.
        bool darkWhenInactive = false;
    };
    struct PointerShape {
        CPoint centre;
        double inner;
        double outer;
        double width;
    };

    void addLayer(CBitmap* picture,
                  int frameCount,
                  int frameHeight,
                  const CRect& rect,
                  bool darkWhenInactive);
    void setBackgroundPicture(CBitmap* picture, const CRect& rect);
    void setPointerShape(const PointerShape& shape) { pointer_ = shape; }
    void clearLayers() { layerCount_ = 0; }

  private:
    void giveUpTyping();
    void drawLayer(CDrawContext& context, Layer& layer, double position) const;
    void drawDimmedPointer(CDrawContext& context) const;
    void drawTexts(CDrawContext& context) const;

    Core::CStringBufferd<64> label_;
    CColor fontColor_;
    Counted<CBitmap> backgroundPicture_;
    CRect backgroundRect_;
    std::array<Layer, kMaxLayers> layers_;
    int layerCount_ = 0;
    PointerShape pointer_;
    bool hasValueText_ = true;
    bool moving_ = false;
    Counted<CDialTextEdit> typing_;
};

/// The small dial: "TolvaneDial.png" over its scale, in the same cell.
class CSmallDial : public CDial {
  public:
    struct SmallPictures {
        CBitmap* background = nullptr; // 41 by 41
        CBitmap* knob = nullptr;       // 128 frames of 21 by 21
    };
    CSmallDial(CPoint topLeft,
               CControlListener* listener,
               std::int32_t tag,
               const char* label,
               const SmallPictures& pictures,
               Vardo::IPluginParameter* parameter = nullptr);
    bool isTypeOf(const char* name) const override;
    const char* getClassName() const override { return "CSmallDial"; }
};

} // namespace Sorel
