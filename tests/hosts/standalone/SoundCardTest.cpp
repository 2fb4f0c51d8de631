// Sound through a sound server of the test's own, which needs no device. Without the server's
// program the cases skip themselves.
#include "SoundCard.h"
#include "FakePlugin.h"
#include "FileStream.h"
#include "PlayDeck.h"
#include "PlayEngine.h"
#include "StandardError.h"

#include <gtest/gtest.h>
#include <jack/jack.h>

#include <atomic>
#include <chrono>
#include <cstdlib>
#include <string>
#include <thread>
#include <vector>

#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>

namespace Standalone {
namespace {

using namespace std::chrono_literals;

constexpr int kRate = 48000;

/// jackd with its dummy driver, under a name that no other server has. Synchronous: on a busy
/// machine a round may come late, but none is left out.
class SoundServer {
  public:
    SoundServer()
        : name_("orvel" + std::to_string(getpid())) {
        setenv("JACK_DEFAULT_SERVER", name_.c_str(), 1);
        setenv("JACK_NO_START_SERVER", "1", 1);
        setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);
        process_ = fork();
        if (process_ != 0) return;
        const int nowhere = open("/dev/null", O_RDWR);
        for (const int descriptor : {0, 1, 2})
            dup2(nowhere, descriptor);
        execlp("jackd", "jackd", "--no-realtime", "--sync", "-t", "5000", "-n", name_.c_str(), "-d",
               "dummy", "-r", "48000", "-p", "1024", nullptr);
        _exit(127);
    }
    ~SoundServer() { stop(); }

    /// Kills it, as a device that is pulled out.
    void stop() {
        if (process_ <= 0) return;
        kill(process_, SIGTERM);
        waitpid(process_, nullptr, 0);
        process_ = -1;
    }

    bool waitUntilUp() {
        const QuietLibraries quiet;
        for (int i = 0; i < 100; ++i) {
            if (jack_client_t* client = jack_client_open("probe", JackNoStartServer, nullptr)) {
                jack_client_close(client);
                return true;
            }
            if (waitpid(process_, nullptr, WNOHANG) == process_) {
                process_ = -1;
                return false;
            }
            std::this_thread::sleep_for(50ms);
        }
        return false;
    }

  private:
    std::string name_;
    pid_t process_ = -1;
};

/// Writes down all that another client's output ports give.
class Recorder {
  public:
    explicit Recorder(int frames)
        : left_(static_cast<std::size_t>(frames))
        , right_(left_.size())
        , client_(jack_client_open("recorder", JackNoStartServer, nullptr)) {
        for (const char* name : {"left", "right"})
            ports_.push_back(
                jack_port_register(client_, name, JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0));
        jack_set_process_callback(
            client_,
            [](jack_nframes_t n, void* self) { return static_cast<Recorder*>(self)->record(n); },
            this);
        jack_set_xrun_callback(
            client_,
            [](void* self) {
                ++static_cast<Recorder*>(self)->overruns;
                return 0;
            },
            this);
        jack_activate(client_);
    }
    ~Recorder() {
        if (client_ != nullptr) jack_client_close(client_);
    }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    bool connectTo(const std::string& program) {
        const char** outputs = jack_get_ports(client_, ("^" + program + ":").c_str(),
                                              JACK_DEFAULT_AUDIO_TYPE, JackPortIsOutput);
        if (outputs == nullptr) return false;
        bool connected = true;
        for (std::size_t i = 0; i < 2 && connected; ++i)
            connected = outputs[i] != nullptr &&
                        jack_connect(client_, outputs[i], jack_port_name(ports_[i])) == 0;
        jack_free(outputs);
        return connected;
    }
    bool isFull() const { return recorded >= static_cast<int>(left_.size()); }

    std::vector<float> left_;
    std::vector<float> right_;
    std::atomic<int> recorded{0};
    std::atomic<int> overruns{0};

  private:
    int record(jack_nframes_t n) {
        const int count = std::min(static_cast<int>(n), static_cast<int>(left_.size()) - recorded);
        std::copy_n(static_cast<const float*>(jack_port_get_buffer(ports_[0], n)), count,
                    left_.begin() + recorded);
        std::copy_n(static_cast<const float*>(jack_port_get_buffer(ports_[1], n)), count,
                    right_.begin() + recorded);
        recorded += count;
        return 0;
    }

    jack_client_t* client_;
    std::vector<jack_port_t*> ports_;
};

TEST(SoundCard, TenSecondsComeOutBitForBit) {
    SoundServer server;
    if (!server.waitUntilUp()) GTEST_SKIP() << "no jackd here";
    constexpr int kLength = 5 * kRate + 77; // so that it starts over twice
    FakePlugin plugin;
    PlayEngine engine(plugin, 120);
    FileStream stream(std::make_unique<Ramp>(kLength, kRate));
    engine.setStream(&stream);
    std::string problem;
    const std::unique_ptr<SoundCard> card = SoundCard::play(engine, kRate, problem);
    ASSERT_NE(card, nullptr) << problem;

    Recorder recorder(10 * kRate);
    ASSERT_TRUE(recorder.connectTo("Orvel Scope"));
    const int dropOutsBefore = engine.numDropOuts();
    for (int i = 0; i < 600 && !recorder.isFull(); ++i) {
        EXPECT_TRUE(card->isAlive());
        std::this_thread::sleep_for(50ms);
    }
    ASSERT_TRUE(recorder.isFull());

    const auto first = static_cast<std::size_t>(
        std::find_if(recorder.left_.begin(), recorder.left_.end(), [](float x) { return x != 0; }) -
        recorder.left_.begin());
    ASSERT_LT(first, recorder.left_.size() / 2);
    auto frame = static_cast<std::int64_t>(recorder.left_[first]) - 1;
    std::size_t wrong = 0;
    for (std::size_t i = first; i < recorder.left_.size(); ++i, frame = (frame + 1) % kLength)
        if (recorder.left_[i] != Ramp::valueAt(frame) ||
            recorder.right_[i] != -Ramp::valueAt(frame))
            ++wrong;
    EXPECT_EQ(wrong, 0U);
    // The server's own delays are no fault of ours.
    if (recorder.overruns == 0) {
        EXPECT_EQ(engine.numDropOuts(), dropOutsBefore);
    }
}

TEST(SoundCard, PlaysOnInSilenceWhenItGoes) {
    SoundServer server;
    if (!server.waitUntilUp()) GTEST_SKIP() << "no jackd here";
    FakePlugin plugin;
    PlayDeck deck(plugin, 120, false);
    deck.load(std::make_unique<Ramp>(10 * kRate, kRate));
    EXPECT_NE(deck.description().find("system"), std::string::npos) << deck.description();
    server.stop();
    for (int i = 0; i < 200 && deck.description().find("silent") == std::string::npos; ++i) {
        std::this_thread::sleep_for(25ms);
        deck.watch();
    }
    EXPECT_NE(deck.description().find("silent"), std::string::npos);
    const double then = deck.position();
    std::this_thread::sleep_for(200ms);
    EXPECT_GT(deck.position(), then);
}

} // namespace
} // namespace Standalone
