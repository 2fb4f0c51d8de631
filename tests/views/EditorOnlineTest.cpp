// "Update" and "Support" of the system page, from the click to the file on the desktop.
#include "../core/FileFixture.h"
#include "../online/LoopbackServer.h"
#include "analysis/OrvelScope.h"
#include "frame/VardoCallback.h"
#include "platform/Offscreen.h"
#include "views/OrvelScopeEditor.h"
#include "views/SystemPage.h"

#include <gmock/gmock.h>

namespace Orvel {
namespace {

using namespace Sorel;
using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr CPoint kUpdateButton{717.0, 314.0};
constexpr CPoint kSupportButton{815.0, 314.0};
constexpr int kSystemPageIndex = 3;

class Vst2Host final : public Vardo::VardoCallback {
  public:
    int getInterfaceKind() override { return static_cast<int>(Vardo::InterfaceKind::vst2); }
};

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
        if (analyser_) editor().close();
        setPlatform(nullptr);
    }
    void open(const std::string& server) {
        analyser_ = std::make_unique<COrvelScope>(&host_, [&](COrvelScope& scope) {
            EditorSurroundings surroundings;
            surroundings.callback = &host_;
            surroundings.desktop = [this]() -> IPlatform& { return desktop_; };
            surroundings.versionText = "Version 1.0.4, 64 bit";
            surroundings.product = "Orvel Scope";
            surroundings.version = "1.0.4";
            surroundings.versionNumber = 0x10004;
            surroundings.webId = "SCOPE";
            surroundings.updateServer = server;
            surroundings.openOnDesktop = [this](const std::string& target) {
                opened_.push_back(target);
            };
            return std::make_unique<COrvelScopeEditor>(scope, surroundings);
        });
        analyser_->setThreadedProcessing(false);
        analyser_->setSampleRate(96000.0);
        analyser_->setBlockSize(256);
        editor().open(nullptr);
        editor().setActivePage(kSystemPageIndex);
        idle();
    }
    COrvelScopeEditor& editor() { return static_cast<COrvelScopeEditor&>(*analyser_->getEditor()); }
    COffscreenFrame& window() { return *desktop_.frame(); }
    CSystemPage& page() {
        return static_cast<CSystemPage&>(*findView(*editor().frame(), "CSystemPage"));
    }
    bool isMessageOpen() { return editor().frame()->getModalView() != nullptr; }
    void idle() {
        desktop_.advance(25);
        editor().idle();
    }
    template <class Condition>
    void idleUntil(Condition condition) {
        for (int i = 0; i < 1000 && !condition(); ++i) {
            idle();
            std::this_thread::sleep_for(5ms);
        }
        EXPECT_TRUE(condition());
    }
    /// Set ORVEL_PICTURES to a folder to keep what the window shows.
    void keep(const std::string& name) {
        idle();
        if (const char* pictures = std::getenv("ORVEL_PICTURES"))
            window().writePng(std::string(pictures) + "/" + name + ".png");
    }

    Vst2Host host_;
    COffscreenPlatform desktop_;
    std::unique_ptr<COrvelScope> analyser_;
    std::vector<std::string> opened_;
};

TEST_F(EditorOnlineThread, SupportWritesAReportAndShowsWhereItIs) {
    open("");
    window().click(kSupportButton);
    const std::string file = page().statusLine();
    EXPECT_THAT(file, HasSubstr((folder / "home/Orvel Scope_support_2").string()));
    EXPECT_THAT(read(file), HasSubstr("MaxBufSize : 256\nSamplerate : 96000\nInterface  : VST2\n"));
    EXPECT_THAT(read(file), HasSubstr("Cont.Locat.: " + (folder / "home/Quillmere").string()));
    EXPECT_THAT(opened_, ElementsAre((folder / "home").string()));
    keep("system-report");
    write(folder / "config/user-dirs.dirs", "XDG_DESKTOP_DIR=\"/nowhere\"\n");
    window().click(kSupportButton);
    EXPECT_THAT(page().statusLine(), HasSubstr("could not be written"));
    EXPECT_EQ(opened_.size(), 1u);
}

TEST_F(EditorOnlineThread, WithoutAServerUpdateIsInactiveAndSaysWhy) {
    open("");
    EXPECT_THAT(page().statusLine(), HasSubstr("not checked"));
    keep("system-no-server");
    page().setStatus("something else");
    window().click(kUpdateButton);
    EXPECT_THAT(page().statusLine(), HasSubstr("not checked"));
    EXPECT_THAT(opened_, IsEmpty());
}

TEST_F(EditorOnlineThread, UpdateOpensThePageAndChecksNow) {
    LoopbackServer server("HTTP/1.1 200 OK\r\n\r\nPRODUCT_PAGE=a.example/scope\n");
    open(server.address());
    EXPECT_EQ(page().statusLine(), "Quillmere");
    window().click(kUpdateButton);
    EXPECT_THAT(opened_, ElementsAre("http://" + server.address() + "/"));
    EXPECT_THAT(page().statusLine(), HasSubstr("Looking"));
    idleUntil([&] { return page().statusLine() == "This is the newest version."; });
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
    keep("update-question");
    window().key(Key::kReturn);
    idleUntil([&] { return !isMessageOpen(); });
    idleUntil([&] { return isMessageOpen(); });
    keep("update-done");
    EXPECT_EQ(page().statusLine(), (folder / "home/new.run").string());
    EXPECT_EQ(read(folder / "home/new.run").size(), 1000u);
    window().key(Key::kReturn);
    idleUntil([&] { return !isMessageOpen(); });

    stall = true;
    window().click(kUpdateButton);
    EXPECT_THAT(opened_, ElementsAre("http://" + server.address() + "/new.run"));
    idleUntil([&] { return isMessageOpen(); });
    window().key(Key::kReturn);
    idleUntil([&] { return requests == 4; });
    for (int i = 0; i < 20; ++i) {
        idle();
        std::this_thread::sleep_for(5ms);
    }
    keep("update-progress");
    const auto begin = std::chrono::steady_clock::now();
    editor().close();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 1s);
    for (const auto& entry : std::filesystem::directory_iterator(folder / "home"))
        EXPECT_NE(entry.path().extension(), ".part");
    EXPECT_FALSE(std::filesystem::exists(folder / "home/new (2).run"));
}

} // namespace
} // namespace Orvel
