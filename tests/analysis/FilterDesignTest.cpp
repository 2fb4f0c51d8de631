// Filter designs against the closed forms of their magnitude, and against numbers from scipy.
#include "AllocationCount.h"
#include "analysis/IIRFilterDesign.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <vector>

namespace Orvel {
namespace {

using Kind = FilterKind;
using Family = FilterFamily;

constexpr double kPi = std::numbers::pi;
constexpr double kRippleDb = 3.0102999566;
constexpr double kStopbandDb = 60;
constexpr Family kFamilies[] = {Family::butterworth, Family::chebyshev1, Family::chebyshev2};

double db(double amplitude) { return 20 * std::log10(amplitude); }
double power(double decibels) { return std::pow(10, decibels / 10); }

struct Sections {
    explicit Sections(IIRFilterDesign& design)
        : b0(count(design))
        , b1(b0)
        , b2(b0)
        , a1(b0)
        , a2(b0) {
        design.Design(b0.data(), b1.data(), b2.data(), a1.data(), a2.data());
    }
    static std::vector<double> count(const IIRFilterDesign& design) {
        return std::vector<double>(static_cast<std::size_t>(design.sectionCount()), NAN);
    }
    double magnitude(double hz, double sampleRate) const {
        const std::complex<double> z = std::polar(1.0, 2 * kPi * hz / sampleRate);
        std::complex<double> h = 1;
        for (std::size_t i = 0; i < b0.size(); ++i)
            h *= (b0[i] * z * z + b1[i] * z + b2[i]) / (z * z + a1[i] * z + a2[i]);
        return std::abs(h);
    }
    bool isStable() const {
        bool stable = true;
        for (std::size_t i = 0; i < b0.size(); ++i) {
            stable = stable && std::isfinite(b0[i] + b1[i] + b2[i]);
            stable = stable && std::abs(a2[i]) < 1 && std::abs(a1[i]) < 1 + a2[i];
        }
        return stable;
    }
    bool operator==(const Sections&) const = default;
    std::vector<double> b0, b1, b2, a1, a2;
};

struct Settings {
    Kind kind = Kind::lowPass;
    Family family = Family::butterworth;
    int order = 2;
    double hz = 1000;
    double gainDb = 6;
    double octaves = 1;
    double sampleRate = 48000;

    bool isShelf() const { return kind >= Kind::lowShelf; }
    void applyTo(IIRFilterDesign& design) const {
        design.setKind(kind);
        design.setFamily(family);
        design.setOrder(order);
        design.setFrequency(hz);
        design.setGain(gainDb);
        design.setBandwidth(octaves);
        design.setSampleRate(sampleRate);
    }
    IIRFilterDesign design() const {
        IIRFilterDesign result;
        applyTo(result);
        return result;
    }
    std::string text() const {
        return "kind " + std::to_string(static_cast<int>(kind)) + " family " +
               std::to_string(static_cast<int>(family)) + " order " + std::to_string(order) +
               " at " + std::to_string(hz) + " of " + std::to_string(sampleRate) + " gain " +
               std::to_string(gainDb);
    }
};

double chebyshevSquared(int n, double x) {
    x = std::abs(x);
    const double c = x <= 1 ? std::cos(n * std::acos(x)) : std::cosh(n * std::acosh(x));
    return c * c;
}

/// |H|^2 as textbooks give it, from the frequency where the prototype is evaluated. No poles.
double expectedPower(const Settings& s, double hz) {
    const auto warped = [&](double f) { return std::tan(kPi * f / s.sampleRate); };
    const double lower = warped(s.hz * std::exp2(-s.octaves / 2));
    const double upper = warped(s.hz * std::exp2(s.octaves / 2));
    const double t = warped(hz);
    double omega = t / warped(s.hz);
    if (s.kind == Kind::highPass || s.kind == Kind::highShelf) omega = 1 / omega;
    if (s.kind == Kind::bandPass || s.kind == Kind::bandStop || s.kind == Kind::bell)
        omega = std::abs(t * t - lower * upper) / (t * (upper - lower));
    if (s.kind == Kind::bandStop) omega = 1 / omega;

    Family family = s.family; // the ripple of a high shelf lies where that of a low shelf does
    if (s.kind == Kind::highShelf && s.family == Family::chebyshev1) family = Family::chebyshev2;
    if (s.kind == Kind::highShelf && s.family == Family::chebyshev2) family = Family::chebyshev1;

    // Attenuation 1 + loss, where loss goes from 0 to infinity and is `atEdge` at 1 rad/s.
    double shape = std::pow(omega, 2 * s.order);
    if (family == Family::chebyshev1) shape = chebyshevSquared(s.order, omega);
    if (family == Family::chebyshev2) shape = 1 / chebyshevSquared(s.order, 1 / omega);
    if (!s.isShelf()) {
        double atEdge = 1;
        if (family == Family::chebyshev1) atEdge = power(kRippleDb) - 1;
        if (family == Family::chebyshev2) atEdge = power(kStopbandDb) - 1;
        return 1 / (1 + atEdge * shape);
    }
    const double share = family == Family::butterworth  ? 0.5
                         : family == Family::chebyshev1 ? 0.95
                                                        : 0.05;
    const double g = power(s.gainDb);
    const double edge = power(s.gainDb * share);
    const double atEdge = (g - edge) / (edge - 1);
    return (g + atEdge * shape) / (1 + atEdge * shape);
}

TEST(FilterDesign, hasTheMagnitudeOfItsClosedForm) {
    for (const Kind kind : {Kind::lowPass, Kind::highPass, Kind::bandPass, Kind::bandStop,
                            Kind::lowShelf, Kind::highShelf, Kind::bell})
        for (const Family family : kFamilies)
            for (const int order : {1, 2, 3, 4, 5, 8, 11})
                for (const double gain : {-12.0, 9.0})
                    for (const double hz : {300.0, 5000.0}) {
                        const Settings settings{kind, family, order, hz, gain, 1.3, 44100};
                        auto design = settings.design();
                        const Sections sections(design);
                        ASSERT_TRUE(sections.isStable()) << settings.text();
                        for (double f = 37; f < 22050; f *= 1.11) {
                            const double expected = expectedPower(settings, f);
                            if (expected < 1e-15) continue; // 150 dB down: cancellation
                            // 6e-10 dB at worst, beside the zeros of stop bands.
                            ASSERT_NEAR(db(sections.magnitude(f, 44100)), 10 * std::log10(expected),
                                        1e-8)
                                << settings.text() << " at " << f;
                        }
                    }
}

// python3-scipy 1.10.1, fs=48000, 20*log10(abs(sosfreqz(sos, f))) of
// butter(5, [2000*2**-.5, 2000*2**.5], 'bandstop'), cheby1(8, 3.0102999566, 3000, 'highpass'),
// cheby2(5, 60, [2000*2**-.5, 2000*2**.5], 'bandpass'), cheby2(2, 60, 3000, 'lowpass').
TEST(FilterDesign, agreesWithScipy) {
    constexpr double kHz[] = {500, 1000, 3000, 5000, 20000};
    const struct {
        Settings settings;
        double db[5];
    } cases[] = {
        {{Kind::bandStop, Family::butterworth, 5, 2000},
         {-2.5988346439597646e-07, -0.0024327298403716297, -0.75405811631140696,
          -6.1895035748933127e-05, 0}},
        {{Kind::highPass, Family::chebyshev1, 8, 3000},
         {-167.04930817138541, -117.31743185781069, -3.0102999566001016, -0.35529775560987265,
          -2.6216522127223465}},
        {{Kind::bandPass, Family::chebyshev2, 5, 2000},
         {-61.772306011092709, -64.048773529026619, -60.504137829632427, -60.041938075412808,
          -77.968004148484212}},
        {{Kind::lowPass, Family::chebyshev2, 2, 3000},
         {-22.77568996664424, -35.180240881276788, -60.000000000000014, -70.081840231080065,
          -60.049489035273083}},
    };
    for (const auto& c : cases) {
        auto design = c.settings.design();
        const Sections sections(design);
        for (int i = 0; i < 5; ++i)
            EXPECT_NEAR(db(sections.magnitude(kHz[i], 48000)), c.db[i], 1e-10)
                << c.settings.text() << " at " << kHz[i];
    }
}

TEST(FilterDesign, isStableAtEveryRateAndLimit) {
    for (const Family family : kFamilies)
        for (int kind = 0; kind <= 7; ++kind)
            for (const int order : {1, 2, 7, 24, 25})
                for (const double rate : {1000.0, 8000.0, 44100.0, 384000.0, 1536000.0})
                    for (const double hz : {1.0, 20.0, 0.3 * rate, 0.5 * rate, 1e9}) {
                        const Settings settings{
                            static_cast<Kind>(kind), family, order, hz, -24, 0.5, rate};
                        auto design = settings.design();
                        const Sections sections(design);
                        ASSERT_TRUE(sections.isStable()) << settings.text();
                    }
}

TEST(FilterDesign, limitsFrequenciesAndEdges) {
    Settings settings{Kind::lowPass, Family::butterworth, 4};
    const auto sectionsAt = [&](double hz) {
        settings.hz = hz;
        auto design = settings.design();
        return Sections(design);
    };
    EXPECT_EQ(sectionsAt(30000), sectionsAt(48000 * 0.4995));
    EXPECT_NE(sectionsAt(23000), sectionsAt(48000 * 0.4995));

    // Both edges beyond the limit: a narrow band just below it is left.
    settings = {Kind::bandPass, Family::butterworth, 3};
    EXPECT_NEAR(sectionsAt(60000).magnitude(48000 * 0.4995, 48000), std::sqrt(0.5), 1e-6);
    settings.octaves = 0;
    EXPECT_NEAR(sectionsAt(1000).magnitude(1000, 48000), std::sqrt(0.5), 1e-6);
    EXPECT_NEAR(sectionsAt(1000).magnitude(999, 48000), std::sqrt(0.5), 1e-6);
}

TEST(FilterDesign, isUnityInSingleSectionsForNoGainAndForNone) {
    for (const Settings& settings :
         {Settings{Kind::bell, Family::chebyshev2, 6, 1000, 0.001},
          Settings{Kind::lowShelf, Family::butterworth, 3, 1000, -0.0005},
          Settings{Kind::none, Family::chebyshev1, 4, 1000, 12}}) {
        auto design = settings.design();
        const Sections sections(design);
        EXPECT_EQ(sections.b0, std::vector<double>(sections.b0.size(), 1));
        for (const auto& zero : {sections.b1, sections.b2, sections.a1, sections.a2})
            EXPECT_EQ(zero, std::vector<double>(sections.b0.size(), 0));
    }
}

TEST(FilterDesign, keepsTheOldValueWhenANewOneIsOutOfRange) {
    const Settings settings{Kind::bell, Family::chebyshev1, 3};
    auto design = settings.design();
    const Sections before(design);
    design.setKind(static_cast<Kind>(8));
    design.setKind(static_cast<Kind>(-1));
    design.setFamily(static_cast<Family>(0));
    design.setFamily(static_cast<Family>(4));
    design.setOrder(0);
    design.setOrder(IIRFilterDesign::kMaximumOrder + 1);
    for (const double bad : {0.0, -1.0, double{NAN}, double{INFINITY}}) {
        design.setSampleRate(bad);
        design.setFrequency(bad);
        design.setRipple(bad);
        design.setStopband(bad);
        if (bad != 0) design.setBandwidth(bad);
    }
    design.setGain(NAN);
    EXPECT_EQ(Sections(design), before);
    EXPECT_DOUBLE_EQ(design.lowerEdge(), 1000 / std::sqrt(2));
    EXPECT_DOUBLE_EQ(design.upperEdge(), 1000 * std::sqrt(2));
}

TEST(FilterDesign, givesTheSameWhetherFreshOrReusedAndWithoutTheHeap) {
    std::mt19937 generator(5);
    const auto pick = [&](int from, int to) {
        return std::uniform_int_distribution<int>(from, to)(generator);
    };
    IIRFilterDesign reused;
    Settings settings;
    Family family = settings.family;
    for (int i = 0; i < 2000; ++i) {
        // One or two settings change at a time.
        for (int changes = pick(1, 2); changes > 0; --changes) {
            const int which = pick(0, 4);
            if (which == 0) settings.kind = static_cast<Kind>(pick(0, 7));
            if (which == 1) settings.family = kFamilies[pick(0, 2)];
            if (which == 2) settings.order = pick(1, 12);
            if (which == 3) settings.hz = pick(20, 30000);
            if (which == 4) settings.gainDb = pick(-9, 9);
        }
        // Order and family are set only when they change: setting them rebuilds the prototype.
        reused.setKind(settings.kind);
        if (reused.order() != settings.order) reused.setOrder(settings.order);
        if (family != settings.family) reused.setFamily(settings.family);
        family = settings.family;
        reused.setFrequency(settings.hz);
        reused.setGain(settings.gainDb);
        reused.setSampleRate(settings.sampleRate);
        auto fresh = settings.design();
        ASSERT_EQ(Sections(reused), Sections(fresh)) << settings.text();
    }
    double arrays[5][IIRFilterDesign::kMaximumSections];
    const std::size_t before = allocationsOfThisThread();
    reused.setOrder(25);
    reused.Design(arrays[0], arrays[1], arrays[2], arrays[3], arrays[4]);
    EXPECT_EQ(allocationsOfThisThread(), before);
}

} // namespace
} // namespace Orvel
