// The adapter under many threads at once, around a plug-in that notices what is not kept apart.
#include "AdapterFixture.h"
#include "Hammer.h"

namespace {

class Concurrency : public AdapterFixture {};

TEST_F(Concurrency, AudioGoesOnWhileEverythingChanges) {
    vst2::VstTimeInfo time{};
    time.flags = vst2::kVstTempoValid;
    time.tempo = 100;
    time.sampleRate = 48000;
    host.time = &time;
    host.recording = false;
    Effect effect(create());
    plugin().keepNotes = false;
    hammer(effect, 2000, 0.5F);
    EXPECT_GT(plugin().blocks, 0) << "the plug-in saw some of it";
    EXPECT_GT(plugin().idles, 0);
}

} // namespace
