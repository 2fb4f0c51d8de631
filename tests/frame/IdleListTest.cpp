// The idle list with a timer and editors that only count.
#include "frame/IdleList.h"
#include "frame/PluginEditor.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>
#include <vector>

using Vardo::IdleList;

namespace {
class Editor : public Vardo::IPluginEditor {
  public:
    void open(void*) override { isOpen_ = true; }
    int close() override {
        isOpen_ = false;
        return 0;
    }
    int setKnobMode(int) override { return 0; }
    bool getSize(int*, int*) override { return true; }
    void setSize(int, int) override {}
    bool isOpen() override { return isOpen_; }
    void update(int) override {}
    void parameterChanged() override {}
    bool onWheel(float) override { return false; }
    bool onKeyDown(const Vardo::KeyEvent&) override { return false; }
    bool onKeyUp(const Vardo::KeyEvent&) override { return false; }
    void idle() override {
        ++idles;
        if (whenIdle) whenIdle();
    }

    std::atomic<int> idles{0};
    std::function<void()> whenIdle;

  private:
    bool isOpen_ = true;
};

// Writes down what it is told.
class Timer : public Vardo::IIdleTimer {
  public:
    explicit Timer(std::vector<std::string>& log)
        : log_(log) {}
    ~Timer() override { log_.emplace_back("gone"); }
    void start(int periodMs) override { log_.push_back("start " + std::to_string(periodMs)); }
    void stop() override { log_.emplace_back("stop"); }

  private:
    std::vector<std::string>& log_;
};

using Log = std::vector<std::string>;
} // namespace

TEST(IdleList, TimerRunsOnlyWhileThereAreEditors) {
    Log log;
    Editor editor;
    {
        IdleList list;
        list.setTimer(std::make_unique<Timer>(log));
        list.setPeriod(40);
        EXPECT_EQ(log, Log{}) << "nobody is waiting";
        list.add(&editor);
        list.setPeriod(25);
        list.remove(&editor);
        list.tick();
        list.add(&editor);
        EXPECT_EQ(editor.idles, 0);
    }
    EXPECT_EQ(log, (Log{"start 40", "stop", "start 25", "stop", "start 25", "stop", "gone"}));
}

TEST(IdleList, EditorsChangeTheListFromInside) {
    IdleList list;
    Editor selfish;
    auto victim = std::make_unique<Editor>();
    std::vector<std::unique_ptr<Editor>> born;
    Editor last;
    selfish.whenIdle = [&] {
        list.remove(&selfish);
        // Removed and gone before its turn in this very tick.
        list.remove(victim.get());
        victim.reset();
        for (int i = 0; i < 100; ++i) { // enough to move the list in memory
            born.push_back(std::make_unique<Editor>());
            list.add(born.back().get());
        }
        list.tick(); // as a nested event loop would
    };
    list.add(&selfish);
    list.add(victim.get());
    list.add(&last);
    list.tick();
    EXPECT_EQ(selfish.idles, 1);
    EXPECT_EQ(last.idles, 1);
    EXPECT_EQ(born.front()->idles, 0);
    last.close(); // a closed editor does not idle
    list.tick();
    EXPECT_EQ(selfish.idles, 1);
    EXPECT_EQ(last.idles, 1);
    EXPECT_EQ(born.back()->idles, 1);
}

TEST(IdleList, RemoveWaitsForATickOnAnotherThread) {
    IdleList list;
    Editor permanent;
    list.add(&permanent);
    std::atomic<bool> stop{false};
    std::thread gui([&] {
        while (!stop)
            list.tick();
    });
    for (int i = 0; i < 500; ++i) {
        Editor passing; // dies at the end of the round; its idle must not run then
        int value = 0;
        passing.whenIdle = [&] { value = value + 1; };
        list.add(&passing);
        // Now and then until the other thread has come round for certain.
        while (permanent.idles < i / 10)
            std::this_thread::yield();
        list.remove(&passing);
        value = -1;
    }
    stop = true;
    gui.join();
    EXPECT_GE(permanent.idles, 49);
}
