// The analysers that are compared: ours, members of ours, and LV2 plug-ins.
#pragma once

#include "Lv2Host.h"
#include "analysis/AnalyserParameters.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace Peers {

inline constexpr int kRate = 48000; // Hz
inline constexpr int kBlock = 512;  // samples
/// For so long its signs of work are collected.
inline constexpr int kProofSeconds = 10;

/// One analyser at work.
class Subject {
  public:
    Subject() = default;
    virtual ~Subject() = default;
    Subject(const Subject&) = delete;
    Subject& operator=(const Subject&) = delete;

    /// `kBlock` samples.
    virtual void block(const float* left, const float* right) = 0;
    /// From idle, as it is made, to work. False: it has no idle state and always works.
    virtual bool startWork() { return false; }
    /// After each block while signs of work are collected, `kProofSeconds` long.
    virtual void observe() = 0;
    /// What was seen; empty when it gave no sign of work.
    virtual std::string proof() = 0;
};

/// Our analyser with one page open. At work, everything that its window would show is handed over;
/// idle, the window is closed, and the analysis goes on.
using Values = std::vector<std::pair<Orvel::ParameterId, float>>;
std::unique_ptr<Subject> makeOurs(int page, const Values& values);
/// The correlation by itself, and with the points of the goniometer.
std::unique_ptr<Subject> makeOurCorrelation(bool withPoints);

/// How a plug-in learns that its window is open.
enum class Window {
    none,          ///< it needs none
    objectMessage, ///< an atom object of a certain type
    namedMessage,  ///< the same with the identity "<plug-in>/ui_connect"
    sharedMemory,  ///< the window writes into the plug-in's memory
};

struct Peer {
    std::string uri;
    Window window = Window::none;
    std::string windowType = {}; ///< type of the object
    std::vector<std::pair<std::string, float>> controls = {};
    std::vector<std::pair<std::string, float>> idleControls = {};
    std::vector<std::pair<std::string, int>> inputs = {}; ///< see Lv2Host::routeInput
    std::string watched = {}; ///< an output port that moves when it works
};

/// Fails: std::runtime_error.
std::unique_ptr<Subject> makeTheirs(Lv2World& world, const Peer& peer);

/// `printf` of one number.
std::string text(const char* format, double value);

} // namespace Peers
