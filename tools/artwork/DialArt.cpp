// The dials: the ground below, the ring of LEDs, and the cap with its pointer. Light comes from
// above, so of all this only the pointer turns with the value.
#include "Palette.h"
#include "Pictures.h"

namespace Artwork {

namespace {
using namespace Palette;

constexpr double kFirstAngle = -135; // degrees from 12 o'clock: the least value
constexpr double kSweep = 270;
constexpr Colour kRim = rgb(18, 18, 24);

// Frames stacked downwards, each drawn by draw(canvas, frame). A frame has whole pixels at any
// scale.
template <class Draw>
Canvas filmStrip(const Studio& studio, double width, double height, int frames, Draw draw) {
    const int framePx = Canvas(width, height, studio.scale).heightPx();
    Canvas strip(width, framePx * frames / studio.scale, studio.scale);
    for (int frame = 0; frame < frames; ++frame) {
        Canvas canvas(width, height, studio.scale);
        draw(canvas, frame);
        strip.draw(canvas, frame * framePx);
    }
    return strip;
}

double angleOf(int frame, int frames) { return kFirstAngle + kSweep * frame / (frames - 1); }

// The hollow in which a cap stands, and the cap's shadow in it.
void drawRecess(Canvas& canvas, Point centre, double radius, double knee) {
    canvas.fill(circle(centre, radius), radial(centre.x, centre.y, radius,
                                               {{0, withAlpha(kBlack, 110)},
                                                {knee, withAlpha(kBlack, 90)},
                                                {1, withAlpha(kBlack, 0)}}));
}

void drawDisc(
    Canvas& canvas, Point centre, double radius, double reach, std::initializer_list<Stop> stops) {
    canvas.fill(circle(centre, radius), downwards(centre.y - reach, centre.y + reach, stops));
}

// ---- the dial

constexpr int kFrames = 65;
constexpr int kLeds = 32;
constexpr double kLedRadius = 25.6;
constexpr double kLedThickness = 2.4;
constexpr double kLedPitch = kSweep / kLeds;
constexpr double kLedShare = 0.7; // of the pitch; the rest is the gap, half of it on either side

Path led(Point centre, int index) {
    const double middle = kFirstAngle + (index + 0.5) * kLedPitch;
    const double half = kLedPitch * kLedShare / 2;
    return arc(centre, kLedRadius, middle - half, middle + half, kLedThickness);
}

void drawLitLeds(Canvas& canvas, Point centre, int frame) {
    if (frame == 0) return;
    // The picture ends close to the ring: the glow has faded before, and is nowhere cut.
    const Canvas::Frame reach{circle(centre, 28.0), 0.7};
    canvas.fillBlurred(arc(centre, kLedRadius, kFirstAngle, angleOf(frame, kFrames), 3.9),
                       withAlpha(kGold, 70), 1.6, reach);
    for (int i = 0; i < kLeds; ++i) {
        const float lit = std::clamp(static_cast<float>(frame - 2 * i) / 2, 0.0F, 1.0F);
        Colour colour = kGold;
        colour.alpha = lit;
        if (lit > 0) canvas.fill(led(centre, i), colour);
    }
}

void drawCap(Canvas& canvas, Point centre, double angle) {
    canvas.fill(circle(centre, 18.5), kRim);
    drawDisc(canvas, centre, 17.7, 18,
             {{0, rgb(104, 104, 122)}, {0.35, rgb(66, 66, 79)}, {1, rgb(40, 40, 48)}});
    drawDisc(canvas, centre, 16.4, 18, {{0, rgb(74, 74, 88)}, {1, rgb(50, 50, 60)}});
    // Dark above and light below: a dish.
    drawDisc(canvas, centre, 13.2, 13.2, {{0, rgb(52, 52, 62)}, {1, rgb(66, 66, 79)}});

    const auto pointer = [angle](Point from, double width) {
        return line({onCircle(from, 8, angle), onCircle(from, 15.6, angle)}, width, Ends::round);
    };
    canvas.fill(pointer({centre.x, centre.y + 0.8}, 2.2), withAlpha(kBlack, 120));
    canvas.fill(pointer(centre, 2), rgb(244, 244, 250));
}

// ---- the small dial

constexpr int kSmallFrames = 128;

void drawTicks(Canvas& canvas, Point centre) {
    constexpr int kTicks = 11;
    for (int i = 0; i < kTicks; ++i) {
        const bool isLong = i == 0 || i == kTicks / 2 || i == kTicks - 1;
        const double angle = angleOf(i, kTicks);
        canvas.fill(
            line({onCircle(centre, 15, angle), onCircle(centre, isLong ? 18.6 : 17.6, angle)}, 1),
            withAlpha(kLavender, isLong ? 190 : 120));
    }
}

void drawSmallCap(Canvas& canvas, Point centre, double angle) {
    canvas.fill(circle(centre, 9.8), kRim);
    drawDisc(canvas, centre, 9.2, 9,
             {{0, rgb(108, 108, 126)}, {0.4, rgb(66, 66, 79)}, {1, rgb(42, 42, 50)}});
    drawDisc(canvas, centre, 7.9, 8, {{0, rgb(72, 72, 86)}, {1, rgb(52, 52, 62)}});
    canvas.fill(line({onCircle(centre, 3, angle), onCircle(centre, 7.6, angle)}, 1.8, Ends::round),
                kGold);
}

} // namespace

Canvas dialGround(const Studio& studio) {
    constexpr Point kCentre{36.5, 36.5};
    Canvas canvas(72, 76, studio.scale);
    drawRecess(canvas, kCentre, 22.5, 0.82);
    for (int i = 0; i < kLeds; ++i)
        canvas.fill(led(kCentre, i), withAlpha(kLavender, 50));
    canvas.fillBlurred(circle({kCentre.x, kCentre.y + 3}, 18), withAlpha(kBlack, 150), 1.8);
    return canvas;
}

Canvas dialRing(const Studio& studio) {
    return filmStrip(studio, 60, 55, kFrames, [](Canvas& canvas, int frame) {
        drawLitLeds(canvas, {30.5, 31.5}, frame);
    });
}

Canvas dialCap(const Studio& studio) {
    return filmStrip(studio, 43, 43, kFrames, [](Canvas& canvas, int frame) {
        drawCap(canvas, {21.5, 21.5}, angleOf(frame, kFrames));
    });
}

Canvas smallDialGround(const Studio& studio) {
    constexpr Point kCentre{20.5, 20.5};
    Canvas canvas(41, 41, studio.scale);
    drawTicks(canvas, kCentre);
    drawRecess(canvas, kCentre, 12.2, 0.8);
    canvas.fillBlurred(circle({kCentre.x, kCentre.y + 1.8}, 9), withAlpha(kBlack, 150), 1.2);
    return canvas;
}

Canvas smallDialCap(const Studio& studio) {
    return filmStrip(studio, 21, 21, kSmallFrames, [](Canvas& canvas, int frame) {
        drawSmallCap(canvas, {10.5, 10.5}, angleOf(frame, kSmallFrames));
    });
}

} // namespace Artwork
