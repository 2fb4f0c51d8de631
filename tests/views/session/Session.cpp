// A user's session at the real window: its life, time and eyes.
#include "Session.h"

#include "offscreen/PngFile.h"
#include "platform/Frame.h"
#include "platform/X11.h"

#include <cstdlib>
#include <numeric>
#include <thread>

namespace Orvel {

using Sorel::CRect;

namespace {

constexpr auto kStep = std::chrono::milliseconds(5);
constexpr auto kPatience = std::chrono::seconds(8); // of a busy machine

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

} // namespace

std::string hostCall(std::string what, int index) {
    what += ' ';
    return what += std::to_string(index);
}

int differences(const Picture& a, const Picture& b) {
    if (a.size() != b.size()) return static_cast<int>(std::max(a.size(), b.size()));
    return std::inner_product(a.begin(), a.end(), b.begin(), 0, std::plus<>(),
                              [](std::uint32_t x, std::uint32_t y) { return x != y ? 1 : 0; });
}

bool isGold(std::uint32_t pixel) {
    const auto red = static_cast<int>(pixel >> 16 & 0xFF);
    const auto green = static_cast<int>(pixel >> 8 & 0xFF);
    const auto blue = static_cast<int>(pixel & 0xFF);
    return red > 180 && green > 130 && green < red && blue < green - 60;
}

XServer& Session::server() {
    static XServer server;
    return server;
}

Session::Session()
    : audio_(music()) {}
Session::~Session() = default;

void Session::SetUp() {
    if (!server().isRunning())
        GTEST_SKIP() << "Xvfb is not installed (Debian package xvfb): no window to test with.";
    if (!XDoTool::isInstalled())
        GTEST_SKIP() << "xdotool is not installed (Debian package xdotool): no hands to test with.";
    user_ = std::make_unique<XUser>();
    XDoTool::moveTo(kNowhere);
    EditorSurroundings surroundings;
    surroundings.callback = &host_;
    surroundings.desktop = []() -> Sorel::IPlatform& { return Sorel::x11Platform(); };
    surroundings.versionText = "Version 1.2.3, 64 bit";
    surroundings.product = "Orvel Scope";
    surroundings.version = "1.2.3";
    surroundings.openOnDesktop = [this](const std::string& target) {
        openedOnDesktop_.push_back(target);
    };
    analyser_ = std::make_unique<COrvelScope>(&host_, [surroundings](COrvelScope& scope) {
        return std::make_unique<COrvelScopeEditor>(scope, surroundings);
    });
    // As an adapter numbers them.
    for (int i = 0, index = 0; i < analyser_->getNumParameters(); ++i)
        if (Vardo::IPluginParameter& each = *analyser_->getParameter(i); each.getAutomatable())
            each.setHostIndex(index++);
    player_ = std::make_unique<orvel_test::PlainHost>(*analyser_, kRate, kBlock);
    editor().setHost(&host_);
    open();
}

void Session::TearDown() {
    if (!analyser_) return;
    close();
    editor().setHost(nullptr);
    player_.reset();
    analyser_.reset();
    Sorel::setPlatform(nullptr);
}

void Session::open() {
    editor().open(nullptr);
    const CRect header{800.0, 5.0, 980.0, 45.0};
    const Picture before(static_cast<std::size_t>(header.width() * header.height()), 0);
    ASSERT_TRUE(until([&] { return differences(look(header), before) == 180 * 40; }))
        << "the window does not show";
}

void Session::close() {
    editor().close();
    user_->sync();
}

void Session::showPage(int page) {
    XDoTool::click({371 + 119 * page, 24});
    XDoTool::moveTo(kNowhere);
    ASSERT_TRUE(until([&] { return isGold(pixel({371 + 119 * page, 33})); })) << page;
    step(2);
}

// ---- Time --------------------------------------------------------------------------------------

void Session::step(int times) {
    for (; times > 0; --times) {
        const auto now = std::chrono::steady_clock::now();
        next_ = std::max(next_ + kStep, now); // what was missed is not made up for
        std::this_thread::sleep_until(next_);
        if (at_ + kBlock > audio_.size()) at_ = 0;
        player_->block(audio_, at_, kBlock);
        at_ += kBlock;
        analyser_->onIdle();
        editor().idle();
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

// ---- Eyes --------------------------------------------------------------------------------------

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
    until([&] {
        Picture now = look(rect);
        ++steps;
        if (now != last) {
            changed = Clock::now();
            steps = 0;
        }
        last = std::move(now);
        return steps > kStillSteps && Clock::now() - changed > kStill;
    });
    return last;
}

bool Session::changes(const CRect& rect, const Picture& before, int atLeast) {
    return until([&] { return differences(look(rect), before) >= atLeast; });
}

std::vector<CRect> Session::menus() const {
    std::vector<CRect> rects;
    for (const XUser::Popup& popup : user_->popups())
        rects.push_back(CRect::ofSize(popup.x, popup.y, popup.width, popup.height));
    return rects;
}

Place Session::rowOf(const CRect& menu, int row, int separators) {
    constexpr int kEdge = 4;
    constexpr int kRow = 20;
    constexpr int kSeparator = 9;
    return {static_cast<int>(menu.left) + 30,
            static_cast<int>(menu.top) + kEdge + row * kRow + separators * kSeparator + kRow / 2};
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
            const std::uint32_t color = screen[static_cast<std::size_t>(y * kWidth + x)];
            std::uint8_t* out = bitmap.getPixels() + y * bitmap.stride + x * 4;
            out[0] = static_cast<std::uint8_t>(color);
            out[1] = static_cast<std::uint8_t>(color >> 8);
            out[2] = static_cast<std::uint8_t>(color >> 16);
            out[3] = 255;
        }
    std::string problem;
    EXPECT_TRUE(Sorel::writePngFile(bitmap, std::string(folder) + "/" + station + ".png", &problem))
        << problem;
}

} // namespace Orvel
