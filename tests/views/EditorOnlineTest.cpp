// The buttons of the system page, from the click to the file on the desktop.
#include "../core/FileFixture.h"
#include "../online/LoopbackServer.h"
#include "Instrument.h"
#include "core/Paths.h"
#include "views/SystemPage.h"

#include <gmock/gmock.h>

namespace Orvel {
namespace {

using namespace Sorel;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;

constexpr CPoint kUpdateButton{717.0, 314.0};
constexpr CPoint kSupportButton{815.0, 314.0};
constexpr int kSystemPageIndex = 3;

CView* findView(CViewContainer& container, const std::string& className) {
    for (int i = 0; i < container.getNbViews(); ++i) {
        CView* const view = container.getView(i);
        if (className == view->getClassName()) return view;
        if (auto* const inner = dynamic_cast<CViewContainer*>(view))
            if (CView* const found = findView(*inner, className)) return found;
    }
    return nullptr;
}

class EditorOnlineThread : public FileTest {
  protected:
    ~EditorOnlineThread() override {
        if (instrument_) instrument_->editor().close();
        setPlatform(nullptr);
    }
    void open(const std::string& server) {
        EditorSurroundings surroundings;
        surroundings.product = "Orvel Scope";
        surroundings.version = "1.0.4";
        surroundings.versionNumber = 0x10004;
        surroundings.webId = "SCOPE";
        surroundings.updateServer = server;
        surroundings.openOnDesktop = [this](const std::string& target) {
            opened_.push_back(target);
        };
        instrument_ = std::make_unique<Instrument>(desktop_, surroundings);
        instrument_->open();
        instrument_->editor().setActivePage(kSystemPageIndex);
        instrument_->idle();
    }
    COffscreenFrame& window() { return instrument_->window(); }
    CFrame& frame() { return *instrument_->editor().frame(); }
    template <class View>
    View& view(const char* className) {
        return static_cast<View&>(*findView(frame(), className));
    }
    std::string status() { return view<CSystemPage>("CSystemPage").statusLine(); }
    bool isMessageOpen() { return frame().getModalView() != nullptr; }
    template <class Condition>
    void idleUntil(Condition condition) {
        for (int i = 0; i < 1000 && !condition(); ++i) {
            instrument_->idle();
            std::this_thread::sleep_for(5ms);
        }
        EXPECT_TRUE(condition());
    }

    COffscreenPlatform desktop_;
    std::unique_ptr<Instrument> instrument_;
    std::vector<std::string> opened_;
};

TEST_F(EditorOnlineThread, SupportWritesAReportAndShowsWhereItIs) {
    open("");
    window().click(kSupportButton);
    const std::string file = status();
    EXPECT_THAT(file, HasSubstr((folder / "home/Orvel Scope_support_2").string()));
    EXPECT_THAT(read(file),
                HasSubstr("MaxBufSize : 1200\nSamplerate : 48000\nInterface  : VST2\n"));
    EXPECT_THAT(read(file), HasSubstr("Cont.Locat.: " + (folder / "home/Quillmere").string()));
    EXPECT_THAT(opened_, ElementsAre((folder / "home").string()));
    instrument_->keep("system-report");
    write(folder / "config/user-dirs.dirs", "XDG_DESKTOP_DIR=\"/nowhere\"\n");
    window().click(kSupportButton);
    EXPECT_THAT(status(), HasSubstr("could not be written"));
    window().click(kUpdateButton); // there is no server
    EXPECT_THAT(status(), HasSubstr("not checked"));
    EXPECT_EQ(opened_.size(), 1u);
    instrument_->keep("system-no-server");
}

TEST_F(EditorOnlineThread, UpdateOpensThePageAndChecksNow) {
    LoopbackServer server("HTTP/1.1 200 OK\r\n\r\nPRODUCT_PAGE=a.example/scope\n");
    open(server.address());
    EXPECT_EQ(status(), "Quillmere");
    window().click(kUpdateButton);
    EXPECT_THAT(opened_, ElementsAre("http://" + server.address() + "/"));
    EXPECT_THAT(status(), HasSubstr("Looking"));
    idleUntil([&] { return status() == "This is the newest version."; });
    window().click(kUpdateButton);
    EXPECT_EQ(opened_.back(), "http://a.example/scope");
    idleUntil([&] { return server.requests().size() == 2; });
    EXPECT_THAT(server.requests().back(), HasSubstr("INTERFACE=VST2&"));
    EXPECT_FALSE(isMessageOpen());
}

TEST_F(EditorOnlineThread, AnUpdateIsFetchedOnYesAndClosingEndsItAtOnce) {
    std::atomic<int> requests{0};
    std::atomic<bool> stall{false};
    LoopbackServer server([&](Connection& client) {
        if (requests++ % 2 == 0) {
            client.send("HTTP/1.1 200 OK\r\n\r\nUPDATE=1\nURL=" + server.address() + "/new.run\n");
            return;
        }
        client.send("HTTP/1.1 200 OK\r\nContent-Length: 1000\r\n\r\n" + std::string(430, 'x'));
        if (stall) return client.waitForTheEnd();
        std::this_thread::sleep_for(200ms);
        client.send(std::string(570, 'x'));
    });
    open(server.address());
    idleUntil([&] { return isMessageOpen(); }); // by itself: it never checked before
    instrument_->keep("update-question");
    window().key(Key::kReturn);
    idleUntil([&] { return !isMessageOpen(); });
    idleUntil([&] { return isMessageOpen(); });
    instrument_->keep("update-done");
    EXPECT_EQ(status(), (folder / "home/new.run").string());
    EXPECT_EQ(read(folder / "home/new.run").size(), 1000u);
    window().key(Key::kReturn);
    idleUntil([&] { return !isMessageOpen(); });

    stall = true;
    window().click(kUpdateButton);
    EXPECT_THAT(opened_, ElementsAre("http://" + server.address() + "/new.run"));
    idleUntil([&] { return isMessageOpen(); });
    window().key(Key::kReturn);
    idleUntil([&] { return requests == 4; });
    instrument_->keep("update-progress");
    const auto begin = std::chrono::steady_clock::now();
    instrument_->editor().close();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 1s);
    for (const auto& entry : std::filesystem::directory_iterator(folder / "home"))
        EXPECT_NE(entry.path().extension(), ".part");
    EXPECT_FALSE(std::filesystem::exists(folder / "home/new (2).run"));
}

} // namespace
} // namespace Orvel
