// A host of one LV2 plug-in: ports, features, the worker, and the run.
#include "Lv2Host.h"

#include <lv2/buf-size/buf-size.h>
#include <lv2/parameters/parameters.h>
#include <lv2/resize-port/resize-port.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <utility>

namespace Peers {

namespace {

constexpr std::size_t kLeastAtomBytes = 1 << 18; // plug-ins that need more say so

struct NodeDeleter {
    void operator()(LilvNode* node) const { lilv_node_free(node); }
};
using Node = std::unique_ptr<LilvNode, NodeDeleter>;

Node uriNode(LilvWorld* world, const char* uri) { return Node(lilv_new_uri(world, uri)); }

/// A sequence with one object that has no properties.
struct ObjectMessage {
    LV2_Atom_Sequence sequence;
    std::int64_t frame;
    LV2_Atom atom;
    LV2_Atom_Object_Body object;
};

} // namespace

LV2_URID UriTable::map(const std::string& uri) {
    const auto [at, isNew] = numbers_.try_emplace(uri, static_cast<LV2_URID>(uris_.size() + 1));
    if (isNew) uris_.push_back(&at->first);
    return at->second;
}

const char* UriTable::unmap(LV2_URID number) const {
    return number >= 1 && number <= uris_.size() ? uris_[number - 1]->c_str() : nullptr;
}

Lv2World::Lv2World()
    : world_(lilv_world_new()) {
    if (world_ == nullptr) throw std::runtime_error("lilv does not start");
    lilv_world_load_all(world_);
}

Lv2World::~Lv2World() { lilv_world_free(world_); }

const LilvPlugin* Lv2World::find(const std::string& uri) const {
    return lilv_plugins_get_by_uri(lilv_world_get_all_plugins(world_),
                                   uriNode(world_, uri.c_str()).get());
}

Lv2Host::Lv2Host(Lv2World& world, const std::string& uri, double sampleRate, int blockLength)
    : world_(world)
    , plugin_(world.find(uri))
    , blockLength_(blockLength) {
    if (plugin_ == nullptr) throw std::runtime_error(uri + " is not installed");
    describe();
    makeFeatures(sampleRate);
    instance_ = lilv_plugin_instantiate(plugin_, sampleRate, featureList_.data());
    if (instance_ == nullptr) throw std::runtime_error(uri + " cannot be instantiated");
    worker_ = static_cast<const LV2_Worker_Interface*>(
        lilv_instance_get_extension_data(instance_, LV2_WORKER__interface));
    connect();
    lilv_instance_activate(instance_);
}

Lv2Host::~Lv2Host() {
    lilv_instance_deactivate(instance_);
    lilv_instance_free(instance_);
}

/// Kinds, defaults and buffers of the ports.
void Lv2Host::describe() {
    LilvWorld* const world = world_.get();
    const Node control = uriNode(world, LV2_CORE__ControlPort);
    const Node audio = uriNode(world, LV2_CORE__AudioPort);
    const Node atom = uriNode(world, LV2_ATOM__AtomPort);
    const Node input = uriNode(world, LV2_CORE__InputPort);
    const Node leastSize = uriNode(world, LV2_RESIZE_PORT__minimumSize);

    ports_.resize(lilv_plugin_get_num_ports(plugin_));
    int audioInputs = 0;
    for (std::uint32_t i = 0; i < ports_.size(); ++i) {
        const LilvPort* const source = lilv_plugin_get_port_by_index(plugin_, i);
        Port& port = ports_[i];
        port.symbol = lilv_node_as_string(lilv_port_get_symbol(plugin_, source));
        const bool isInput = lilv_port_is_a(plugin_, source, input.get());
        if (lilv_port_is_a(plugin_, source, control.get())) {
            port.kind = Kind::control;
            LilvNode* value = nullptr;
            lilv_port_get_range(plugin_, source, &value, nullptr, nullptr);
            const Node owned(value);
            if (value != nullptr) port.value = lilv_node_as_float(value);
            if (std::isnan(port.value)) port.value = 0;
        } else if (lilv_port_is_a(plugin_, source, audio.get())) {
            port.kind = isInput ? Kind::audioIn : Kind::audioOut;
            if (isInput) port.channel = audioInputs++ % 2;
            port.audio.assign(static_cast<std::size_t>(blockLength_), 0.0F);
        } else if (lilv_port_is_a(plugin_, source, atom.get())) {
            port.kind = isInput ? Kind::atomIn : Kind::atomOut;
            std::size_t bytes = kLeastAtomBytes;
            const Node wanted(lilv_port_get(plugin_, source, leastSize.get()));
            if (wanted)
                bytes = std::max(bytes, static_cast<std::size_t>(lilv_node_as_int(wanted.get())));
            port.atoms.assign(bytes / sizeof(std::uint64_t) + 1, 0);
        }
    }
}

void Lv2Host::makeFeatures(double sampleRate) {
    map_ = {this, mapUri};
    unmap_ = {this, unmapUri};
    schedule_ = {this, schedule};
    blockOption_ = blockLength_;
    rateOption_ = static_cast<float>(sampleRate);
    const auto option = [this](const char* key, const char* type, const void* value) {
        options_.push_back({LV2_OPTIONS_INSTANCE, 0, uris_.map(key), 4, uris_.map(type), value});
    };
    option(LV2_BUF_SIZE__minBlockLength, LV2_ATOM__Int, &blockOption_);
    option(LV2_BUF_SIZE__maxBlockLength, LV2_ATOM__Int, &blockOption_);
    option(LV2_BUF_SIZE__nominalBlockLength, LV2_ATOM__Int, &blockOption_);
    option(LV2_PARAMETERS__sampleRate, LV2_ATOM__Float, &rateOption_);
    options_.push_back({LV2_OPTIONS_INSTANCE, 0, 0, 0, 0, nullptr});

    features_ = {{LV2_URID__map, &map_},
                 {LV2_URID__unmap, &unmap_},
                 {LV2_WORKER__schedule, &schedule_},
                 {LV2_OPTIONS__options, options_.data()},
                 {LV2_BUF_SIZE__boundedBlockLength, nullptr},
                 {LV2_BUF_SIZE__fixedBlockLength, nullptr}};
    for (const LV2_Feature& feature : features_)
        featureList_.push_back(&feature);
    featureList_.push_back(nullptr);
}

void Lv2Host::connect() {
    for (std::uint32_t i = 0; i < ports_.size(); ++i) {
        Port& port = ports_[i];
        void* data = nullptr;
        switch (port.kind) {
        case Kind::control:
            data = &port.value;
            break;
        case Kind::audioIn:
        case Kind::audioOut:
            data = port.audio.data();
            break;
        case Kind::atomIn:
        case Kind::atomOut:
            data = port.atoms.data();
            break;
        case Kind::unused:
            break;
        }
        lilv_instance_connect_port(instance_, i, data);
    }
}

const Lv2Host::Port& Lv2Host::port(const std::string& symbol) const {
    for (const Port& each : ports_)
        if (each.symbol == symbol) return each;
    throw std::runtime_error("no port " + symbol);
}

Lv2Host::Port& Lv2Host::port(const std::string& symbol) {
    return const_cast<Port&>(std::as_const(*this).port(symbol));
}

void Lv2Host::setControl(const std::string& symbol, float value) { port(symbol).value = value; }

float Lv2Host::control(const std::string& symbol) const { return port(symbol).value; }

void Lv2Host::routeInput(const std::string& symbol, int channel) {
    Port& input = port(symbol);
    input.channel = channel;
    std::fill(input.audio.begin(), input.audio.end(), 0.0F);
}

void Lv2Host::sendObject(const std::string& type, const std::string& id) {
    ObjectMessage message{};
    message.sequence.atom = {sizeof(ObjectMessage) - sizeof(LV2_Atom), sequence_};
    message.atom = {sizeof(LV2_Atom_Object_Body), uris_.map(LV2_ATOM__Object)};
    message.object = {id.empty() ? 0 : uris_.map(id), uris_.map(type)};
    message_.resize(sizeof message / sizeof(std::uint64_t));
    std::memcpy(message_.data(), &message, sizeof message);
}

/// Inputs: an empty sequence, or the message; outputs: all their room.
void Lv2Host::clearAtoms() {
    for (Port& port : ports_) {
        LV2_Atom_Sequence empty{};
        if (port.kind == Kind::atomIn && !message_.empty()) {
            std::copy(message_.begin(), message_.end(), port.atoms.begin());
            message_.clear();
        } else if (port.kind == Kind::atomIn) {
            empty.atom = {sizeof(LV2_Atom_Sequence_Body), sequence_};
            std::memcpy(port.atoms.data(), &empty, sizeof empty);
        } else if (port.kind == Kind::atomOut) {
            const std::size_t room = port.atoms.size() * sizeof(std::uint64_t) - sizeof(LV2_Atom);
            empty.atom = {static_cast<std::uint32_t>(room), chunk_};
            std::memcpy(port.atoms.data(), &empty, sizeof empty);
        }
    }
}

void Lv2Host::run(const float* left, const float* right) {
    clearAtoms();
    for (Port& port : ports_)
        if (port.kind == Kind::audioIn && port.channel >= 0)
            std::copy_n(port.channel == 0 ? left : right, blockLength_, port.audio.data());
    lilv_instance_run(instance_, static_cast<std::uint32_t>(blockLength_));
    deliverResponses();

    eventBytes_ = 0;
    for (const Port& port : ports_) {
        if (port.kind != Kind::atomOut) continue;
        LV2_Atom atom{};
        std::memcpy(&atom, port.atoms.data(), sizeof atom);
        if (atom.type == sequence_ && atom.size > sizeof(LV2_Atom_Sequence_Body))
            eventBytes_ += atom.size - sizeof(LV2_Atom_Sequence_Body);
    }
}

LV2_URID Lv2Host::mapUri(LV2_URID_Map_Handle handle, const char* uri) {
    return static_cast<Lv2Host*>(handle)->uris_.map(uri);
}

const char* Lv2Host::unmapUri(LV2_URID_Unmap_Handle handle, LV2_URID number) {
    return static_cast<Lv2Host*>(handle)->uris_.unmap(number);
}

LV2_Worker_Status
Lv2Host::schedule(LV2_Worker_Schedule_Handle handle, std::uint32_t size, const void* data) {
    auto* const self = static_cast<Lv2Host*>(handle);
    if (self->worker_ == nullptr) return LV2_WORKER_ERR_UNKNOWN;
    return self->worker_->work(self->handle(), respond, self, size, data);
}

LV2_Worker_Status
Lv2Host::respond(LV2_Worker_Respond_Handle handle, std::uint32_t size, const void* data) {
    const auto* const bytes = static_cast<const char*>(data);
    static_cast<Lv2Host*>(handle)->responses_.emplace_back(bytes, bytes + size);
    return LV2_WORKER_SUCCESS;
}

/// As after every run: what the worker answered, then the end of the run.
void Lv2Host::deliverResponses() {
    if (worker_ == nullptr) return;
    for (const auto& each : responses_)
        if (worker_->work_response != nullptr)
            worker_->work_response(handle(), static_cast<std::uint32_t>(each.size()), each.data());
    responses_.clear();
    if (worker_->end_run != nullptr) worker_->end_run(handle());
}

} // namespace Peers
