// The switches and the preset browser's arrows.
#include "Palette.h"
#include "Pictures.h"

namespace Artwork {

namespace {
using namespace Palette;

constexpr double kSwitchHeight = 22;
constexpr double kArrowHeight = 21;

void drawSwitch(Canvas& canvas, double top, bool isOn, const Colour& colour) {
    constexpr double kX = 4;
    const double y = top + 4;
    canvas.fill(rectangle(kX, y + 1, 26, 14, 7), withAlpha(kWhite, 16));
    canvas.fill(rectangle(kX, y, 26, 14, 7),
                downwards(y, y + 14, rgb(22, 22, 30), rgb(31, 31, 41)));
    if (isOn) canvas.fill(rectangle(kX + 2, y + 2, 22, 10, 5), withAlpha(colour, 70));
    canvas.fill(outlineInside(kX, y, 26, 14, 7), rgb(12, 12, 18, 190));

    const Point knob{kX + (isOn ? 19 : 7), y + 7};
    canvas.fillBlurred(circle({knob.x, knob.y + 1}, 5), withAlpha(kBlack, 120), 0.8);
    // The picture ends 11 pixels from the knob: the glow has faded before.
    if (isOn) canvas.fillBlurred(circle(knob, 8), withAlpha(colour, 70), 2, {circle(knob, 8.8), 1});
    const Colour light = isOn ? mixed(colour, kWhite, 0.35F) : rgb(112, 112, 130);
    const Colour shade = isOn ? mixed(colour, kBlack, 0.10F) : rgb(72, 72, 86);
    canvas.fill(circle(knob, 5), downwards(knob.y - 5, knob.y + 5, light, shade));
}

Canvas switchIn(const Studio& studio, const Colour& colour) {
    Canvas canvas(34, 2 * kSwitchHeight, studio.scale);
    drawSwitch(canvas, 0, false, colour);
    drawSwitch(canvas, kSwitchHeight, true, colour);
    return canvas;
}

// A chevron through three points at rest above, pressed below over `cell`, its place when pressed.
Canvas arrow(const Studio& studio, const Point (&points)[3], const Path& cell) {
    Canvas canvas(18, 2 * kArrowHeight, studio.scale);
    const auto chevron = [&points](double top) {
        return line({{points[0].x, points[0].y + top},
                     {points[1].x, points[1].y + top},
                     {points[2].x, points[2].y + top}},
                    1.5, Ends::round);
    };
    canvas.fill(chevron(0), rgb(200, 201, 220, 230));
    canvas.fill(cell, rgb(30, 30, 40, 140));
    canvas.fill(chevron(kArrowHeight), kGold);
    return canvas;
}

} // namespace

Canvas plainSwitch(const Studio& studio) { return switchIn(studio, kGold); }
Canvas greenSwitch(const Studio& studio) { return switchIn(studio, rgb(181, 230, 29)); }
Canvas orangeSwitch(const Studio& studio) { return switchIn(studio, rgb(255, 164, 27)); }

// The cells lie inside their control's outline: the pair's halves meet at the divider, in the right
// half's first column.
Canvas arrowDown(const Studio& studio) {
    return arrow(studio, {{3, 8.5}, {7, 12.5}, {11, 8.5}},
                 rectangle(0, kArrowHeight + 1, 17, 19, 3));
}

Canvas arrowLeft(const Studio& studio) {
    return arrow(studio, {{11, 6.5}, {7, 10.5}, {11, 14.5}},
                 rectangle(1, kArrowHeight + 1, 17, 19, 3));
}

Canvas arrowRight(const Studio& studio) {
    return arrow(studio, {{7, 6.5}, {11, 10.5}, {7, 14.5}},
                 rectangle(1, kArrowHeight + 1, 16, 19, 3));
}

} // namespace Artwork
