// Reading the messages that the window shows.
#include "Session.h"
#include "controls/Palette.h"
#include "draw/Bitmap.h"

namespace Orvel {

using namespace Sorel;

namespace {

constexpr std::uint32_t kPanel = std::uint32_t{Palette::kPanel.red} << 16 |
                                 std::uint32_t{Palette::kPanel.green} << 8 |
                                 std::uint32_t{Palette::kPanel.blue};

/// What a line of text on the message's ground looks like.
Picture written(const std::string& text, int width, int height, double size, bool bold) {
    const auto bitmap = Counted<CBitmap>::make(width, height);
    CDrawContext& context = bitmap->context();
    const CRect all{0.0, 0.0, double(width), double(height)};
    context.setFillColor(Palette::kPanel);
    context.drawRect(all, kFilled);
    context.setFont(kDefaultFont, size, bold ? kBoldFont : kRegularFont);
    context.setFontColor(bold ? Palette::kBright : Palette::kLine.withAlpha(235));
    context.drawString(text, all, true, HorizontalAlign::kLeft);
    Picture picture;
    IOSBitmap& surface = bitmap->surface();
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x) {
            const std::uint8_t* at = surface.getPixels() + y * surface.stride + x * 4;
            picture.push_back(std::uint32_t{at[2]} << 16 | std::uint32_t{at[1]} << 8 |
                              std::uint32_t{at[0]});
        }
    return picture;
}

} // namespace

CRect Session::message() const {
    // In the middle of the window, the rows and columns of the panel's colour; nothing else in the
    // dimmed window has it.
    constexpr CRect kMiddle{250.0, 150.0, 750.0, 395.0};
    constexpr int kWidth = 500;
    constexpr int kHeight = 245;
    constexpr int kFewest = 150; // in a row of the panel
    const Picture middle = look(kMiddle);
    CRect panel = kMiddle;
    std::swap(panel.left, panel.right);
    std::swap(panel.top, panel.bottom);
    for (int y = 0; y < kHeight; ++y) {
        const auto row = middle.begin() + y * kWidth;
        if (std::count(row, row + kWidth, kPanel) < kFewest) continue;
        panel.top = std::min(panel.top, kMiddle.top + y);
        panel.bottom = kMiddle.top + y + 1.0;
        for (int x = 0; x < kWidth; ++x) {
            if (row[x] != kPanel) continue;
            panel.left = std::min(panel.left, kMiddle.left + x);
            panel.right = std::max(panel.right, kMiddle.left + x + 1.0);
        }
    }
    // Its outline is one pixel wide.
    return panel.bottom > panel.top + 50.0 ? panel.inset(-1.0, -1.0) : CRect{};
}

bool Session::messageSays(const std::string& title, const std::vector<std::string>& lines) const {
    constexpr int kMargin = 20;
    constexpr int kTitleHeight = 18;
    constexpr int kLineHeight = 15;
    const CRect box = message();
    const int width = static_cast<int>(box.width()) - 2 * kMargin;
    double y = box.top + kMargin;
    const auto says = [&](const std::string& text, int height, double size, bool bold) {
        const CRect rect = CRect::ofSize(box.left + kMargin, y, width, height);
        return differences(look(rect), written(text, width, height, size, bold)) == 0;
    };
    if (!says(title, kTitleHeight, 12.0, true)) return false;
    y += kTitleHeight + 8;
    for (const std::string& line : lines) {
        if (!says(line, kLineHeight, 11.0, false)) return false;
        y += kLineHeight;
    }
    return true;
}

Place Session::messageButton(int fromRight) const {
    const CRect box = message();
    return {static_cast<int>(box.right) - 20 - 45 - 98 * fromRight,
            static_cast<int>(box.bottom) - 20 - 12};
}

} // namespace Orvel
