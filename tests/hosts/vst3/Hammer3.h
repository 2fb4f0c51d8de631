// Many threads on one effect, as the worst of hosts does it; the thread sanitizer watches.
#pragma once

#include "TestHost.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace vst3_test {

/// Audio on one thread, automation and texts on a second, and on this one set-up, states and the
/// host's timers, for `rounds` rounds.
/// `gain`: what the plug-in makes of a sample; a block may also pass as it came.
inline void hammer(const Effect3& effect, RunLoop& loop, int rounds, float gain) {
    std::atomic<bool> stop{false};
    std::atomic<int> wrong{0};
    std::atomic<long> blocks{0};
    effect.prepare(48000, 64);
    std::thread audio([&] {
        Changes changes({Queue(0, {{0, 0.5}})});
        for (unsigned round = 0; !stop; ++round, ++blocks) {
            // Longer than announced now and then.
            const std::vector<float> samples(1 + round * 37 % 1024, 0.5F);
            Block block({samples, samples}, 2);
            changes.queues[0].id = round % 9;
            changes.queues[0].points[0].second = round % 11 / 10.0;
            block.data.inputParameterChanges = &changes;
            if (effect.processor->process(block.data) != kResultOk) ++wrong;
            for (const float sample : block.out[1])
                if (sample != 0.5F && sample != 0.5F * gain) ++wrong;
        }
    });
    std::thread automation([&] {
        for (unsigned round = 0; !stop; ++round) {
            const ParamID id = round % 9;
            String128 shown{};
            effect.controller->setParamNormalized(id, round % 7 / 6.0);
            effect.controller->getParamStringByValue(id, effect.controller->getParamNormalized(id),
                                                     shown);
            std::this_thread::yield();
        }
    });
    for (int round = 0; round < rounds; ++round) {
        effect.setState(effect.state());
        effect.component->setActive(0);
        effect.prepare(round % 2 == 0 ? 44100 : 96000, 32 << round % 6);
        loop.fireTimers();
    }
    const long before = blocks;
    while (blocks < before + 10)
        std::this_thread::yield();
    stop = true;
    audio.join();
    automation.join();
    EXPECT_EQ(wrong, 0) << "in " << blocks << " blocks";
}

} // namespace vst3_test
