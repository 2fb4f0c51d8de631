// The update check from the first tick to the file on the desktop, with a clock of our own.
#include "online/UpdateCheck.h"
#include "FileFixture.h"
#include "LoopbackServer.h"
#include "core/Settings.h"
#include "online/UpdateQuery.h"

#include <gmock/gmock.h>

namespace Dorna {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr std::int64_t kNow = 1'800'000'000;
constexpr const char* kSettings = "Software\\QUILLMERE\\Test Scope\\";
const std::string kOk = "HTTP/1.1 200 OK\r\n\r\n";

class User final : public IDornaSessionListener, public IUpdateQuestion {
  public:
    bool askYesNo(const std::string& title,
                  const std::string& text,
                  std::function<void(bool)> whenAnswered) override {
        if (busy) return false;
        asked.push_back(title + ": " + text);
        answer = std::move(whenAnswered);
        return true;
    }
    void checkEnded(CheckOutcome outcome) override { outcomes.push_back(outcome); }
    void downloadProgress(float fraction) override { progress = fraction; }
    void downloadEnded(const std::filesystem::path& file) override { downloads.push_back(file); }

    bool busy = false;
    std::vector<std::string> asked;
    std::function<void(bool)> answer;
    std::vector<CheckOutcome> outcomes;
    std::vector<std::filesystem::path> downloads;
    float progress = -1.0F;
};

class UpdateCheckThread : public FileTest {
  protected:
    UpdateCheckThread() {
        write(folder / "config/user-dirs.dirs", "XDG_DESKTOP_DIR=\"$HOME/Desk\"\n");
        std::filesystem::create_directories(desktop);
    }
    std::unique_ptr<UpdateCheck> make(const std::string& server) {
        auto check = std::make_unique<UpdateCheck>(
            server, UpdateClock{[this] { return seconds; }, [this] { return milliseconds; }});
        check->setUp("Test Scope", "SCOPE", 0x10004);
        check->SetInterfaceName("VST2");
        check->setListener(&user);
        return check;
    }
    /// Ticks until nothing is to be done but to wait for the user.
    void run(UpdateCheck& check) {
        check.Tick(&user);
        milliseconds += 1000;
        for (int i = 0; i < 2000; ++i) {
            check.Tick(&user);
            if (check.state() == UpdateCheck::kFinished || user.answer) return;
            std::this_thread::sleep_for(1ms);
        }
        ADD_FAILURE() << "still in state " << check.state();
    }
    void answer(UpdateCheck& check, bool yes) {
        ASSERT_TRUE(user.answer);
        std::exchange(user.answer, nullptr)(yes);
        run(check);
    }
    static void checkedHoursAgo(int hours) {
        const std::string time = std::to_string(kNow - 3600 * hours);
        Core::writeSetting(kSettings, "LastUpdateCheck", time.c_str());
    }
    static std::string lastCheck() {
        char text[Core::kSettingBufferSize];
        Core::readSetting(kSettings, "LastUpdateCheck", text, nullptr);
        return text;
    }

    std::filesystem::path desktop = folder / "home/Desk";
    std::int64_t seconds = kNow;
    std::uint64_t milliseconds = 5000;
    User user;
};

using Outcome = IDornaSessionListener::CheckOutcome;

TEST_F(UpdateCheckThread, AsksTheServerOnceInTwentyTwoHours) {
    LoopbackServer server(kOk + "PRODUCT_PAGE=a.example/scope\n");
    checkedHoursAgo(21);
    run(*make(server.address()));
    EXPECT_THAT(server.requests(), IsEmpty());

    checkedHoursAgo(23);
    auto check = make(server.address());
    run(*check);
    EXPECT_THAT(server.requests(),
                ElementsAre("GET /update_available.php?WEB_ID=SCOPE&VERSION=1.0.4&INTERFACE=VST2&"
                            "PLATFORM=LINUX_64 HTTP/1.1\nHost: 127.0.0.1\n\r\n"));
    EXPECT_EQ(lastCheck(), std::to_string(kNow));
    EXPECT_THAT(user.outcomes, ElementsAre(Outcome::kUpToDate));
    EXPECT_THAT(user.asked, IsEmpty());
    EXPECT_EQ(read(folder / "data/Quillmere/Test Scope/0.cache"), "PRODUCT_PAGE=a.example/scope");
    check.reset();
    check = make(server.address());
    EXPECT_EQ(check->addressForBrowser(), "http://a.example/scope") << "from the cache";

    run(*check);
    EXPECT_THAT(server.requests(), SizeIs(1));
    EXPECT_TRUE(check->checkNow()) << "whenever the last time was";
    run(*check);
    EXPECT_THAT(server.requests(), SizeIs(2));
    seconds -= 3600; // a clock that was put right
    check.reset();
    run(*make(server.address()));
    EXPECT_THAT(server.requests(), SizeIs(3));
}

TEST_F(UpdateCheckThread, OneOfTwoEditorsDoesIt) {
    LoopbackServer server(kOk + "x");
    auto first = make(server.address());
    auto second = make(server.address());
    first->Tick(&user);
    for (int i = 0; i < 3; ++i) {
        milliseconds += 2000;
        second->Tick(&user);
    }
    EXPECT_EQ(second->state(), UpdateCheck::kWaiting);
    EXPECT_FALSE(second->checkNow());
    run(*first);
    EXPECT_THAT(server.requests(), SizeIs(1));
    first.reset();
    run(*second); // has the check now, and finds it done
    EXPECT_EQ(second->state(), UpdateCheck::kFinished);
    EXPECT_THAT(server.requests(), SizeIs(1));
    EXPECT_TRUE(second->checkNow());
}

TEST_F(UpdateCheckThread, BringsTheUpdateToTheDesktopOnAYes) {
    const std::string file(300'000, 'u');
    LoopbackServer server([&](Connection& client) {
        // Told apart by order: the question, then the file.
        static int count = 0;
        if (count++ == 0)
            client.send(kOk + "UPDATE=1\r\nURL=http://" + server.address() +
                        "/get/Scope%202.run?k\r\n");
        else
            client.send("HTTP/1.1 200 OK\r\nContent-Length: 300000\r\n\r\n" + file);
    });
    auto check = make(server.address());
    user.busy = true;
    check->Tick(&user);
    milliseconds += 1000;
    for (int i = 0; i < 2000 && check->state() != UpdateCheck::kUpdateFound; ++i) {
        check->Tick(nullptr);
        std::this_thread::sleep_for(1ms);
    }
    check->Tick(&user);
    EXPECT_EQ(check->state(), UpdateCheck::kUpdateFound) << "asked again until it can be shown";
    user.busy = false;
    run(*check);
    EXPECT_THAT(user.asked,
                ElementsAre("Update Available: A update for Test Scope is available, should it be "
                            "downloaded to your desktop?"));
    seconds += 60;
    answer(*check, true);
    EXPECT_THAT(user.downloads, ElementsAre(desktop / "Scope 2.run"));
    EXPECT_EQ(read(desktop / "Scope 2.run"), file);
    EXPECT_EQ(entriesIn(desktop), 1);
    EXPECT_EQ(lastCheck(), std::to_string(kNow + 60));
    EXPECT_EQ(check->state(), UpdateCheck::kFinished);
    EXPECT_THAT(check->addressForBrowser(), testing::EndsWith("/get/Scope%202.run?k"));
}

TEST_F(UpdateCheckThread, ANoOrAFailureIsTheEndOfIt) {
    LoopbackServer server(kOk + "UPDATE=1\nURL=127.0.0.1:1/file\n");
    auto check = make(server.address());
    run(*check);
    seconds += 60;
    answer(*check, false);
    EXPECT_EQ(check->state(), UpdateCheck::kFinished);
    EXPECT_EQ(lastCheck(), std::to_string(kNow + 60));
    EXPECT_THAT(server.requests(), SizeIs(1));

    check->checkNow();
    run(*check);
    answer(*check, true); // nobody listens at that port
    EXPECT_THAT(user.downloads, ElementsAre(std::filesystem::path()));
    EXPECT_EQ(entriesIn(desktop), 0);

    const std::string before = lastCheck();
    LoopbackServer broken("HTTP/1.1 500 No\r\n\r\nUPDATE=1\nURL=a/b\n");
    check.reset();
    check = make(broken.address());
    check->checkNow();
    run(*check);
    EXPECT_EQ(user.outcomes.back(), Outcome::kNoAnswer);
    EXPECT_EQ(lastCheck(), before);

    LoopbackServer elsewhere(kOk + "UPDATE=1\nURL=https://a.example/file\n");
    check.reset();
    check = make(elsewhere.address());
    check->checkNow();
    run(*check);
    EXPECT_EQ(check->state(), UpdateCheck::kFinished) << "for a browser, not for us";
    EXPECT_EQ(user.outcomes.back(), Outcome::kUpdateExists);
    EXPECT_EQ(check->addressForBrowser(), "https://a.example/file");
    EXPECT_THAT(user.asked, SizeIs(2));
}

TEST_F(UpdateCheckThread, WithoutAServerNothingHappens) {
    auto check = make("");
    EXPECT_FALSE(check->checkNow());
    milliseconds += 5000;
    check->Tick(&user);
    EXPECT_EQ(check->state(), UpdateCheck::kWaiting);
    EXPECT_EQ(check->addressForBrowser(), "");
    // It took nothing from anybody either.
    LoopbackServer server(kOk);
    auto other = make(server.address());
    run(*other);
    EXPECT_THAT(server.requests(), SizeIs(1));
}

TEST_F(UpdateCheckThread, EndsWithinASecondAndLetsTheNextOneWork) {
    const LoopbackServer silent([](Connection& client) { client.waitForTheEnd(); });
    auto check = make(silent.address());
    check->checkNow();
    check->Tick(&user);
    milliseconds += 1000;
    check->Tick(&user);
    ASSERT_EQ(check->state(), UpdateCheck::kWorking);
    std::this_thread::sleep_for(100ms);
    const auto begin = std::chrono::steady_clock::now();
    check.reset();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, 1s);
    EXPECT_EQ(lastCheck(), "");
    EXPECT_TRUE(make(silent.address())->checkNow());
}

} // namespace
} // namespace Dorna
