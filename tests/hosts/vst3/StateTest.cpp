// The state in a host's stream, whole, in pieces, cut and made up.
#include "AdapterFixture.h"

#include <cstring>

namespace vst3_test {
namespace {

class State : public AdapterFixture {
  protected:
    State() { create(); }
};

TEST_F(State, IsAZeroTheSizeAndTheChunk) {
    EXPECT_EQ(effect->state(), (std::vector<char>{0, 0, 0, 0, 4, 0, 0, 0, 's', 't', 'u', 'b'}));
    Stream full;
    full.room = 10;
    EXPECT_EQ(effect->component->getState(&full), kResultFalse);
    EXPECT_EQ(effect->component->getState(nullptr), kInvalidArgument);
    EXPECT_EQ(effect->component->setState(nullptr), kInvalidArgument);
}

TEST_F(State, ComesBackInPiecesOfAnySize) {
    std::vector<char> chunk(200000);
    for (std::size_t i = 0; i < chunk.size(); ++i)
        chunk[i] = static_cast<char>(i * 7);
    plugin().chunk = chunk;
    const std::vector<char> state = effect->state();
    for (const std::size_t atOnce : {std::size_t{1}, std::size_t{70000}, SIZE_MAX}) {
        plugin().chunk = {'x'};
        EXPECT_EQ(effect->setState(state, atOnce), kResultOk);
        EXPECT_EQ(plugin().chunk, chunk) << atOnce;
    }
    // The controller's way is the same.
    plugin().chunk = {'x'};
    Stream stream(state);
    EXPECT_EQ(effect->controller->setComponentState(&stream), kResultOk);
    EXPECT_EQ(plugin().chunk, chunk);
}

TEST_F(State, TheControllerKeepsTheBypass) {
    constexpr ParamID id = Vardo::Vardo_VST3::kBypassId;
    effect->controller->setParamNormalized(id, 1);
    Stream on;
    ASSERT_EQ(effect->controller->getState(&on), kResultOk);
    effect->controller->setParamNormalized(id, 0);
    Stream component(effect->state()); // from a host that mixes up the two
    EXPECT_EQ(effect->controller->setState(&component), kResultFalse);
    EXPECT_EQ(effect->controller->setState(&on), kResultOk);
    EXPECT_EQ(effect->controller->getParamNormalized(id), 1);
    EXPECT_EQ(effect->controller->setState(nullptr), kInvalidArgument);
}

TEST_F(State, WhatIsNotWholeChangesNothing) {
    const std::vector<char> before = plugin().chunk;
    for (std::size_t size = 0; size < 8; ++size)
        EXPECT_EQ(effect->setState(std::vector<char>(size)), kResultFalse) << size;
    for (const std::uint32_t size : {0U, 5U, 1U << 20, (16U << 20) + 1, 0x80000000U, 0xFFFFFFFFU}) {
        std::vector<char> state(8);
        std::memcpy(&state[4], &size, 4); // little-endian, as this machine
        state.insert(state.end(), {'a', 'b', 'c', 'd'});
        Stream stream(state);
        EXPECT_EQ(effect->component->setState(&stream), kResultOk) << size;
        EXPECT_LE(stream.largestWish, 1U << 16) << "no memory for what may never come";
        if (size > 16U << 20) {
            EXPECT_EQ(stream.at, 8U) << "refused unread";
        }
    }
    EXPECT_EQ(plugin().chunk, before);
}

} // namespace
} // namespace vst3_test
