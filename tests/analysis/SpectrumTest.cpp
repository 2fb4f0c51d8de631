// Transform and spectra against a plain transform in double precision.
#include "Signals.h"
#include "analysis/SpectrumAnalyser.h"
#include "kernels/SpectrumKernels.h"

#include <gtest/gtest.h>

#include <bit>
#include <complex>
#include <cstdio>
#include <numbers>
#include <thread>

namespace Orvel {
namespace {

using orvel_test::noise;
using orvel_test::sine;

using Bins = std::vector<std::complex<double>>;

/// The textbook: even and odd samples apart, then together.
Bins plainTransform(const std::vector<double>& x) {
    const std::size_t size = x.size();
    if (size == 1) return {x[0]};
    std::vector<double> even(size / 2);
    std::vector<double> odd(size / 2);
    for (std::size_t i = 0; i < size / 2; ++i) {
        even[i] = x[2 * i];
        odd[i] = x[2 * i + 1];
    }
    const Bins e = plainTransform(even);
    const Bins o = plainTransform(odd);
    Bins bins(size);
    for (std::size_t k = 0; k < size / 2; ++k) {
        const double angle =
            -2 * std::numbers::pi * static_cast<double>(k) / static_cast<double>(size);
        bins[k] = e[k] + std::polar(1.0, angle) * o[k];
        bins[k + size / 2] = e[k] - std::polar(1.0, angle) * o[k];
    }
    return bins;
}

/// Levels of bins 0..size/2 of the last `size` samples, as a ruler for the analyser.
std::vector<double> plainLevels(const std::vector<float>& audio, int size) {
    std::vector<double> frame(static_cast<std::size_t>(size));
    const std::size_t first = audio.size() - frame.size();
    for (std::size_t i = 0; i < frame.size(); ++i)
        frame[i] = double{audio[first + i]} * 0.5 *
                   (1 - std::cos(2 * std::numbers::pi * static_cast<double>(i) / (size - 1)));
    const Bins bins = plainTransform(frame);
    std::vector<double> levels(frame.size() / 2 + 1);
    for (std::size_t i = 0; i < levels.size(); ++i)
        levels[i] = std::max(-192.0, 20 * std::log10(std::abs(bins[i]) / size * 4));
    return levels;
}

/// Feeds both analysed channels in slices of uneven length; gives where frames were finished.
std::vector<std::size_t> feed(SpectrumAnalyser& analyser,
                              const std::vector<float>& mid,
                              const std::vector<float>& side,
                              unsigned longest = 97) {
    std::mt19937 generator(17);
    std::vector<std::size_t> finished;
    for (std::size_t at = 0; at < mid.size();) {
        Slice slice;
        slice.count =
            static_cast<int>(std::min<std::size_t>(1 + generator() % longest, mid.size() - at));
        slice.channels[Vardo::kLeft] = mid.data() + at;
        slice.channels[Vardo::kRight] = mid.data() + at;
        slice.channels[Vardo::kMid] = mid.data() + at;
        slice.channels[Vardo::kSide] = side.data() + at;
        slice.channels[Vardo::kMax] = mid.data() + at;
        at += static_cast<std::size_t>(slice.count);
        if (analyser.feed(slice)) finished.push_back(at);
    }
    return finished;
}

std::vector<float> levels(const SpectrumAnalyser& analyser, int channel) {
    return {analyser.levelsDb(channel), analyser.levelsDb(channel) + analyser.fftSize()};
}

/// Largest error of the bins within `range` dB of the highest.
double worstError(const SpectrumAnalyser& analyser,
                  int channel,
                  const std::vector<float>& audio,
                  double range) {
    const auto exact = plainLevels(audio, analyser.fftSize());
    const double highest = *std::max_element(exact.begin() + 1, exact.end());
    double worst = 0;
    for (std::size_t i = 1; i < exact.size(); ++i)
        if (exact[i] > highest - range)
            worst = std::max(worst, std::abs(double{analyser.levelsDb(channel)[i]} - exact[i]));
    return worst;
}

TEST(SpectrumKernels, bothVersionsGiveTheSameBits) {
    const SpectrumKernels* const wide = avx2SpectrumKernels();
    if (wide == nullptr) GTEST_SKIP() << "this processor has no AVX2";
    std::mt19937 generator(4);
    constexpr float kSpecial[] = {0.0F, -0.0F, 1e-40F, -1e-13F, 1.0001e-13F, 1e6F, -1e6F};
    for (int m = kSmallestPiece; m <= 2048; m *= 2) {
        const auto samples = static_cast<std::size_t>(8 * m);
        auto x = noise(8 * m, static_cast<std::uint32_t>(m));
        for (float& value : x)
            if (generator() % 8 == 0) value = kSpecial[generator() % std::size(kSpecial)];
        const auto window = noise(8 * m, 2);
        const auto twiddles = noise(numTwiddles(m), 3);
        const auto run = [&](const SpectrumKernels& kernels) {
            std::vector<float> all;
            for (const float* const w : {window.data(), static_cast<const float*>(nullptr)}) {
                std::vector<float> pieces(static_cast<std::size_t>(4 * pieceStride(m)));
                kernels.split(x.data(), w, m, pieces.data());
                std::vector<float> db(samples / 2 + 1);
                kernels.joinToDb(pieces.data(), twiddles.data(), m, -20, -150, db.data());
                std::vector<float> bins(samples + 2);
                kernels.joinToBins(pieces.data(), twiddles.data(), m, 0.3F, bins.data());
                for (const auto& part : {pieces, db, bins})
                    all.insert(all.end(), part.begin(), part.end());
            }
            return all;
        };
        const auto narrow = run(kBaselineSpectrumKernels);
        const auto other = run(*wide);
        for (std::size_t i = 0; i < narrow.size(); ++i)
            ASSERT_EQ(std::bit_cast<std::uint32_t>(narrow[i]),
                      std::bit_cast<std::uint32_t>(other[i]))
                << "m " << m << ", value " << i;
    }
}

TEST(RealFFT, agreesWithThePlainTransformAtEverySize) {
    for (int size = CRealFFT::kSmallestSize; size <= 131072; size *= 2) {
        CRealFFT fft;
        fft.setSize(size - size / 4); // rounds up
        ASSERT_EQ(fft.size(), size);
        const auto x = noise(size, static_cast<std::uint32_t>(size));
        std::vector<float> bins(static_cast<std::size_t>(size) + 2);
        fft.forward(x.data(), bins.data());

        const Bins exact = plainTransform({x.begin(), x.end()});
        double error = 0;
        double power = 0;
        for (std::size_t i = 0; i <= x.size() / 2; ++i) {
            const std::complex<double> bin(double{bins[2 * i]}, double{bins[2 * i + 1]});
            error += std::norm(bin * static_cast<double>(size) - exact[i]);
            power += std::norm(exact[i]);
        }
        // Root mean square; single precision and some twenty roundings on the way.
        EXPECT_LT(std::sqrt(error / power), 3e-7) << size;
    }
}

TEST(RealFFT, takesLogarithmsWithinTheirBound) {
    CRealFFT fft;
    fft.setSize(32);
    const std::vector<float> ones(32, 1.0F);
    std::vector<float> impulse(32);
    float db[17];
    double worst = 0;
    // All bins of an impulse have its own magnitude: any float can be taken through the logarithm.
    for (std::uint32_t bits = std::bit_cast<std::uint32_t>(2e-10F);
         bits < std::bit_cast<std::uint32_t>(9e5F); bits += 12345) {
        impulse[0] = std::bit_cast<float>(bits);
        fft.forwardToDb(impulse.data(), ones.data(), 0, -240, db);
        const double exact = 20 * std::log10(double{impulse[0]} / 32);
        for (const float level : db)
            worst = std::max(worst, std::abs(double{level} - exact));
    }
    // 1.3e-5 of the polynomial, and the last bit of numbers of up to 256.
    EXPECT_LT(worst, 4e-5);
}

TEST(SpectrumAnalyser, sizesFollowTheSampleRate) {
    const float cases[][3] = {
        {48000, 3, 16384}, {44100, 1, 4096},  {88200, 3, 32768}, {1536000, 3, 524288},
        {1000, 0, 64},     {48000, 9, 16384}, {0, 0, 32}};
    for (const auto& [rate, index, size] : cases)
        EXPECT_EQ(SpectrumAnalyser::fftSizeFor(rate, static_cast<int>(index)),
                  static_cast<int>(size));
}

TEST(SpectrumAnalyser, finishesFramesToTheSample) {
    const float cases[][3] = {{3, 16, 1024}, {0, 3.5F, 585}, {1, 99, 256}, {0, 0, 2048}};
    for (const auto& [index, speed, hop] : cases) {
        SpectrumAnalyser analyser;
        analyser.configure(48000, static_cast<int>(index), speed);
        const std::vector<float> audio(40000);
        const auto finished = feed(analyser, audio, audio, 1);
        ASSERT_EQ(finished.size(), audio.size() / static_cast<std::size_t>(hop));
        for (std::size_t i = 0; i < finished.size(); ++i)
            ASSERT_EQ(finished[i], (i + 1) * static_cast<std::size_t>(hop));
    }
}

TEST(SpectrumAnalyser, readsFullScaleSineAsZeroDecibels) {
    for (const float rate : {8000.0F, 44100.0F, 48000.0F, 192000.0F}) {
        for (int index = 0; index < 4; ++index) {
            SpectrumAnalyser analyser;
            analyser.configure(rate, index, 16);
            const int size = analyser.fftSize();
            const auto bin = static_cast<std::size_t>(size / 16 + 3);
            const auto tone =
                sine(size, static_cast<double>(bin) * double{analyser.binHz()}, double{rate});
            feed(analyser, tone, tone);
            // The window's sum is one sample short of half the frame.
            EXPECT_NEAR(analyser.levelsDb(Vardo::kMid)[bin], 20 * std::log10(1 - 1.0 / size), 2e-4)
                << rate << " " << size;
        }
    }
}

// Single precision leaves traces of a loud tone in a few far bins, 140 to 150 dB below it. In noise
// they drown; where bins 80 dB below a lone tone are looked at, they are what is left of accuracy.
// FFTW's own real transform in single precision reads such bins up to 0.006 dB off as well.
constexpr double kToneErrorDb = 0.006;

TEST(SpectrumAnalyser, isWithinAThousandthOfADecibelOfDoublePrecision) {
    double ofNoise = 0;
    double nearTone = 0;
    double farFromTone = 0;
    for (const int index : {0, 1, 2, 3}) {
        for (unsigned seed = 1; seed <= 4; ++seed) {
            SpectrumAnalyser analyser;
            analyser.configure(48000, index, 16);
            // So many samples that the ring wraps somewhere; the last one finishes a frame.
            const int samples = analyser.hopSize() * (17 + static_cast<int>(5 * seed));
            const auto bothErrors = [&](const std::vector<float>& mid,
                                        const std::vector<float>& side, double range) {
                analyser.clear();
                feed(analyser, mid, side, seed == 1 ? 1 : 97);
                return std::max(worstError(analyser, Vardo::kMid, mid, range),
                                worstError(analyser, Vardo::kSide, side, range));
            };
            // A side far below its mid is as exact as alone.
            const auto faintNoise = noise(samples, 70 + seed, 1e-3F);
            ofNoise = std::max(ofNoise, bothErrors(noise(samples, seed), faintNoise, 80));

            auto tone = sine(samples, 997 * seed, 48000);
            for (std::size_t i = 0; i < tone.size(); ++i)
                tone[i] += faintNoise[i];
            const auto loudTone = sine(samples, 0.155 * seed * 24000, 48000, 1e4);
            const auto faintTone = sine(samples, 3333, 48000, 1e-7);
            for (const auto& [mid, side] :
                 {std::pair{tone, faintNoise}, std::pair{loudTone, faintTone}}) {
                nearTone = std::max(nearTone, bothErrors(mid, side, 60));
                farFromTone = std::max(farFromTone, bothErrors(mid, side, 80));
            }
        }
    }
    EXPECT_LE(ofNoise, 0.001);
    EXPECT_LE(nearTone, 0.001);
    EXPECT_LE(farFromTone, kToneErrorDb);
    std::printf("worst error of noise %.6f dB, of tones %.6f within 60 dB, %.6f within 80 dB\n",
                ofNoise, nearTone, farFromTone);
}

TEST(SpectrumAnalyser, silenceReadsTheFloorBesideAnything) {
    SpectrumAnalyser analyser;
    analyser.configure(48000, 1, 16);
    auto faint = std::vector<float>(8192, 1e-14F);
    for (std::size_t i = 0; i < faint.size(); i += 2)
        faint[i] = -1e-40F;
    for (const auto& quiet : {std::vector<float>(8192), faint}) {
        feed(analyser, noise(8192, 3, 1e6F), quiet);
        const auto side = levels(analyser, Vardo::kSide);
        EXPECT_EQ(side[0], -72.0F);
        for (std::size_t i = 1; i < side.size(); ++i)
            ASSERT_EQ(side[i], -192.0F);
    }
}

TEST(SpectrumAnalyser, startsAnewWithAnotherSizeOrRateButNotWithAnotherSpeed) {
    SpectrumAnalyser analyser;
    Slice nothing;
    nothing.count = 5;
    EXPECT_FALSE(analyser.feed(nothing)) << "not set up";
    analyser.configure(48000, 1, 16);
    const auto loud = noise(4096, 5);
    feed(analyser, loud, loud);
    analyser.configure(48000, 1, 4);
    const std::vector<float> silence(1024);
    EXPECT_EQ(feed(analyser, silence, silence).size(), 1U);
    EXPECT_GT(analyser.levelsDb(Vardo::kMid)[100], -100.0F) << "three quarters are still loud";
    for (const auto& [rate, index] : {std::pair{44100.0F, 1}, std::pair{44100.0F, 0}}) {
        feed(analyser, loud, loud);
        analyser.configure(rate, index, 16);
        feed(analyser, silence, silence);
        EXPECT_EQ(analyser.levelsDb(Vardo::kMid)[100], -192.0F);
    }
    analyser.setActive(Vardo::kLeft, true);
    analyser.setActive(Vardo::kSide, false);
    feed(analyser, loud, loud);
    EXPECT_EQ(levels(analyser, Vardo::kLeft), levels(analyser, Vardo::kMid));
    EXPECT_EQ(analyser.levelsDb(Vardo::kSide), nullptr);
}

TEST(SpectrumAnalyser, instancesSharePlansAcrossThreads) {
    std::vector<std::vector<float>> results(4);
    std::vector<std::thread> threads;
    const auto audio = noise(8192, 6);
    for (auto& result : results) {
        threads.emplace_back([&] {
            SpectrumAnalyser analyser;
            for (const int index : {2, 0, 1}) {
                analyser.configure(48000, index, 16);
                feed(analyser, audio, audio);
            }
            result = levels(analyser, Vardo::kMid);
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    for (const auto& result : results)
        EXPECT_EQ(result, results[0]);
}

} // namespace
} // namespace Orvel
