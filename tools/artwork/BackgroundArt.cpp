// The ground of the window: header and deck, the wells behind meter and display, the page bar's
// track, and the names that never change. Controls draw themselves.
#include "Palette.h"
#include "Pictures.h"

namespace Artwork {

namespace {
using namespace Palette;

constexpr double kWidth = 1000;
constexpr double kHeight = 545;
constexpr double kHeaderFoot = 47;
constexpr double kDeckTop = 441;
constexpr Colour kSeam = rgb(22, 22, 28); // the dark row where two surfaces meet

struct Box {
    double x, y, width, height;
};

void drawSurfaces(Canvas& canvas) {
    canvas.fill(rectangle(0, 0, kWidth, kHeight), rgb(48, 47, 56));
    canvas.fill(rectangle(0, 0, kWidth, kHeaderFoot),
                downwards(0, kHeaderFoot, rgb(56, 55, 66), rgb(50, 49, 59)));
    canvas.fill(rectangle(0, 0, kWidth, 1), withAlpha(kWhite, 22));
    canvas.fill(rectangle(0, kHeaderFoot - 1, kWidth, 1), withAlpha(kSeam, 200));
    canvas.fill(
        rectangle(0, kHeaderFoot, kWidth, 6),
        downwards(kHeaderFoot, kHeaderFoot + 6, withAlpha(kBlack, 60), withAlpha(kBlack, 0)));
    canvas.fill(rectangle(0, kDeckTop, kWidth, kHeight - kDeckTop),
                downwards(kDeckTop, kHeight, rgb(55, 54, 65), rgb(45, 44, 53)));
    canvas.fill(rectangle(0, kDeckTop - 1, kWidth, 1), withAlpha(kSeam, 170));
    canvas.fill(rectangle(0, kDeckTop, kWidth, 1), withAlpha(kWhite, 20));
    canvas.fill(rectangle(819, 459, 1, 73), withAlpha(kBlack, 60));
    canvas.fill(rectangle(820, 459, 1, 73), withAlpha(kWhite, 14));
}

// A sunken panel: darker under its upper edge, with a lit lip below.
void drawWell(Canvas& canvas, const Box& box) {
    constexpr double kRadius = 4;
    const Path shape = rectangle(box.x, box.y, box.width, box.height, kRadius);
    canvas.fill(rectangle(box.x, box.y + 1, box.width, box.height, kRadius), withAlpha(kWhite, 16));
    canvas.fill(shape,
                downwards(box.y, box.y + box.height,
                          {{0, rgb(21, 23, 39)}, {0.10, rgb(25, 27, 45)}, {1, rgb(34, 37, 59)}}));
    canvas.fillBlurred(rectangle(box.x - 2, box.y - 2, box.width + 4, 4), withAlpha(kBlack, 90),
                       1.6, {shape});
    canvas.fill(outlineInside(box.x, box.y, box.width, box.height, kRadius), rgb(12, 13, 22, 150));
}

// Where the four page buttons lie.
void drawPageBar(Canvas& canvas) {
    constexpr Box kTrack{311, 10, 477, 26};
    constexpr double kRadius = 5.5;
    canvas.fill(rectangle(kTrack.x, kTrack.y, kTrack.width, kTrack.height + 1, 6),
                withAlpha(kWhite, 14));
    canvas.fill(rectangle(kTrack.x, kTrack.y, kTrack.width, kTrack.height, kRadius),
                downwards(kTrack.y, kTrack.y + kTrack.height, kTrackTop, kTrackFoot));
    canvas.fill(outlineInside(kTrack.x, kTrack.y, kTrack.width, kTrack.height, kRadius),
                rgb(14, 14, 20, 170));
    for (const double x : {430.0, 549.0, 668.0})
        canvas.fill(rectangle(x, 17, 1, 13), withAlpha(kLavender, 45));
}

// An open ring around three levels.
void drawSign(Canvas& canvas, Point centre) {
    canvas.fill(arc(centre, 8, -135, 135, 1.6, Ends::round), withAlpha(kLavender, 230));
    constexpr Point kStrokes[] = {{-3, 2.2}, {0, 4.6}, {3, 2.8}}; // dx and half length
    for (const auto& [dx, half] : kStrokes)
        canvas.fill(line({{centre.x + dx, centre.y - half}, {centre.x + dx, centre.y + half}}, 1.5,
                         Ends::round),
                    withAlpha(kGold, 225));
}

void drawNames(Canvas& canvas, Lettering& lettering) {
    canvas.fill(lettering.text(Face::regular, 8, 10, 27, "PRESET", 1), withAlpha(kLavender, 170));
    canvas.fill(lettering.text(Face::regular, 8, 10, 534, "QUILLMERE", 2),
                withAlpha(kLavender, 115));
    canvas.fill(lettering.text(Face::bold, 13, 872, 28, "ORVEL", 2.4), kBrightText);
    canvas.fill(lettering.text(Face::regular, 13, 935, 28, "SCOPE", 2.4),
                withAlpha(kLavender, 220));
}

} // namespace

Canvas background(const Studio& studio) {
    Canvas canvas(kWidth, kHeight, studio.scale);
    drawSurfaces(canvas);
    drawWell(canvas, {10, 56, 125, 375});
    drawWell(canvas, {145, 56, 845, 375});
    drawPageBar(canvas);
    drawSign(canvas, {853, 24});
    drawNames(canvas, studio.lettering);
    return canvas;
}

} // namespace Artwork
