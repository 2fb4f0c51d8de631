// The page bar's buttons: a sign and a name each; the lit one stands on a raised face with a gold
// bar at its foot.
#include "Palette.h"
#include "Pictures.h"

#include <string_view>

namespace Artwork {

namespace {
using namespace Palette;

constexpr double kWidth = 138;
constexpr double kStateHeight = 45;
constexpr double kMargin = 10; // the picture around the area that takes the mouse
constexpr double kHitWidth = 118;
constexpr double kSignWidth = 16;
constexpr double kSignGap = 7;
constexpr double kTextSize = 11;

struct Ink {
    Colour colour;
    float strength; // of the sign's main parts

    Colour at(float share) const {
        Colour result = colour;
        result.alpha = strength * share;
        return result;
    }
};

enum class Place { first, between, last }; // in the bar

// Draws a sign whose box starts at x and whose middle lies on y.
using DrawSign = void (*)(Canvas& canvas, double x, double y, const Ink& ink);

void scopeSign(Canvas& canvas, double x, double y, const Ink& ink) {
    constexpr double kHalves[] = {2, 4, 7, 5, 3, 6, 4, 2};
    for (const double half : kHalves) {
        canvas.fill(rectangle(x, y - half, 1, 2 * half), ink.at(1));
        x += 2;
    }
}

void spectrumSign(Canvas& canvas, double x, double y, const Ink& ink) {
    constexpr double kHeights[] = {8, 13, 11, 7, 9, 5, 3, 2};
    const double base = y + 6;
    canvas.fill(rectangle(x - 1, base, 17, 1), ink.at(0.55F));
    for (const double height : kHeights) {
        canvas.fill(rectangle(x, base - height, 1, height), ink.at(1));
        x += 2;
    }
}

void stereofieldSign(Canvas& canvas, double x, double y, const Ink& ink) {
    const Point centre{x + 7.5, y};
    Path diamond =
        polygon({{centre.x, y - 7}, {centre.x + 7, y}, {centre.x, y + 7}, {centre.x - 7, y}});
    canvas.fill(stroke(diamond, 1), ink.at(0.75F));
    canvas.fill(ellipse(centre, 2.3, 4.8, 20), ink.at(1));
}

void systemSign(Canvas& canvas, double x, double y, const Ink& ink) {
    canvas.fill(outlineInside(x + 3, y - 5, 10, 10, 1.5), ink.at(1));
    canvas.fill(rectangle(x + 6, y - 2, 4, 4), ink.at(1));
    for (const double pin : {1.0, 4.0, 7.0}) {
        const double along = pin + 3;
        canvas.fill(rectangle(x + along, y - 7, 1, 2), ink.at(0.8F));
        canvas.fill(rectangle(x + along, y + 5, 1, 2), ink.at(0.8F));
        canvas.fill(rectangle(x + 1, y - 5 + pin, 2, 1), ink.at(0.8F));
        canvas.fill(rectangle(x + 13, y - 5 + pin, 2, 1), ink.at(0.8F));
    }
}

// The ground has a separator in the column between two buttons. Beside a lit one it is covered by
// the track's own colour, on the sides where the bar goes on. The track starts a pixel above the
// area that takes the mouse.
void hideSeparators(Canvas& canvas, double top, Place place) {
    constexpr double kTrackHeight = 26;
    const Paint track = downwards(top - 1, top - 1 + kTrackHeight, kTrackTop, kTrackFoot);
    if (place != Place::first) canvas.fill(rectangle(kMargin - 1, top + 6, 1, 13), track);
    if (place != Place::last) canvas.fill(rectangle(kMargin + kHitWidth, top + 6, 1, 13), track);
}

void drawFace(Canvas& canvas, double left, double top) {
    const double x = left + 2;
    const double y = top + 2;
    constexpr double kFaceWidth = kHitWidth - 4;
    constexpr double kFaceHeight = 21;
    canvas.fillBlurred(rectangle(x, y + 1, kFaceWidth, kFaceHeight, 3), withAlpha(kBlack, 110),
                       1.2);
    canvas.fill(rectangle(x, y, kFaceWidth, kFaceHeight, 3),
                downwards(y, y + kFaceHeight, rgb(78, 78, 95), rgb(62, 62, 77)));
    canvas.fill(rectangle(x + 2, y, kFaceWidth - 4, 1), withAlpha(kWhite, 38));

    const double middle = x + kFaceWidth / 2;
    const double bar = y + kFaceHeight - 2;
    canvas.fillBlurred(rectangle(middle - 16, bar, 32, 6), withAlpha(kGold, 60), 2.2);
    canvas.fill(rectangle(middle - 14, bar, 28, 2, 1), kGold);
}

struct Button {
    std::string_view name;
    DrawSign drawSign;
    Place place;
};

void drawState(
    Canvas& canvas, Lettering& lettering, const Button& button, bool isOn, double stateTop) {
    const double top = stateTop + kMargin;
    if (isOn) {
        hideSeparators(canvas, top, button.place);
        drawFace(canvas, kMargin, top);
    }
    const double textWidth = lettering.width(Face::regular, kTextSize, button.name);
    const double x = kMargin + std::round((kHitWidth - (kSignWidth + kSignGap + textWidth)) / 2);
    button.drawSign(canvas, x, top + 12, isOn ? Ink{kGold, 1} : Ink{kLavender, 190.0F / 255});
    canvas.fill(
        lettering.text(Face::regular, kTextSize, x + kSignWidth + kSignGap, top + 16, button.name),
        isOn ? rgb(242, 242, 248) : withAlpha(kLavender, 215));
}

Canvas drawn(const Studio& studio, const Button& button) {
    Canvas canvas(kWidth, 2 * kStateHeight, studio.scale);
    drawState(canvas, studio.lettering, button, false, 0);
    drawState(canvas, studio.lettering, button, true, kStateHeight);
    return canvas;
}

} // namespace

Canvas scopeButton(const Studio& studio) {
    return drawn(studio, {"Scope", scopeSign, Place::first});
}

Canvas spectrumButton(const Studio& studio) {
    return drawn(studio, {"Spectrum", spectrumSign, Place::between});
}

Canvas stereofieldButton(const Studio& studio) {
    return drawn(studio, {"Stereofield", stereofieldSign, Place::between});
}

Canvas systemButton(const Studio& studio) {
    return drawn(studio, {"System", systemSign, Place::last});
}

} // namespace Artwork
