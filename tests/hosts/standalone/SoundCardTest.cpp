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

#include <array>
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

/// Writes down all that another client's output ports give, left and right.
class Recorder {
  public:
    explicit Recorder(std::size_t frames) {
        for (std::size_t i = 0; i < 2; ++i) {
            samples[i].resize(frames);
            ports_[i] = jack_port_register(client_, i == 0 ? "left" : "right",
                                           JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0);
        }
        jack_set_process_callback(
            client_,
            [](jack_nframes_t n, void* self) { return static_cast<Recorder*>(self)->record(n); },
            this);
        jack_activate(client_);
    }
    ~Recorder() { jack_client_close(client_); }
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    bool connectTo(const std::string& program) {
        const char** outputs = jack_get_ports(client_, ("^" + program + ":").c_str(),
                                              JACK_DEFAULT_AUDIO_TYPE, JackPortIsOutput);
        if (outputs == nullptr) return false;
        int refused = 0;
        for (std::size_t i = 0; i < 2; ++i)
            refused += jack_connect(client_, outputs[i], jack_port_name(ports_[i]));
        jack_free(outputs);
        return refused == 0;
    }

    std::array<std::vector<float>, 2> samples;
    std::atomic<std::size_t> recorded{0};

  private:
    int record(jack_nframes_t n) {
        const std::size_t count = std::min<std::size_t>(n, samples[0].size() - recorded);
        for (std::size_t i = 0; i < 2; ++i)
            std::copy_n(static_cast<const float*>(jack_port_get_buffer(ports_[i], n)), count,
                        samples[i].data() + recorded);
        recorded += count;
        return 0;
    }

    jack_client_t* client_ = jack_client_open("recorder", JackNoStartServer, nullptr);
    std::array<jack_port_t*, 2> ports_;
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
    const auto& [left, right] = recorder.samples;
    for (int i = 0; i < 600 && recorder.recorded < left.size(); ++i) {
        EXPECT_TRUE(card->isAlive());
        std::this_thread::sleep_for(50ms);
    }
    ASSERT_EQ(recorder.recorded, left.size());

    const auto start = std::find_if(left.begin(), left.end(), [](float x) { return x != 0; });
    ASSERT_LT(start - left.begin(), 5 * kRate);
    auto frame = static_cast<std::int64_t>(*start) - 1;
    int wrong = 0;
    for (auto i = static_cast<std::size_t>(start - left.begin()); i < left.size(); ++i) {
        if (left[i] != Ramp::valueAt(frame) || right[i] != -left[i]) ++wrong;
        frame = (frame + 1) % kLength;
    }
    EXPECT_EQ(wrong, 0);
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
