// What does an analyser cost beside others that do the same work? The same noise goes through ours
// and through LV2 plug-ins; the table is CPU time per second of audio.
//
// An analyser that waits for a window is told that there is one, in the words of its own window.
// Every line says by what the analyser was seen working; without such a sign there is no figure.
#include "Subjects.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <exception>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <vector>

namespace {

using Peers::kBlock;
using Peers::kRate;
using Peers::Peer;
using Peers::Subject;
using Peers::text;
using Peers::Window;

constexpr int kSeconds = 60;

/// White noise of -20 dBFS RMS; left and right have a correlation of 0.5.
struct Noise {
    Noise() {
        std::mt19937 generator(1);
        std::normal_distribution<float> normal(0, 0.07F);
        for (std::size_t i = 0; i < left.size(); ++i) {
            const float common = normal(generator);
            left[i] = common + normal(generator);
            right[i] = common + normal(generator);
        }
    }
    std::vector<float> left = std::vector<float>(std::size_t{kRate} * kSeconds);
    std::vector<float> right = left;
};

double cpuSeconds() {
    timespec now{}; // of the whole process: no thread of a plug-in escapes
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// Milliseconds of CPU time per second of audio.
double play(Subject& subject, const Noise& noise, int seconds, bool observed = false) {
    const double start = cpuSeconds();
    const std::size_t end = std::size_t{kRate} * static_cast<std::size_t>(seconds);
    for (std::size_t at = 0; at + kBlock <= end; at += kBlock) {
        subject.block(&noise.left[at], &noise.right[at]);
        if (observed) subject.observe();
    }
    return (cpuSeconds() - start) / seconds * 1e3;
}

struct Row {
    std::string group;
    std::string name;
    std::string work; // what is done in that time
    std::function<std::unique_ptr<Subject>()> make;
    std::unique_ptr<Subject> subject = nullptr;
    std::string idle = "-";
    std::string proof = {};
    std::vector<double> rounds = {};
};

const std::string kMeters = "http://gareus.org/oss/lv2/meters#";
const std::string kSpectra = "http://gareus.org/oss/lv2/spectra#";
const std::string kSisco = "http://gareus.org/oss/lv2/sisco#";
const std::string kLsp = "http://lsp-plug.in/plugins/lv2/";
const std::string kLspWindow = "http://lsp-plug.in/types/lv2/types#UINotification";
const std::string kCopyOnly = "only hands samples to its window, which analyses: not comparable";

class Rows {
  public:
    explicit Rows(Peers::Lv2World& world)
        : world_(world) {}

    std::vector<Row> make() {
        spectrum();
        levels();
        stereoField();
        oscilloscope();
        return std::move(rows_);
    }

  private:
    void ours(const std::string& name, const std::string& work, int page, Peers::Values values) {
        values.emplace_back(Orvel::kGlobalMeteringMode, 4.0F); // K-20
        add("**ours**: " + name, work, [=] { return Peers::makeOurs(page, values); });
    }
    void theirs(const std::string& name, const std::string& work, const Peer& peer) {
        add(name, work, [this, peer] { return Peers::makeTheirs(world_, peer); });
    }
    void add(const std::string& name,
             const std::string& work,
             std::function<std::unique_ptr<Subject>()> make) {
        rows_.push_back({group_, name, work, std::move(make)});
    }

    void spectrum() {
        group_ = "Spectrum";
        ours("spectrum page", "2 channels, 16384 points, hop 1024; levels", 1, {});
        ours("the same, update speed 7",
             "2 channels, 16384 points, hop 2340, as often as the next line; levels", 1,
             {{Orvel::kSpectrumUpdateSpeed, 7.0F}});
        theirs("LSP spectrum_analyzer_x2", "2 channels, 16384 points, smoothing in time",
               {.uri = kLsp + "spectrum_analyzer_x2",
                .window = Window::namedMessage,
                .windowType = kLspWindow,
                .controls = {{"on_0", 1}, {"on_1", 1}, {"tol", 4}, {"sel", 10}},
                .idleControls = {{"on_0", 0}, {"on_1", 0}},
                .watched = "lvl"});
        theirs("x42 spectr30stereo",
               "1 channel (the sum) through 30 band filters, a level per band",
               {.uri = kMeters + "spectr30stereo", .watched = "band1000"});
        theirs("x42 spectra", kCopyOnly,
               {.uri = kSpectra + "Mono",
                .window = Window::objectMessage,
                .windowType = kSpectra + "ui_on"});
    }

    void levels() {
        group_ = "Levels";
        ours("metering alone", "2 channels: peak, overs, RMS over exactly 500 ms, needles", 3, {});
        theirs("x42 K20stereo", "2 channels: peak, hold, RMS by a filter",
               {.uri = kMeters + "K20stereo", .watched = "levelL"});
        theirs("x42 dr14stereo",
               "2 channels: RMS, peak of the 4 times oversampled signal, dynamic range",
               {.uri = kMeters + "dr14stereo", .watched = "dBRMS_m1"});
    }

    void stereoField() {
        group_ = "Stereo field";
        ours("stereo-field page", "4 channels of levels, 2 of spectra, goniometer, correlation", 2,
             {});
        ours("the same, spectra frozen", "4 channels of levels, goniometer, correlation", 2,
             {{Orvel::kSpectrumFreeze, 1.0F}});
        add("**ours**: two members of it", "goniometer, correlation",
            [] { return Peers::makeOurCorrelation(true); });
        theirs("x42 goniometer", "samples to its window, correlation",
               {.uri = kMeters + "goniometer",
                .window = Window::sharedMemory,
                .watched = "UIcorrelation"});
        theirs("LSP oscilloscope_x1, goniometer", "not oversampled: frames of points to its window",
               {.uri = kLsp + "oscilloscope_x1",
                .window = Window::namedMessage,
                .windowType = kLspWindow,
                .controls = {{"scmo_1", 2}, {"ovmo_1", 0}},
                .inputs = {{"in_x_1", 0}, {"in_y_1", 1}, {"in_ext_1", -1}}});
        add("**ours**: one member of it", "correlation",
            [] { return Peers::makeOurCorrelation(false); });
        theirs("x42 COR", "correlation", {.uri = kMeters + "COR", .watched = "correlation"});
        theirs("x42 stereoscope", kCopyOnly,
               {.uri = kMeters + "stereoscope",
                .window = Window::objectMessage,
                .windowType = kMeters + "ui_on"});
    }

    void oscilloscope() {
        group_ = "Oscilloscope";
        ours("scope page", "lowest and highest of 845 columns in 6 layers; levels", 0, {});
        Peer scope{.uri = kLsp + "oscilloscope_x2",
                   .window = Window::namedMessage,
                   .windowType = kLspWindow,
                   .controls = {{"ovmo_1", 0}, {"ovmo_2", 0}},
                   .inputs = {{"in_x_1", -1},
                              {"in_y_1", 0},
                              {"in_ext_1", -1},
                              {"in_x_2", -1},
                              {"in_y_2", 1},
                              {"in_ext_2", -1}}};
        theirs("LSP oscilloscope_x2", "2 channels: trigger, sweep, not oversampled", scope);
        scope.controls = {};
        theirs("LSP oscilloscope_x2, as it starts", "the same, 8 times oversampled", scope);
        theirs("x42 sisco Stereo", kCopyOnly,
               {.uri = kSisco + "Stereo",
                .window = Window::objectMessage,
                .windowType = kSisco + "ui_on"});
    }

    Peers::Lv2World& world_;
    std::string group_;
    std::vector<Row> rows_;
};

/// Makes it, lets it run idle, starts it and collects its signs of work; warms up on the way.
void prepare(Row& row, const Noise& noise) {
    std::unique_ptr<Subject> subject = row.make();
    play(*subject, noise, 2);
    const double idle = play(*subject, noise, Peers::kProofSeconds);
    if (subject->startWork()) row.idle = text("%.3f", idle);
    play(*subject, noise, Peers::kProofSeconds, true);
    row.proof = subject->proof();
    if (row.proof.empty())
        row.proof = "not measured: no sign of work without its window";
    else
        row.subject = std::move(subject);
}

void print(const std::vector<Row>& rows) {
    const std::string* group = nullptr;
    for (const Row& row : rows) {
        if (group == nullptr || *group != row.group) {
            std::printf("\n### %s\n\n", row.group.c_str());
            std::puts("| Analyser | ms | to | idle | What it does | Seen at work by |");
            std::puts("| --- | ---: | ---: | ---: | --- | --- |");
        }
        group = &row.group;
        std::string lowest = "-";
        std::string highest = "-";
        if (!row.rounds.empty()) {
            lowest = text("%.3f", *std::min_element(row.rounds.begin(), row.rounds.end()));
            highest = text("%.3f", *std::max_element(row.rounds.begin(), row.rounds.end()));
        }
        for (const std::string& cell : {row.name, lowest, highest, row.idle, row.work, row.proof})
            std::printf("| %s ", cell.c_str());
        std::puts("|");
    }
}

int run(int rounds) {
    const Noise noise;
    Peers::Lv2World world;
    std::vector<Row> rows = Rows(world).make();
    for (Row& row : rows) {
        try {
            prepare(row, noise);
        } catch (const std::exception& error) {
            row.proof = std::string("not measured: ") + error.what();
        }
    }
    // In turn, so that a disturbance does not hit one analyser alone.
    for (int round = 0; round < rounds; ++round)
        for (Row& row : rows)
            if (row.subject) row.rounds.push_back(play(*row.subject, noise, kSeconds));

    std::printf("CPU time in milliseconds per second of audio, lowest and highest of %d rounds.\n"
                "A round is %d s of stereo noise at %d Hz in blocks of %d. Idle: with the window "
                "closed or\n"
                "the channels switched off; - where there is no such state.\n",
                rounds, kSeconds, kRate, kBlock);
    print(rows);
    return 0;
}

} // namespace

int main(int count, char** arguments) {
    setenv("XDG_CONFIG_HOME", "/tmp/orvel-bench-config", 1); // nobody's settings are touched
    const int rounds = count > 1 ? std::atoi(arguments[1]) : 9;
    if (rounds < 1) {
        std::fputs("usage: peer_bench [rounds]\n", stderr);
        return 2;
    }
    try {
        return run(rounds);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "peer_bench: %s\n", error.what());
        return 1;
    }
}
