// Many threads on one effect, as the worst of hosts does it; the thread sanitizer watches.
#pragma once

#include "FakeHost.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <thread>
#include <vector>

/// Audio on one thread, automation on a second, texts on a third, and on this one chunks, rate,
/// block size, arrangement, bypass, suspend and resume, for `rounds` rounds.
/// `gain`: what the plug-in makes of a sample; a block may also pass as it came.
inline void hammer(const Effect& effect, int rounds, float gain) {
    using namespace vst2;
    std::atomic<bool> stop{false};
    std::atomic<int> wrong{0};
    std::atomic<long> blocks{0};
    AEffect* raw = effect.get();
    const int parameters = raw->numParams;

    std::thread audio([&] {
        std::vector<float> left(1024);
        std::vector<float> right(1024);
        VstMidiEvent midi{};
        midi.type = kVstMidiType;
        VstEvents events{};
        events.numEvents = 1;
        events.events[0] = reinterpret_cast<VstEvent*>(&midi);
        for (int round = 0; !stop; ++round) {
            // Longer than announced now and then.
            const int frames = 1 + round * 37 % 1024;
            std::fill(left.begin(), left.end(), 0.5F);
            std::fill(right.begin(), right.end(), 0.5F);
            float* channels[] = {left.data(), right.data()};
            effect.ask(effProcessEvents, 0, 0, &events);
            raw->setParameter(raw, round % parameters, 0.25F);
            raw->processReplacing(raw, channels, channels, frames);
            for (int i = 0; i < frames; ++i) {
                const float sample = left[static_cast<std::size_t>(i)];
                if (sample != 0.5F && sample != 0.5F * gain) ++wrong;
            }
            ++blocks;
        }
    });
    std::thread automation([&] {
        for (int round = 0; !stop; ++round) {
            raw->setParameter(raw, round % parameters, static_cast<float>(round % 11) / 10.0F);
            std::this_thread::yield();
        }
    });
    std::thread reader([&] {
        for (int round = 0; !stop; ++round) {
            const float value = raw->getParameter(raw, round % parameters);
            if (value < 0 || value > 1) ++wrong;
            char text[64];
            effect.ask(effGetParamDisplay, round % parameters, 0, text);
            std::this_thread::yield();
        }
    });

    const float rates[] = {44100, 48000, 96000, 22050};
    const int sizes[] = {32, 512, 1024, 64, 2048};
    for (int round = 0; round < rounds; ++round) {
        void* data = nullptr;
        const std::intptr_t size = effect.ask(effGetChunk, 0, 0, &data);
        std::vector<char> state(static_cast<char*>(data), static_cast<char*>(data) + size);
        effect.ask(effSetChunk, 0, size, state.data());
        effect.ask(effSetSampleRate, 0, 0, nullptr, rates[round % 4]);
        effect.ask(effSetBlockSize, 0, sizes[round % 5]);
        VstSpeakerArrangement arrangement{};
        arrangement.type = round % 2;
        arrangement.numChannels = 1 + round % 2;
        effect.ask(effSetSpeakerArrangement, 0, reinterpret_cast<std::intptr_t>(&arrangement),
                   round % 3 == 0 ? nullptr : &arrangement);
        effect.ask(effMainsChanged, 0, round % 2);
        effect.ask(effSetBypass, 0, round % 3 == 0 ? 1 : 0);
        effect.ask(effEditIdle);
    }
    // A block that comes while this thread is inside passes unseen, on a busy machine maybe all of
    // them; the plug-in sees those that come now.
    const long before = blocks;
    while (blocks < before + 10)
        std::this_thread::yield();
    stop = true;
    audio.join();
    automation.join();
    reader.join();
    EXPECT_EQ(wrong, 0) << "of the samples of " << blocks << " blocks";
}
