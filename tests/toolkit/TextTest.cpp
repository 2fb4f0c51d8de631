// Text: where it stands, how wide it is, what it is made of.
#include "DrawFixture.h"
#include "References.h"

namespace {

using namespace Sorel;

constexpr double kSizes[] = {8.0, 9.0, 10.0, 11.0, 12.0, 13.0};

double widthOf(std::string_view text, double size, std::int32_t style = kRegularFont) {
    Canvas canvas(4, 4);
    canvas.context().setFont(kDefaultFont, size, style);
    return canvas.context().getStringWidth(text);
}

Canvas::Ink inkOf(std::string_view text,
                  const CRect& rect,
                  double size,
                  HorizontalAlign align = HorizontalAlign::kCentre,
                  std::int32_t style = kRegularFont,
                  CFontDesc* font = kDefaultFont) {
    Canvas canvas(300, 60);
    canvas.context().setFont(font, size, style);
    canvas.context().drawString(text, rect, true, align);
    return canvas.ink();
}

TEST(Text, WidthsGrowEvenlyWithSizeAndKnowKerning) {
    EXPECT_EQ(widthOf("", 10.0), 0.0);
    for (const char* text : {"Highest: -12.4dB", "AVAVA Ta To", "\xC3\xA4\xE2\x82\xAC"})
        for (const double size : kSizes)
            EXPECT_NEAR(widthOf(text, size), widthOf(text, 1.0) * size, 1e-6) << text;
    EXPECT_LT(widthOf("AV", 100.0), widthOf("A", 100.0) + widthOf("V", 100.0) - 3.0);
    // Digits are equally wide: figures that change must not dance.
    for (char digit = '0'; digit <= '9'; ++digit)
        EXPECT_EQ(widthOf(std::string(1, digit), 9.0), widthOf("0", 9.0));
    EXPECT_NEAR(widthOf("0", 2048.0), 1139.0, 0.01); // the font's own figure, of 2048 units
}

TEST(Text, ReadsAnyBytes) {
    const double bad = widthOf("\xEF\xBF\xBD", 10.0);
    for (const std::string bytes : {"\x80", "\xFF\xFE", "\xC3", "\xE2\x82", "\xC0\xAF",
                                    "\xED\xA0\x80", "\xF4\x90\x80\x80", "\xF0\x9F"})
        EXPECT_NEAR(widthOf(bytes, 10.0), static_cast<double>(bytes.size()) * bad, 1e-9) << bytes;
    EXPECT_NEAR(widthOf("\xC3"
                        "A",
                        10.0),
                bad + widthOf("A", 10.0), 1e-9); // the A is not lost
    EXPECT_GT(inkOf("\xFF", {0.0, 0.0, 300.0, 60.0}, 12.0).amount, 0);
    EXPECT_EQ(inkOf("\x01\n\r\t", {0.0, 0.0, 300.0, 60.0}, 12.0).amount, 0);
}

TEST(Text, StandsOnOneWholeBaselineAndIsCentred) {
    for (const std::int32_t style : {kBoldFont, kRegularFont})
        for (const double size : kSizes)
            for (const double top : {10.0, 10.25, 10.5, 11.0}) {
                const CRect rect{10.0, top, 290.0, top + 20.0};
                const int baseline = static_cast<int>(std::floor(top + 10.0 + 0.36 * size + 0.5));
                const Canvas::Ink capitals =
                    inkOf("HE", rect, size, HorizontalAlign::kCentre, style);
                EXPECT_EQ(capitals.bottom, baseline) << size << " at " << top;
                EXPECT_NEAR((capitals.top + capitals.bottom) * 0.5, top + 10.0, 1.0) << size;
                EXPECT_GT(inkOf("gp", rect, size).bottom, baseline + 1);
            }
}

TEST(Text, AlignsAtItsAnchors) {
    const CRect rect{40.0, 10.0, 240.0, 40.0};
    for (const char* figure : {"8.8", "-88.8", "88888888"}) {
        const double width = widthOf(figure, 10.0);
        EXPECT_NEAR(inkOf(figure, rect, 10.0, HorizontalAlign::kLeft).left, 40.0, 1.0);
        EXPECT_NEAR(inkOf(figure, rect, 10.0, HorizontalAlign::kRight).right, 240.0, 1.0);
        const Canvas::Ink centred = inkOf(figure, rect, 10.0);
        EXPECT_NEAR((centred.left + centred.right) * 0.5, 140.0, 1.0);
        EXPECT_NEAR(centred.right - centred.left, width, 2.0);
    }
    // A quarter of a pixel shows.
    Canvas a(40, 20);
    Canvas b(40, 20);
    a.context().drawStringAt("l", {10.0, 15.0});
    b.context().drawStringAt("l", {10.25, 15.0});
    EXPECT_GT(difference(a.surface(), b.surface()), 20);
}

TEST(Text, IsWholeInABoxAsHighAsItsSize) {
    const char* const text = "\xC3\x84gpqyj|()";
    for (const double size : kSizes)
        for (const double half : {0.5 * size, 0.5 * size + 1.0}) {
            const auto low = inkOf(text, {5.0, 30.0 - half, 295.0, 30.0 + half}, size);
            const auto high = inkOf(text, {5.0, 0.0, 295.0, 60.0}, size);
            EXPECT_EQ(low.amount, high.amount) << size;
        }
    // A lower box cuts, its sides always do, and so does what was clipped before.
    const auto cut = inkOf(text, {140.0, 28.0, 150.0, 32.0}, 12.0);
    EXPECT_TRUE(cut.amount > 0 && cut.left >= 140 && cut.right <= 150 && cut.top >= 28 &&
                cut.bottom <= 32);
    Canvas canvas(300, 60);
    canvas.context().setClipRect({0.0, 0.0, 300.0, 30.0});
    canvas.context().drawString(text, {5.0, 20.0, 295.0, 40.0});
    EXPECT_LE(canvas.ink().bottom, 30);
    canvas.context().drawRect({0.0, 25.0, 9.0, 30.0}, kFilledAndStroked); // clip and paint are back
    EXPECT_EQ(canvas.at(0, 30).red, 0);
    EXPECT_NEAR(canvas.at(4, 25).red, 128, 2); // the inner half of the line
}

TEST(Text, LinesAreOneWholeFontHeightApart) {
    Canvas one(200, 100);
    Canvas several(200, 100);
    const CRect rect{0.0, 0.0, 200.0, 100.0};
    one.context().drawString("HHH", rect);
    several.context().drawStringMultiLine("HHH", rect);
    EXPECT_EQ(difference(one.surface(), several.surface()), 0);

    for (const double size : kSizes) {
        Canvas canvas(200, 100);
        canvas.context().setFont(kDefaultFont, size, kRegularFont);
        canvas.context().drawStringMultiLine("HHH\nHHH\nHHH", rect);
        const Canvas::Ink three = canvas.ink();
        const auto single = inkOf("HHH", {0.0, 0.0, 200.0, 60.0}, size);
        // Ascent and descent of the family: 0.905 and 0.212 of the size.
        const int lineHeight = static_cast<int>(std::floor(1.117 * size));
        EXPECT_EQ(three.bottom - three.top, 2 * lineHeight + single.bottom - single.top);
        EXPECT_NEAR((three.top + three.bottom) * 0.5, 50.0, 1.0);
    }
}

TEST(Text, StylesAndBytesChooseTheFace) {
    const CRect rect{0.0, 0.0, 300.0, 60.0};
    const auto bold = inkOf("Hamburg", rect, 12.0, HorizontalAlign::kLeft, kBoldFont);
    const auto regular = inkOf("Hamburg", rect, 12.0, HorizontalAlign::kLeft, kRegularFont);
    const auto other = inkOf("Hamburg", rect, 12.0, HorizontalAlign::kLeft, 2);
    EXPECT_GT(bold.amount, regular.amount * 5 / 4);
    EXPECT_EQ(other.amount, bold.amount); // every style but 1

    // The same name for other bytes, and a font of no bytes.
    CFontDesc twisted(12.0, TextMode::kOutline);
    twisted.firstData = kDefaultFont->secondData;
    twisted.firstName = kDefaultFont->firstName;
    twisted.secondName = kDefaultFont->secondName;
    EXPECT_EQ(inkOf("Hamburg", rect, 12.0, HorizontalAlign::kLeft, kBoldFont, &twisted).amount,
              regular.amount);
    EXPECT_EQ(inkOf("Hamburg", rect, 12.0, HorizontalAlign::kLeft, kRegularFont, &twisted).amount,
              0);

    Canvas canvas(300, 60);
    canvas.context().setFont(kDefaultFont, 14.0, kRegularFont);
    canvas.context().setFont(kDefaultFont, 0.0, kRegularFont); // keeps the font's own
    EXPECT_EQ(canvas.context().getFontSize(), 14.0);
}

TEST(Text, ModesDrawTheSameLetters) {
    const auto draw = [](TextMode mode) {
        auto canvas = std::make_unique<Canvas>(120, 30);
        CRenderer& renderer = canvas->renderer();
        renderer.fillColor(kWhiteCColor);
        renderer.font("mode", kDefaultFont->secondData, 12.0, mode);
        renderer.text(5.0, 20.0, "Hamburgefonts");
        return canvas;
    };
    const auto outline = draw(TextMode::kOutline);
    const auto grey = draw(TextMode::kGrey);
    const auto mono = draw(TextMode::kMono);
    // Two rasterisers, one shape; FreeType's lets a curve stray by up to 1/16 pixel.
    EXPECT_LE(difference(outline->surface(), grey->surface()), 17);
    for (int y = 0; y < 30; ++y)
        for (int x = 0; x < 120; ++x)
            ASSERT_TRUE(mono->at(x, y).red % 255 == 0);
    EXPECT_NEAR(double(mono->ink().amount) / double(outline->ink().amount), 1.0, 0.25);
}

TEST(Text, TurnsAroundItsAnchor) {
    const auto draw = [](double angle) {
        Canvas canvas(100, 100);
        canvas.renderer().fillColor(kWhiteCColor);
        canvas.renderer().font("turn", kDefaultFont->secondData, 20.0, TextMode::kOutline, angle);
        canvas.renderer().textAlignment(HorizontalAlign::kCentre, VerticalAlign::kCentre);
        canvas.renderer().text(50.0, 50.0, "HEH");
        return canvas.ink();
    };
    const auto level = draw(1e-9);
    const auto upright = draw(std::acos(0.0)); // a quarter turn clockwise
    EXPECT_NEAR(upright.top, level.left, 1.0);
    EXPECT_NEAR(upright.bottom, level.right, 1.0);
    EXPECT_NEAR(100 - upright.left, level.bottom, 1.0);
    EXPECT_NEAR(double(upright.amount), double(level.amount), 0.01 * double(level.amount));
}

TEST(Text, TheCacheMayOverflow) {
    const CRect rect{0.0, 0.0, 300.0, 60.0};
    const auto before = inkOf("Hamburg 123", rect, 11.0);
    Canvas canvas(10, 10);
    for (int i = 0; i < 100; ++i) {
        canvas.context().setFont(kDefaultFont, 8.0 + i / 64.0, kRegularFont);
        canvas.context().drawString("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ", rect,
                                    true, HorizontalAlign::kRight);
    }
    EXPECT_EQ(inkOf("Hamburg 123", rect, 11.0).amount, before.amount);
}

TEST(Text, LooksAsItDidWhenApproved) {
    Canvas canvas(250, 200, {34, 37, 59, 255});
    CDrawContext& context = canvas.context();
    double y = 4.0;
    for (const double size : kSizes)
        for (const std::int32_t style : {kRegularFont, kBoldFont}) {
            context.setFont(kDefaultFont, size, style);
            context.setFontColor(style == kBoldFont ? CColor{250, 200, 60, 225}
                                                    : CColor{161, 163, 193, 200});
            context.drawString("Highest: -12.4dB @ 1000Hz gpq", {6.0, y, 244.0, y + size}, true,
                               HorizontalAlign::kLeft);
            y += size + 5.0;
        }
    expectLikeReference(canvas, "text", 6); // other versions of FreeType round differently
}

} // namespace
