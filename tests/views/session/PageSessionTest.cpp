// The four pages: their buttons, their pictures, and the keys that belong to the program around.
#include "Session.h"

#include <set>

namespace Orvel {
namespace {

class PageSession : public Session {
  protected:
    static Place button(int page) { return {371 + 119 * page, 24}; }
    static constexpr int kBar = 33; // the row of the gold bar under a chosen button
};

TEST_F(PageSession, EachButtonShowsItsPageAndLightsUp) {
    std::vector<Picture> pages;
    for (const int page : {1, 2, 3, 0}) {
        showPage(page);
        EXPECT_EQ(analyser_->activePage(), page);
        for (int other = 0; other < COrvelScopeEditor::kNumPages; ++other)
            EXPECT_EQ(isGold(pixel({button(other).x, kBar})), other == page) << page << other;
        listen(400);
        keep("page-" + std::to_string(page));
        const Picture display = look(kDisplay);
        EXPECT_GT(std::set(display.begin(), display.end()).size(), 40u) << page;
        for (const Picture& earlier : pages)
            EXPECT_GT(differences(display, earlier), 5000) << page;
        pages.push_back(display);
        // What measures moves, what does not stands still.
        listen(100);
        EXPECT_EQ(differences(look(kDisplay), display) > 100, page != 3) << page;
    }
}

TEST_F(PageSession, KeysThatNothingUsesGoToTheProgramAround) {
    XDoTool::click({600, 440}); // the ground: the window has the keyboard
    XDoTool::type("12 4");
    EXPECT_TRUE(until([&] { return host_.keys == "12 4"; })) << host_.keys;
    // Those that are typed into a value do not.
    XDoTool::click({186, 521});
    step(5);
    XDoTool::type("3");
    step(5);
    XDoTool::key("Escape");
    step(5);
    EXPECT_EQ(host_.keys, "12 4");
    XDoTool::type("2");
    EXPECT_TRUE(until([&] { return host_.keys == "12 42"; })) << host_.keys;
}

} // namespace
} // namespace Orvel
