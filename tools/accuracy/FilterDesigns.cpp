// Prints Butterworth designs, one a line, for comparison with another implementation: kind, order,
// sample rate, lower and upper edge (Hz), then b0 b1 b2 a1 a2 of each section.
#include "analysis/IIRFilterDesign.h"

#include <array>
#include <cstdio>

namespace {

void print(Orvel::FilterKind kind, int order, double sampleRate, double frequency, double octaves) {
    Orvel::IIRFilterDesign design;
    design.setSampleRate(sampleRate);
    design.setBandwidth(octaves);
    design.setFrequency(frequency);
    design.setKind(kind);
    design.setOrder(order);
    std::array<double, Orvel::IIRFilterDesign::kMaximumSections> b0{}, b1{}, b2{}, a1{}, a2{};
    design.Design(b0.data(), b1.data(), b2.data(), a1.data(), a2.data());

    const bool band = kind == Orvel::FilterKind::bandPass || kind == Orvel::FilterKind::bandStop;
    std::printf("%d %d %.17g %.17g %.17g", static_cast<int>(kind), order, sampleRate,
                band ? design.lowerEdge() : frequency, band ? design.upperEdge() : frequency);
    for (std::size_t i = 0; i < static_cast<std::size_t>(design.sectionCount()); ++i)
        std::printf(" %.17g %.17g %.17g %.17g %.17g", b0[i], b1[i], b2[i], a1[i], a2[i]);
    std::printf("\n");
}

} // namespace

int main() {
    using Orvel::FilterKind;
    for (const double rate : {44100.0, 48000.0, 192000.0})
        for (int order = 1; order <= 12; ++order) {
            for (const double hz : {20.0, 100.0, 1000.0, 5000.0, 8000.0, 20000.0})
                for (const FilterKind kind : {FilterKind::lowPass, FilterKind::highPass})
                    print(kind, order, rate, hz, 1);
            for (const double hz : {100.0, 1000.0, 6324.0})
                for (const FilterKind kind : {FilterKind::bandPass, FilterKind::bandStop})
                    if (order <= 6)
                        for (const double octaves : {0.5, 2.0})
                            print(kind, order, rate, hz, octaves);
        }
}
