// A host of one LV2 plug-in, just large enough to let an analyser work as under a real one.
#pragma once

#include <lilv/lilv.h>
#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/options/options.h>
#include <lv2/urid/urid.h>
#include <lv2/worker/worker.h>

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace Peers {

/// Numbers for URIs.
class UriTable {
  public:
    LV2_URID map(const std::string& uri);
    const char* unmap(LV2_URID number) const;

  private:
    std::map<std::string, LV2_URID> numbers_;
    std::vector<const std::string*> uris_; // keys of the map: they never move
};

/// All installed plug-ins.
class Lv2World {
  public:
    Lv2World();
    ~Lv2World();
    Lv2World(const Lv2World&) = delete;
    Lv2World& operator=(const Lv2World&) = delete;

    LilvWorld* get() const { return world_; }
    /// Null where it is not installed.
    const LilvPlugin* find(const std::string& uri) const;

  private:
    LilvWorld* world_;
};

/// One instance with all its ports. Work that it hands to the host's worker is done at once, on the
/// calling thread, so that its cost counts.
class Lv2Host {
  public:
    /// Fails: std::runtime_error, when it is not installed or cannot be made.
    Lv2Host(Lv2World& world, const std::string& uri, double sampleRate, int blockLength);
    ~Lv2Host();
    Lv2Host(const Lv2Host&) = delete;
    Lv2Host& operator=(const Lv2Host&) = delete;

    /// Fails: std::runtime_error for a port that is not there.
    void setControl(const std::string& symbol, float value);
    float control(const std::string& symbol) const;
    /// What an audio input hears: 0 left, 1 right, -1 silence. At first left and right in turn.
    void routeInput(const std::string& symbol, int channel);
    /// Sends an object without properties to the first atom input, with the next block.
    void sendObject(const std::string& type, const std::string& id = {});

    /// One block of `blockLength` samples.
    void run(const float* left, const float* right);

    /// Bytes of atom events that the last block brought out.
    std::size_t eventBytes() const { return eventBytes_; }
    /// The plug-in's own handle: what a host gives to windows that ask for instance access.
    LV2_Handle handle() const { return lilv_instance_get_handle(instance_); }

  private:
    enum class Kind { control, audioIn, audioOut, atomIn, atomOut, unused };
    struct Port {
        Kind kind = Kind::unused;
        std::string symbol;
        float value = 0;
        int channel = -1;
        std::vector<float> audio;
        std::vector<std::uint64_t> atoms; // 8-byte aligned, as atoms are
    };

    void describe();
    void makeFeatures(double sampleRate);
    void connect();
    const Port& port(const std::string& symbol) const;
    Port& port(const std::string& symbol);
    void clearAtoms();

    static LV2_URID mapUri(LV2_URID_Map_Handle handle, const char* uri);
    static const char* unmapUri(LV2_URID_Unmap_Handle handle, LV2_URID number);
    static LV2_Worker_Status
    schedule(LV2_Worker_Schedule_Handle handle, std::uint32_t size, const void* data);
    static LV2_Worker_Status
    respond(LV2_Worker_Respond_Handle handle, std::uint32_t size, const void* data);
    void deliverResponses();

    Lv2World& world_;
    const LilvPlugin* plugin_;
    int blockLength_;
    UriTable uris_;
    LV2_URID sequence_ = uris_.map(LV2_ATOM__Sequence);
    LV2_URID chunk_ = uris_.map(LV2_ATOM__Chunk);
    std::vector<Port> ports_;
    std::vector<std::uint64_t> message_; // for the next block; empty: none
    std::size_t eventBytes_ = 0;

    std::vector<std::vector<char>> responses_;
    const LV2_Worker_Interface* worker_ = nullptr;
    LV2_URID_Map map_{};
    LV2_URID_Unmap unmap_{};
    LV2_Worker_Schedule schedule_{};
    std::int32_t blockOption_ = 0;
    float rateOption_ = 0;
    std::vector<LV2_Options_Option> options_;
    std::vector<LV2_Feature> features_;
    std::vector<const LV2_Feature*> featureList_;
    LilvInstance* instance_ = nullptr;
};

} // namespace Peers
