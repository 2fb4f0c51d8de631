// A small VST3 host: the objects that it lends, and an effect as it holds one.
#pragma once

#include "pluginterfaces/base/ibstream.h"
#include "pluginterfaces/base/ipluginbase.h"
#include "pluginterfaces/base/smartpointer.h"
#include "pluginterfaces/gui/iplugview.h"
#include "pluginterfaces/vst/ivstaudioprocessor.h"
#include "pluginterfaces/vst/ivstcomponent.h"
#include "pluginterfaces/vst/ivsteditcontroller.h"
#include "pluginterfaces/vst/ivstevents.h"
#include "pluginterfaces/vst/ivstparameterchanges.h"
#include "pluginterfaces/vst/ivstunits.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace vst3_test {

using namespace Steinberg;
using namespace Steinberg::Vst;

/// Lives on the test's stack; `references` tells what was not given back.
template <class First, class... Others>
class HostObject : public First, public Others... {
  public:
    virtual ~HostObject() = default;
    tresult PLUGIN_API queryInterface(const TUID wanted, void** obj) override {
        *obj = nullptr;
        if (FUnknownPrivate::iidEqual(wanted, FUnknown::iid)) *obj = static_cast<First*>(this);
        if (FUnknownPrivate::iidEqual(wanted, First::iid)) *obj = static_cast<First*>(this);
        (void(FUnknownPrivate::iidEqual(wanted, Others::iid)
                  ? void(*obj = static_cast<Others*>(this))
                  : void()),
         ...);
        if (*obj == nullptr) return offer(wanted, obj);
        ++references;
        return kResultOk;
    }
    uint32 PLUGIN_API addRef() override { return static_cast<uint32>(++references); }
    uint32 PLUGIN_API release() override { return static_cast<uint32>(--references); }

    int references = 0;

  protected:
    /// What else it has.
    virtual tresult offer(const TUID, void**) { return kNoInterface; }
};

/// The run loop of a host's window side.
class RunLoop final : public HostObject<Linux::IRunLoop> {
  public:
    tresult PLUGIN_API registerEventHandler(Linux::IEventHandler* handler, int fd) override;
    tresult PLUGIN_API unregisterEventHandler(Linux::IEventHandler* handler) override;
    tresult PLUGIN_API registerTimer(Linux::ITimerHandler* handler, uint64 milliseconds) override;
    tresult PLUGIN_API unregisterTimer(Linux::ITimerHandler* handler) override;

    /// Waits at most a millisecond for events, and calls whose time has come.
    void turn();
    /// All timers, at once.
    void fireTimers();

    struct Timer {
        uint64 period;
        double due; // ms
    };
    std::map<Linux::IEventHandler*, int> events;
    std::map<Linux::ITimerHandler*, Timer> timers;
    int mistakes = 0; ///< taken twice, given back twice
};

/// An object that lends a run loop where there is one.
template <class... Interfaces>
class LoopGiver : public HostObject<Interfaces...> {
  public:
    RunLoop* loop = nullptr;

  protected:
    tresult offer(const TUID wanted, void** obj) override {
        return loop == nullptr ? kNoInterface : loop->queryInterface(wanted, obj);
    }
};

class Context final : public LoopGiver<FUnknown> {};

class Frame final : public LoopGiver<IPlugFrame> {
  public:
    tresult PLUGIN_API resizeView(IPlugView*, ViewRect* size) override {
        sizes.push_back(*size);
        return kResultOk;
    }
    std::vector<ViewRect> sizes;
};

class Handler final : public LoopGiver<IComponentHandler, IUnitHandler> {
  public:
    tresult PLUGIN_API beginEdit(ParamID id) override { return note('b', id, 0); }
    tresult PLUGIN_API performEdit(ParamID id, ParamValue value) override {
        return note('p', id, value);
    }
    tresult PLUGIN_API endEdit(ParamID id) override { return note('e', id, 0); }
    tresult PLUGIN_API restartComponent(int32 flags) override {
        restarts.push_back(flags);
        return kResultOk;
    }
    tresult PLUGIN_API notifyUnitSelection(UnitID) override { return note('u', 0, 0); }
    tresult PLUGIN_API notifyProgramListChange(ProgramListID list, int32) override {
        return note('l', static_cast<ParamID>(list), 0);
    }

    struct Edit {
        char kind;
        ParamID id;
        ParamValue value;
        bool operator==(const Edit&) const = default;
    };
    std::vector<Edit> edits;
    std::vector<int32> restarts;
    std::function<void(const Edit&)> onEdit;

  private:
    tresult note(char kind, ParamID id, ParamValue value) {
        edits.push_back({kind, id, value});
        if (onEdit) onEdit(edits.back());
        return kResultOk;
    }
};

/// Memory as a stream, which may give and take less at a time than it is asked.
class Stream final : public HostObject<IBStream> {
  public:
    Stream() = default;
    explicit Stream(std::vector<char> content)
        : bytes(std::move(content)) {}
    tresult PLUGIN_API read(void* buffer, int32 count, int32* done) override;
    tresult PLUGIN_API write(void* buffer, int32 count, int32* done) override;
    tresult PLUGIN_API seek(int64, int32, int64*) override { return kResultFalse; }
    tresult PLUGIN_API tell(int64*) override { return kResultFalse; }

    std::vector<char> bytes;
    std::size_t at = 0;
    std::size_t mostAtOnce = SIZE_MAX;
    std::size_t room = SIZE_MAX;
    std::size_t largestWish = 0;
};

/// Points of one parameter for one block.
class Queue final : public HostObject<IParamValueQueue> {
  public:
    Queue(ParamID parameter, std::vector<std::pair<int32, ParamValue>> list)
        : id(parameter)
        , points(std::move(list)) {}
    ParamID PLUGIN_API getParameterId() override { return id; }
    int32 PLUGIN_API getPointCount() override { return static_cast<int32>(points.size()); }
    tresult PLUGIN_API getPoint(int32 index, int32& offset, ParamValue& value) override;
    tresult PLUGIN_API addPoint(int32, ParamValue, int32&) override { return kResultFalse; }

    ParamID id;
    std::vector<std::pair<int32, ParamValue>> points;
};

class Changes final : public HostObject<IParameterChanges> {
  public:
    explicit Changes(std::vector<Queue> list = {})
        : queues(std::move(list)) {}
    int32 PLUGIN_API getParameterCount() override { return static_cast<int32>(queues.size()); }
    IParamValueQueue* PLUGIN_API getParameterData(int32 index) override {
        return &queues[static_cast<std::size_t>(index)];
    }
    IParamValueQueue* PLUGIN_API addParameterData(const ParamID&, int32&) override {
        return nullptr;
    }
    std::vector<Queue> queues;
};

using Channels = std::vector<std::vector<float>>;

/// One bus each way; mono, stereo or any other number of channels, none included.
class Block {
  public:
    Block(Channels input, std::size_t outputChannels);
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;

    ProcessData data;
    Channels in;
    Channels out;

  private:
    std::vector<float*> inPointers_;
    std::vector<float*> outPointers_;
    AudioBusBuffers inBus_;
    AudioBusBuffers outBus_;
};

/// An effect with all its interfaces; terminated and released at the end of its scope.
class Effect3 {
  public:
    /// Of the factory's class of that index. `context` may be null.
    Effect3(IPluginFactory& factory, FUnknown* context, int32 index = 0);
    ~Effect3() { release(); }
    Effect3(const Effect3&) = delete;
    Effect3& operator=(const Effect3&) = delete;

    void prepare(double rate, int32 block) const;
    std::vector<char> state() const;
    tresult setState(std::vector<char> state, std::size_t mostAtOnce = SIZE_MAX) const;
    void release();

    IPtr<IComponent> component;
    IPtr<IAudioProcessor> processor;
    IPtr<IEditController> controller;
};

std::string text(const TChar* wide);

} // namespace vst3_test
