// The scales of level meters: range, curve, ticks and coloured zones.
#pragma once

#include "analysis/LevelMetering.h"
#include "draw/Geometry.h"

#include <array>
#include <span>

namespace Sorel {

/// Bends 0..1 onto 0..1, keeping both ends: `k` above 0 gives more room to the upper end, 0 is
/// straight. bend(bend(x, k), -k) is x.
float bend(float x, float k);

/// One for each metering mode. Levels are dB on the scale: the K modes' 0 is their reference.
struct MeterScale {
    struct Tick {
        float db = 0;
        std::array<char, 8> label{}; ///< "0", "+6", "-12"
    };
    /// Levels above `fromDb` up to and with `toDb`: 0 dBFS itself is not over full scale.
    struct Zone {
        float fromDb = 0;
        float toDb = 0;
        CColor color;
    };

    float minDb = 0;
    float maxDb = 0;
    float skew = 0;
    std::array<Tick, 16> ticks{};
    int tickCount = 0;
    std::array<Zone, 4> zones{};
    int zoneCount = 0;

    std::span<const Tick> allTicks() const {
        return {ticks.data(), static_cast<std::size_t>(tickCount)};
    }
    std::span<const Zone> allZones() const {
        return {zones.data(), static_cast<std::size_t>(zoneCount)};
    }

    /// 0 at the bottom, 1 at the top; levels outside lie on the edge.
    float heightOf(float db) const;
    /// The level at a height of 0..1.
    float levelAt(float height) const;
    /// The row of pixels that `db` lies in, in a column from row `top` up to but not including row
    /// `bottom`. Lines are drawn in it, bars reach up to it.
    int rowOf(float db, int top, int bottom) const;
    /// Below the scale nothing is drawn: no line may lie at the foot of a silent meter.
    bool shows(float db) const { return db > minDb; }
    CColor colorAt(float db) const;
};

const MeterScale& meterScale(Orvel::MeteringMode mode);

/// What a mode adds to dBFS to get its own scale: the K of the K modes.
float peakOffsetDb(Orvel::MeteringMode mode);

/// 20 log10, at least -96; also for 0 and for what is no number.
float meterDb(float amplitude, float offsetDb);

} // namespace Sorel
