#include "views/MeterScale.h"

#include "core/NumberText.h"
#include "views/DisplayColors.h"

#include <algorithm>
#include <cmath>

namespace Sorel {

namespace {

using Orvel::MeteringMode;

constexpr float kFarBelowDb = -192.0F;
constexpr float kFarAboveDb = 192.0F;
constexpr float kLowestDb = -96.0F;
constexpr float kHighestDb = 192.0F;

void addTick(MeterScale& scale, float db) {
    MeterScale::Tick& tick = scale.ticks[static_cast<std::size_t>(scale.tickCount++)];
    tick.db = db;
    Core::TextWriter writer(tick.label.data(), tick.label.size());
    if (db > 0) writer.text("+");
    writer.fixed(double{db}, 0);
}

void addZone(MeterScale& scale, float fromDb, float toDb, CColor color) {
    scale.zones[static_cast<std::size_t>(scale.zoneCount++)] = {fromDb, toDb, color};
}

/// Full scale at 0 dB, bent so that the loud end, where one works, has most of the room.
MeterScale fullScale() {
    const DisplayColors& c = displayColors();
    MeterScale scale{-96.0F, 12.0F, 1.5F};
    for (const float db : {12.0F, 6.0F, 0.0F, -6.0F, -12.0F, -24.0F, -48.0F, -96.0F})
        addTick(scale, db);
    addZone(scale, kFarBelowDb, 0.0F, c.good2);
    addZone(scale, 0.0F, kFarAboveDb, c.bad);
    return scale;
}

/// Straight in dB, with `headroom` above the reference.
MeterScale kScale(int headroom) {
    constexpr int kLowest = -36;
    constexpr int kStep = 4;
    const DisplayColors& c = displayColors();
    MeterScale scale{static_cast<float>(kLowest), static_cast<float>(headroom), 0.0F};
    const int highestStep = headroom / kStep * kStep;
    if (highestStep != headroom) addTick(scale, static_cast<float>(headroom));
    for (int db = highestStep; db >= kLowest; db -= kStep)
        addTick(scale, static_cast<float>(db));
    addZone(scale, kFarBelowDb, 0.0F, c.good2);
    addZone(scale, 0.0F, 4.0F, c.warn2);
    addZone(scale, 4.0F, kFarAboveDb, c.bad);
    return scale;
}

} // namespace

float bend(float x, float k) {
    if (k < 0) return (1 - k) * x / (1 - k * x);
    return 1 - (1 + k) * (1 - x) / (k * (1 - x) + 1);
}

float MeterScale::heightOf(float db) const {
    return bend((std::clamp(db, minDb, maxDb) - minDb) / (maxDb - minDb), skew);
}

float MeterScale::levelAt(float height) const {
    return minDb + bend(height, -skew) * (maxDb - minDb);
}

int MeterScale::rowOf(float db, int top, int bottom) const {
    const float y = static_cast<float>(bottom) - heightOf(db) * static_cast<float>(bottom - top);
    return std::clamp(static_cast<int>(std::floor(y)), top, bottom - 1);
}

CColor MeterScale::colorAt(float db) const {
    for (const Zone& zone : allZones())
        if (db <= zone.toDb) return zone.color;
    return zones[static_cast<std::size_t>(zoneCount - 1)].color;
}

const MeterScale& meterScale(MeteringMode mode) {
    static const std::array<MeterScale, 5> scales{fullScale(), fullScale(), kScale(12), kScale(14),
                                                  kScale(20)};
    return scales[static_cast<std::size_t>(std::clamp(static_cast<int>(mode), 0, 4))];
}

float peakOffsetDb(MeteringMode mode) {
    switch (mode) {
    case MeteringMode::k12:
        return 12.0F;
    case MeteringMode::k14:
        return 14.0F;
    case MeteringMode::k20:
        return 20.0F;
    default:
        return 0.0F;
    }
}

float meterDb(float amplitude, float offsetDb) {
    if (!(amplitude > 0)) return kLowestDb;
    return std::clamp(20.0F * std::log10(amplitude) + offsetDb, kLowestDb, kHighestDb);
}

} // namespace Sorel
