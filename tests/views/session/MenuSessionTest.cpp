// Switches, option fields and the menus under the right button: with the mouse, the wheel and keys.
#include "Session.h"

namespace Orvel {
namespace {

using Sorel::CRect;

struct SwitchCase {
    int row;
    ParameterId id;
};

class MenuSession : public Session {
  protected:
    static CRect pill(int row) { return CRect::ofSize(690.0, 468.0 + 16.0 * row, 26.0, 14.0); }
    static Place switchAt(int row) { return {703, 475 + 16 * row}; }
    static CRect field(int index) { return CRect::ofSize(838.0 + 46.0 * index, 500.0, 44.0, 15.0); }
    static Place fieldAt(int index) { return {860 + 46 * index, 507}; }

    void flip(const SwitchCase& test, Place where) {
        const Picture before = look(pill(test.row));
        const bool wasOn = parameter(test.id).getBoolValue();
        const int index = parameter(test.id).getHostIndex();
        host_.calls.clear();
        XDoTool::click(where);
        EXPECT_TRUE(until([&] { return parameter(test.id).getBoolValue() != wasOn; })) << test.id;
        EXPECT_TRUE(changes(pill(test.row), before, 20)) << test.id;
        if (index < 0) return;
        step(2);
        EXPECT_THAT(host_.calls,
                    testing::ElementsAre(hostCall("begin", index), hostCall("set", index),
                                         hostCall("end", index)));
    }
    void flipAll(const std::vector<SwitchCase>& cases) {
        for (const SwitchCase& test : cases) {
            const Picture before = settled(pill(test.row));
            flip(test, switchAt(test.row));
            flip(test, {switchAt(test.row).x + 60, switchAt(test.row).y}); // by its name
            EXPECT_TRUE(until([&] { return look(pill(test.row)) == before; })) << test.id;
        }
    }
    CRect openMenu(Place where, int button) {
        XDoTool::click(where, button);
        EXPECT_TRUE(waitForMenu());
        return menus().empty() ? CRect{} : menus().front();
    }
    bool becomes(ParameterId id, int value) {
        return until([&] { return parameter(id).getIntValue() == value; });
    }
};

TEST_F(MenuSession, SwitchesTurnOnAndOff) {
    flipAll({{0, kScopeFreeze}, {1, kScopeTransientDetection}});
    // A voice more shows its sections, never both.
    flip({2, kScopeDeEsserMale}, switchAt(2));
    flip({3, kScopeDeEsserFemale}, switchAt(3));
    keep("switches-scope");
    showPage(1);
    flipAll({{0, kSpectrumFreeze},
             {1, kSpectrumDrawLine},
             {2, kSpectrumDrawWaterfall},
             {3, kSpectrumLinearFrequencyScale}});
    showPage(2);
    flipAll({{0, kSpectrumFreeze}});
}

TEST_F(MenuSession, OptionFieldsByMouseKeyboardAndWheel) {
    struct FieldCase {
        ParameterId id;
        int mouseRow, keyDowns; // of the list
        int lowest;
    };
    constexpr FieldCase kFields[] = {{kSpectrumFFTSize, 0, 2, 0},
                                     {kSpectrumUpdateSpeed, 3, 6, 1},
                                     {kSpectrumAnalyzeMode, 1, 0, 0}};
    for (int i = 0; i < 3; ++i) {
        showPage(i == 2 ? 2 : 1); // the same fields on both
        const FieldCase& test = kFields[i];
        const Picture before = settled(field(i));
        CRect menu = openMenu(fieldAt(i), 1);
        keep("option-" + std::to_string(i));
        XDoTool::click(rowOf(menu, test.mouseRow));
        EXPECT_TRUE(becomes(test.id, test.lowest + test.mouseRow)) << i;
        EXPECT_TRUE(waitForNoMenu());
        EXPECT_TRUE(changes(field(i), before, 5));

        // From the first item down.
        menu = openMenu({fieldAt(i).x - 8, fieldAt(i).y}, 1);
        XDoTool::moveTo(kNowhere);
        XDoTool::key("Home");
        for (int down = 0; down < test.keyDowns; ++down)
            XDoTool::key("Down");
        XDoTool::key("Return");
        EXPECT_TRUE(waitForNoMenu());
        EXPECT_TRUE(becomes(test.id, test.lowest + test.keyDowns)) << i;

        openMenu(fieldAt(i), 1);
        XDoTool::key("Escape");
        EXPECT_TRUE(waitForNoMenu());
        openMenu(fieldAt(i), 1);
        XDoTool::click({100, 600}); // outside everything
        EXPECT_TRUE(waitForNoMenu());
        EXPECT_EQ(parameter(test.id).getIntValue(), test.lowest + test.keyDowns);

        // The wheel goes up and down the list.
        const bool hasAbove = test.keyDowns > 0;
        XDoTool::click(fieldAt(i), hasAbove ? 4 : 5);
        EXPECT_TRUE(becomes(test.id, test.lowest + test.keyDowns + (hasAbove ? -1 : 1))) << i;
        XDoTool::click(fieldAt(i), hasAbove ? 5 : 4);
        EXPECT_TRUE(becomes(test.id, test.lowest + test.keyDowns)) << i;
    }
}

TEST_F(MenuSession, TheRightButtonOpensTheSettingsOfEachDisplay) {
    struct Station {
        int page;
        Place where;
        int switchRow;
        ParameterId switched;
        int subRow;
        int subChoice;
        ParameterId chosen;
    };
    constexpr Station kStations[] = {
        {0, {500, 200}, 1, kScopeTransientDetection, 4, 2, kScopeChannelMode},
        {0, {900, 400}, 0, kScopeFreeze, 5, 3, kScopeSyncMode},
        {1, {500, 200}, 3, kSpectrumLinearFrequencyScale, 5, 1, kSpectrumFFTSize},
        {2, {600, 150}, 1, kSpectrumDrawLine, 3, 4, kSpectrumNumBands},
        {2, {850, 350}, 0, kSpectrumFreeze, 6, 1, kSpectrumAnalyzeMode},
    };
    for (const Station& station : kStations) {
        showPage(station.page);
        const bool wasOn = parameter(station.switched).getBoolValue();
        CRect menu = openMenu(station.where, 3);
        XDoTool::click(rowOf(menu, station.switchRow));
        EXPECT_TRUE(until([&] { return parameter(station.switched).getBoolValue() != wasOn; }));
        EXPECT_TRUE(waitForNoMenu());

        // The sub-menu opens under a mouse that rests, and stays on the way into it.
        menu = openMenu({station.where.x - 20, station.where.y}, 3);
        XDoTool::moveTo(rowOf(menu, station.subRow, 1));
        ASSERT_TRUE(until([&] { return menus().size() == 2; }));
        const CRect sub = menus().back();
        keep("menu-" + std::to_string(station.page) + "-" + std::to_string(station.subRow));
        const Place choice = rowOf(sub, station.subChoice);
        XDoTool::moveTo({choice.x, rowOf(menu, station.subRow, 1).y});
        step(3);
        XDoTool::click(choice);
        EXPECT_TRUE(becomes(station.chosen, station.subChoice));
        EXPECT_TRUE(waitForNoMenu());
        XDoTool::moveTo(kNowhere);
    }
}

TEST_F(MenuSession, EscapeAndClicksOutsideChooseNothing) {
    constexpr Place kInDisplays{600, 150};
    for (const int page : {0, 1, 2}) {
        showPage(page);
        host_.calls.clear();
        openMenu(kInDisplays, 3);
        XDoTool::key("Escape");
        EXPECT_TRUE(waitForNoMenu());
        const CRect menu = openMenu(kInDisplays, 3);
        XDoTool::moveTo(rowOf(menu, 0));
        step(3);
        XDoTool::click({100, 700});
        EXPECT_TRUE(waitForNoMenu());
        EXPECT_THAT(host_.calls, testing::IsEmpty());
        XDoTool::moveTo(kNowhere);
    }
}

} // namespace
} // namespace Orvel
