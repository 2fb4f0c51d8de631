// Two level meters side by side, with one box of overs and a read-out of the held peaks.
#pragma once

#include "views/LevelMeterMono.h"

#include <array>

namespace Sorel {

/// Which two channels, and what they are called. Texts outlive the meter.
struct MeterPair {
    int firstChannel;
    const char* names[2];
    const char* readOut[2];
};
inline constexpr MeterPair kLeftRightMeter{0, {"Left", "Right"}, {"Peak L:", "Peak R:"}};
inline constexpr MeterPair kMidSideMeter{2, {"Mid", "Side"}, {"Peak M:", "Peak S:"}};

/// A meter of 125 by 375 pixels. A click sets the counts of overs back, of all channels.
class CVUMeter_Stereo : public IDisplayControl {
  public:
    CVUMeter_Stereo(const CRect& size, Orvel::COrvelScope* analyser, const MeterPair& pair);

    static std::span<const Orvel::ParameterId> parameters() { return CVUMeter_Mono::parameters(); }

    /// Heard after a click has set the counts of overs back.
    void setResetCallback(std::function<void()> heard) { resetHeard_ = std::move(heard); }
    /// What a click does: sets the counts back, and the callback hears of it.
    void resetAllOvers();
    /// The same without the callback.
    void resetOvers();

    /// What onIdle feeds it with. Asks for a repaint of what changes; true when anything does.
    bool setLevels(const MeterLevels& first, const MeterLevels& second);
    CVUMeter_Mono& channel(int i) { return channels_[static_cast<std::size_t>(i)]; }
    const OverBox& overBox() const { return overs_; }

    void draw(CDrawContext& context) override;
    void onIdle() override;
    int onMouseDown(CPoint where, std::int32_t* buttons) override;
    void setViewSize(const CRect& rect, bool invalidate = true) override;
    const char* getClassName() const override { return "CVUMeter_Stereo"; }

  private:
    void drawReadOut(CDrawContext& context);
    void askForPart(const CRect& part) { invalidRect(part.moved(getViewSize().topLeft())); }

    MeterPair pair_;
    std::array<CVUMeter_Mono, 2> channels_; ///< in no tree; drawn and fed from here
    MeterFeed feed_;
    OverBox overs_;
    std::function<void()> resetHeard_;
};

} // namespace Sorel
