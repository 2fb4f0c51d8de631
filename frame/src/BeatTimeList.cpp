#include "frame/BeatTimeList.h"

#include "core/NumberText.h"

#include <algorithm>

namespace Vardo {

namespace {

struct Form {
    int kind;
    const char* suffix;
    double factor;
};
constexpr Form kForms[] = {{kStraight, "", 1.0}, {kTriplet, "T", 2.0 / 3.0}, {kDotted, "D", 1.5}};

BeatTime makeEntry(double bars, const Form& form) {
    const int count = bars <= 1 ? 1 : static_cast<int>(bars + 0.02);
    const int division = bars < 1 ? static_cast<int>(1 / bars) : 1;

    BeatTime entry;
    entry.bars = bars * form.factor;
    entry.kind = form.kind;

    char text[32];
    Core::TextWriter(text, sizeof text)
        .integer(count)
        .text("/")
        .integer(division)
        .text(form.suffix);
    entry.shortLabel.assign(text);
    if (bars >= 1)
        Core::TextWriter(text, sizeof text)
            .integer(count)
            .text(form.suffix)
            .text(count >= 2 ? " Bars" : " Bar");
    entry.label.assign(text);
    return entry;
}

} // namespace

BeatTimeList::BeatTimeList(const float* bars, int kinds) {
    for (; *bars != 0; ++bars)
        for (const Form& form : kForms)
            if ((kinds & form.kind) != 0)
                entries_.push_back(makeEntry(static_cast<double>(*bars), form));
    std::stable_sort(entries_.begin(), entries_.end(),
                     [](const BeatTime& a, const BeatTime& b) { return a.bars < b.bars; });
}

const BeatTime& BeatTimeList::at(int index) const {
    return entries_[static_cast<std::size_t>(std::clamp(index, 0, size() - 1))];
}

int BeatTimeList::find(const char* label) const {
    for (int i = 0; i < size(); ++i)
        if (Core::equalsIgnoringCase(at(i).label.c_str(), label) ||
            Core::equalsIgnoringCase(at(i).shortLabel.c_str(), label))
            return i;
    return -1;
}

double BeatTimeList::getBeatLength(int index, double tempo) const {
    const double bars = index < 0 || index >= size() ? 1.0 : at(index).bars;
    return bars * (60.0 / tempo * 4.0) * 1000.0;
}

const BeatTimeList& BeatTimeList::straight() {
    static constexpr float kBars[] = {1.0F / 32, 1.0F / 16, 1.0F / 8, 1.0F / 4, 1.0F / 2,
                                      1,         2,         4,        8,        0};
    static const BeatTimeList list(kBars, kStraight);
    return list;
}

} // namespace Vardo
