// A user's session at the real window: its life, time and eyes.
#include "Session.h"

#include "controls/Palette.h"
#include "draw/Bitmap.h"
#include "offscreen/PngFile.h"
#include "platform/Frame.h"
#include "platform/X11.h"

#include <cmath>
#include <thread>

namespace Orvel {

namespace {

constexpr int kStepSamples = 240; // 5 ms
constexpr auto kStep = std::chrono::milliseconds(5);
constexpr auto kPatience = std::chrono::seconds(20); // of a busy machine

/// A second that is different left and right, and has something at all frequencies.
orvel_test::Stereo music() {
    orvel_test::Stereo audio = orvel_test::stereoNoise(48000, 5, 0.15F);
    const auto low = orvel_test::sine(48000, 220.0, 48000.0, 0.4);
    const auto high = orvel_test::sine(48000, 1000.0, 48000.0, 0.3);
    for (std::size_t i = 0; i < low.size(); ++i) {
        audio.left[i] += low[i];
        audio.right[i] += high[i];
    }
    return audio;
}

/// What a line looks like in a message, without the air above and below it.
Picture written(const std::string& text, bool title, int& width) {
    using namespace Sorel;
    constexpr int kHeight = 15;
    constexpr int kWidest = 600;
    const auto bitmap = Counted<CBitmap>::make(kWidest, kHeight);
    CDrawContext& context = bitmap->context();
    context.setFillColor(Palette::kPanel);
    context.drawRect({0.0, 0.0, double(kWidest), double(kHeight)}, kFilled);
    context.setFont(kDefaultFont, title ? 12.0 : 11.0, title ? kBoldFont : kRegularFont);
    context.setFontColor(title ? Palette::kBright : Palette::kLine.withAlpha(235));
    context.drawString(text, {0.0, 0.0, double(kWidest), double(kHeight)}, true,
                       HorizontalAlign::kLeft);
    width = static_cast<int>(std::ceil(context.getStringWidth(text)));
    Picture picture;
    IOSBitmap& surface = bitmap->surface();
    for (int y = 2; y < kHeight - 2; ++y)
        for (int x = 0; x < width; ++x) {
            const std::uint8_t* at = surface.getPixels() + y * surface.stride + x * 4;
            picture.push_back(static_cast<std::uint32_t>(at[2] << 16 | at[1] << 8 | at[0]));
        }
    return picture;
}

bool contains(const Picture& large, int largeWidth, const Picture& small, int width) {
    const int rows = static_cast<int>(small.size()) / width;
    const int largeRows = static_cast<int>(large.size()) / largeWidth;
    const auto isAt = [&](int left, int top) {
        for (int y = 0; y < rows; ++y)
            if (!std::equal(small.begin() + y * width, small.begin() + (y + 1) * width,
                            large.begin() + (top + y) * largeWidth + left))
                return false;
        return true;
    };
    for (int top = 0; top + rows <= largeRows; ++top)
        for (int left = 0; left + width <= largeWidth; ++left)
            if (isAt(left, top)) return true;
    return false;
}

} // namespace

int differences(const Picture& a, const Picture& b) {
    if (a.size() != b.size()) return static_cast<int>(std::max(a.size(), b.size()));
    int count = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        count += a[i] != b[i];
    return count;
}

bool isGold(std::uint32_t pixel) {
    const auto red = static_cast<int>(pixel >> 16 & 0xFF);
    const auto green = static_cast<int>(pixel >> 8 & 0xFF);
    const auto blue = static_cast<int>(pixel & 0xFF);
    return red > 180 && green > 130 && green < red && blue < green - 60;
}

void Session::SetUp() {
    static XServer server;
    if (!server.isRunning())
        GTEST_SKIP() << "Xvfb is not installed (Debian package xvfb): no window to test with.";
    if (!XDoTool::isInstalled())
        GTEST_SKIP() << "xdotool is not installed (Debian package xdotool): no hands to test with.";
    user_ = std::make_unique<XUser>();
    XDoTool::moveTo(kNowhere);
    play(music());
    EditorSurroundings surroundings;
    surroundings.desktop = []() -> Sorel::IPlatform& { return Sorel::x11Platform(); };
    surroundings.versionText = "Version 1.2.3, 64 bit";
    surroundings.product = "Orvel Scope";
    surroundings.openOnDesktop = [this](const std::string& target) {
        openedOnDesktop_.push_back(target);
    };
    instrument_ = std::make_unique<Instrument>(unused_, surroundings);
    // As an adapter numbers them.
    for (int i = 0, index = 0; i < analyser().getNumParameters(); ++i)
        if (Vardo::IPluginParameter& each = *analyser().getParameter(i); each.getAutomatable())
            each.setHostIndex(index++);
    open();
}

void Session::TearDown() {
    if (instrument_) close();
    instrument_.reset();
    Sorel::setPlatform(nullptr);
}

void Session::open() {
    instrument_->open();
    const int page = analyser().activePage();
    ASSERT_TRUE(until([&] {
        return isGold(pixel({371 + 119 * page, 33}));
    })) << "the window does not show";
}

void Session::close() {
    instrument_->editor().close();
    user_->sync();
}

void Session::showPage(int page) {
    XDoTool::click({371 + 119 * page, 24});
    XDoTool::moveTo(kNowhere);
    ASSERT_TRUE(until([&] { return isGold(pixel({371 + 119 * page, 33})); })) << page;
    step(2);
}

void Session::step(int times) {
    for (; times > 0; --times) {
        const auto now = std::chrono::steady_clock::now();
        next_ = std::max(next_ + kStep, now); // what was missed is not made up for
        std::this_thread::sleep_until(next_);
        if (at_ + kStepSamples > audio_.size()) at_ = 0;
        instrument_->player.block(audio_, at_, kStepSamples);
        at_ += kStepSamples;
        instrument_->idle();
    }
}

bool Session::until(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) return false;
        step();
    }
    return true;
}

Picture Session::look(const CRect& rect) const {
    return user_->pixels(static_cast<int>(rect.left), static_cast<int>(rect.top),
                         static_cast<int>(rect.width()), static_cast<int>(rect.height()));
}

Picture Session::settled(const CRect& rect) {
    using Clock = std::chrono::steady_clock;
    // Animations have 25 ms between two frames, and one of an idle at the most.
    constexpr auto kStill = std::chrono::milliseconds(32);
    constexpr int kStillSteps = 5;
    Picture last = look(rect);
    auto changed = Clock::now();
    int steps = 0;
    const bool still = until([&] {
        Picture now = look(rect);
        ++steps;
        if (differencesOutside({}, rect, now, last) > 0) {
            changed = Clock::now();
            steps = 0;
        }
        last = std::move(now);
        return steps > kStillSteps && Clock::now() - changed > kStill;
    });
    EXPECT_TRUE(still) << "never stands still";
    return last;
}

int Session::differencesOutside(const CRect& changed,
                                const CRect& rect,
                                const Picture& now,
                                const Picture& before) {
    const auto width = static_cast<std::size_t>(rect.width());
    int count = 0;
    for (std::size_t i = 0; i < now.size(); ++i) {
        if (now[i] == before[i]) continue;
        const Sorel::CPoint at{rect.left + double(i % width), rect.top + double(i / width)};
        count += !changed.contains(at) && !kSystemInfo.contains(at);
    }
    return count;
}

void Session::keep(const std::string& station) {
    const char* folder = std::getenv("ORVEL_PICTURES");
    if (folder == nullptr) return;
    constexpr int kWidth = 1280;
    constexpr int kHeight = 800;
    const Picture screen = user_->pixels(0, 0, kWidth, kHeight);
    Sorel::CMemoryBitmap bitmap;
    ASSERT_TRUE(bitmap.create(kWidth, kHeight));
    for (int y = 0; y < kHeight; ++y)
        for (int x = 0; x < kWidth; ++x) {
            const std::uint32_t opaque =
                screen[static_cast<std::size_t>(y * kWidth + x)] | 0xFF000000U;
            std::memcpy(bitmap.getPixels() + y * bitmap.stride + x * 4, &opaque, sizeof opaque);
        }
    std::string problem;
    EXPECT_TRUE(Sorel::writePngFile(bitmap, std::string(folder) + "/" + station + ".png", &problem))
        << problem;
}

std::vector<CRect> Session::menus() const {
    std::vector<CRect> rects;
    for (const XUser::Popup& popup : user_->popups())
        rects.push_back(CRect::ofSize(popup.x, popup.y, popup.width, popup.height));
    return rects;
}

CRect Session::openMenu(Place where, int button) {
    XDoTool::click(where, button);
    EXPECT_TRUE(until([this] { return !menus().empty(); })) << "no menu";
    return menus().empty() ? CRect{} : menus().front();
}

Place Session::rowOf(const CRect& menu, int row, int separators) {
    constexpr int kEdge = 4;
    constexpr int kRow = 20;
    constexpr int kSeparator = 9;
    return {static_cast<int>(menu.left) + 30,
            static_cast<int>(menu.top) + kEdge + row * kRow + separators * kSeparator + kRow / 2};
}

Sorel::CMessageBox* Session::message() {
    return dynamic_cast<Sorel::CMessageBox*>(instrument_->editor().frame()->getModalView());
}

bool Session::messageSays(const std::vector<std::string>& lines) {
    constexpr CRect kMiddle{150.0, 150.0, 850.0, 395.0};
    return until([&] {
        const Picture middle = look(kMiddle);
        return std::all_of(lines.begin(), lines.end(), [&](const std::string& line) {
            int width = 0;
            const Picture small = written(line, &line == lines.data(), width);
            return contains(middle, static_cast<int>(kMiddle.width()), small, width);
        });
    });
}

void Session::pressMessageButton(int index) {
    const CRect button = message()->buttonRect(index);
    XDoTool::click({static_cast<int>(button.left) + 20, static_cast<int>(button.top) + 12});
    ASSERT_TRUE(waitForNoMessage());
}

} // namespace Orvel
