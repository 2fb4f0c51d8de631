// A frame without a display: events take the road of a real window's, answers come with the idle.
#include "platform/Offscreen.h"
#include "Recorder.h"

#include <gtest/gtest.h>

#include <filesystem>

using namespace Sorel;

namespace {

class OffscreenTest : public testing::Test {
  protected:
    void SetUp() override {
        events.frame = platform.createFrame(events, {0, 0, 300, 200}, nullptr, "");
        events.paint(300, 200, {48, 47, 56, 255});
    }
    void TearDown() override { events.frame->release(); }
    COffscreenFrame& user() { return *platform.frame(); }
    std::uint32_t pixel(double x, double y) {
        const auto picture = user().picture();
        const std::uint8_t* p =
            picture->getPixels() + static_cast<int>(y) * picture->stride + static_cast<int>(x) * 4;
        return static_cast<std::uint32_t>(p[2] << 16 | p[1] << 8 | p[0]);
    }

    COffscreenPlatform platform;
    Recorder events;
};

TEST_F(OffscreenTest, MouseEventsComeInAWindowsOrder) {
    user().click({10, 20}, Buttons::kLeft | Buttons::kShift);
    EXPECT_EQ(events.take(""), "enter 10,20 10; move 10,20 10; down 10,20 12; up 10,20");
    user().doubleClick({10, 20});
    EXPECT_EQ(events.take(), "down 10,20 2; up 10,20; down 10,20 3; up 10,20");
    user().drag({0, 0}, {8, 0});
    EXPECT_EQ(events.log.size(), 1 + 1 + 8 + 1U);
    user().leave();
    user().wheel({5, 5}, -2.0F);
    EXPECT_EQ(events.take("up"),
              "move 0,0; down 0,0 2; move 1,0 2; move 2,0 2; move 3,0 2; move 4,0 2; "
              "move 5,0 2; move 6,0 2; move 7,0 2; move 8,0 2; exit; enter 5,5; "
              "move 5,5; wheel1-2 5,5");
}

TEST_F(OffscreenTest, AMenuIsDrawnUsedAndAnsweredInTheNextIdle) {
    MenuRequest request;
    request.anchor = {20, 10, 120, 30};
    request.items = {menuItem("One", 1), menuItem("More/Less", 2)};
    request.items[1].submenu = {menuItem("Two", 5), menuItem("Off", 6)};
    request.items[1].submenu[1].disabled = true;
    const auto menu = events.frame->createOptionMenu();
    int answer = -2;
    ASSERT_TRUE(menu->popup(request, [&](int id) { answer = id; }));
    EXPECT_EQ(pixel(100, 44), 0x22253BU) << "the panel";
    EXPECT_LT(pixel(70, 30 + 48 + 6) & 0xFF, 50U) << "its shadow";
    EXPECT_EQ(pixel(280, 190), 0x302F38U);
    EXPECT_FALSE(user().chooseMenuItem("More/Less/Off"));
    EXPECT_EQ(user().menuTitles(), (std::vector<std::string>{"Two", "Off"}));
    user().moveMouse(user().menuItemPosition("Two"));
    EXPECT_TRUE(user().chooseMenuItem("Two"));
    EXPECT_EQ(answer, -2);
    events.frame->doIdle();
    EXPECT_EQ(answer, 5);
    EXPECT_FALSE(user().isMenuOpen());
    EXPECT_EQ(events.take(), "") << "the frame hears nothing of it";

    // The object that asked may go in the answer, or before it.
    auto owned = events.frame->createOptionMenu();
    owned->popup(request, [&](int) { owned.reset(); });
    EXPECT_FALSE(menu->popup(request, [](int) {})) << "one at a time";
    user().click({290, 190});
    events.frame->doIdle();
    EXPECT_EQ(owned, nullptr);
    menu->popup(request, [](int) { FAIL() << "cancelled"; });
    user().key(Key::kEscape);
    menu->cancel();
    events.frame->doIdle();
}

TEST_F(OffscreenTest, DialogsAreAnsweredLaterAndCancelled) {
    auto dialog = events.frame->createFileDialog();
    platform.setFileDialogAnswer({{"/tmp/a.wav"}, ""});
    FileDialogRequest request;
    request.title = "Open";
    std::string got;
    dialog->run(request, [&](const FileDialogAnswer& answer) {
        got = answer.paths.at(0);
        dialog.reset();
    });
    EXPECT_EQ(platform.lastFileDialog().title, "Open");
    EXPECT_EQ(got, "");
    events.frame->doIdle();
    EXPECT_EQ(got, "/tmp/a.wav");
    dialog = events.frame->createFileDialog();
    dialog->run(request, [](const FileDialogAnswer&) { FAIL() << "cancelled"; });
    dialog->cancel();
    events.frame->doIdle();
    dialog->run(request, [](const FileDialogAnswer&) { FAIL() << "the window went"; });
    events.frame->destroyWindow();
    events.frame->doIdle();
    EXPECT_FALSE(dialog->isOpen());
}

TEST_F(OffscreenTest, DropsAreTakenOrLeft) {
    EXPECT_TRUE(user().dropFiles({"/a", "/b"}, {30, 40}));
    EXPECT_EQ(events.take(), "drag enter /a 30,40; drag move 30,40; drop of 2 30,40");
    events.acceptDrops = false;
    EXPECT_FALSE(user().dropFiles({"/a"}, {30, 40}));
    EXPECT_EQ(events.take(), "drag enter /a 30,40; drag move 30,40; drag leave");
    EXPECT_EQ(events.frame->getDragContainer(), nullptr);
}

TEST_F(OffscreenTest, AnEventMayCloseTheWindow) {
    user().moveMouse({5, 5});
    events.during = [this](const std::string&) { events.frame->destroyWindow(); };
    COffscreenFrame& frame = user();
    events.take("");
    frame.doubleClick({5, 5});
    frame.key(Key::kTab);
    frame.dropFiles({"/a"}, {1, 1});
    EXPECT_EQ(events.take(""), "down 5,5 2");
    EXPECT_EQ(platform.frame(), nullptr);
}

TEST_F(OffscreenTest, PicturesAndShownPixelsAreCounted) {
    events.frame->invalidRect({290, 0, 400, 10});
    EXPECT_EQ(user().takeShownPixels(), 100U);
    EXPECT_EQ(user().takeShownPixels(), 0U);
    const std::string path = std::filesystem::temp_directory_path() / "orvel-offscreen.png";
    EXPECT_TRUE(user().writePng(path));
    EXPECT_GT(std::filesystem::file_size(path), 100U);
    std::filesystem::remove(path);
    std::string problem;
    EXPECT_FALSE(user().writePng("/no/such/folder/x.png", &problem));
    EXPECT_NE(problem.find("/no/such/folder"), std::string::npos);
}

} // namespace
