#include "views/SplineDots.h"

#include <algorithm>

namespace Sorel {

namespace {

float sound(float value) { return value >= -1.0F && value <= 1.0F ? value : 0.0F; }

/// How much of each of the four points is in the dot at t.
struct Weights {
    float before;
    float from;
    float to;
    float after;

    explicit Weights(float t)
        : before(((2 - t) * t - 1) * t)
        , from((t - 2) * t * t + 1)
        , to(((1 - t) * t + 1) * t)
        , after((t - 1) * t * t) {}
};

template <std::size_t count>
void mix(const Weights& w, const std::array<float, count + 3>& p, std::array<float, count>& dots) {
    for (std::size_t i = 0; i < count; ++i)
        dots[i] = w.before * p[i] + w.from * p[i + 1] + w.to * p[i + 2] + w.after * p[i + 3];
}

/// Fills the borders of a ring whose points stand from index 1 on.
template <std::size_t size>
void close(std::array<float, size>& ring) {
    ring[0] = ring[size - 3];
    ring[size - 2] = ring[1];
    ring[size - 1] = ring[2];
}

} // namespace

void SplineDots::setPoints(const Points& points, float reach) {
    for (std::size_t i = 0; i < kNumPoints; ++i) {
        right_[i + 1] = sound(points[i].side) * reach;
        down_[i + 1] = sound(points[i].mid) * -reach;
    }
    close(right_);
    close(down_);
}

CRect SplineDots::bounds() const {
    // The outer two of the weights are t (1 - t) below zero together: a quarter at most.
    constexpr float kSwing = 0.25F;
    float left = right_[0];
    float right = left;
    float top = down_[0];
    float bottom = top;
    for (std::size_t i = 0; i < right_.size(); ++i) {
        left = std::min(left, right_[i]);
        right = std::max(right, right_[i]);
        top = std::min(top, down_[i]);
        bottom = std::max(bottom, down_[i]);
    }
    const float across = kSwing * (right - left) + 1.0F;
    const float down = kSwing * (bottom - top) + 1.0F;
    return {double{left - across}, double{top - down}, double{right + across},
            double{bottom + down}};
}

void SplineDots::draw(CDrawContext& context, CPoint centre, CColor color) {
    // The order of dots does not matter: they all blend with one colour. One t for all points keeps
    // the loop straight.
    for (int dot = 0; dot < kDotsPerPoint; ++dot) {
        const Weights weights(static_cast<float>(dot) / kDotsPerPoint);
        mix<kNumPoints>(weights, right_, dotsX_);
        mix<kNumPoints>(weights, down_, dotsY_);
        context.drawPoints(centre, dotsX_, dotsY_, color);
    }
}

} // namespace Sorel
