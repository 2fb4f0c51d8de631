// The property manager: ownership, lookups, notifications, and blobs whole, foreign and damaged.
#include "frame/PropertyManager.h"
#include "core/LittleEndian.h"
#include "frame/ParameterProperty.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <string>
#include <vector>

using Vardo::CPropertyManager;
using Vardo::IPluginParameter;

namespace {
using Bytes = std::vector<std::byte>;
constexpr const char* kName = "BlobName";

class Counter : public Vardo::ParameterChangeListener {
  public:
    void parameterChanged(IPluginParameter* parameter) override { ++calls[parameter]; }
    std::map<IPluginParameter*, int> calls;
};

// A, B and C over -100..100, at 1, 2 and 3.
class Properties : public testing::Test {
  protected:
    Properties() { fill(manager); }

    static void fill(CPropertyManager& target, int count = 3) {
        target.setBlobName(kName);
        for (int i = 0; i < count; ++i) {
            IPluginParameter* each = target.getOrCreateParameter(std::string(1, char('A' + i)));
            each->setMin(-100);
            each->setMax(100);
            each->setValue(static_cast<float>(i + 1));
        }
    }
    static void setAll(CPropertyManager& target, float value) {
        for (int i = 0; i < target.getNumParameters(); ++i)
            target.getParameter(i)->setValue(value);
    }
    static Bytes blobOf(CPropertyManager& source) {
        void* data = nullptr;
        const int size = source.makeBlob(&data);
        const auto* first = static_cast<const std::byte*>(data);
        return {first, first + size};
    }
    static bool load(CPropertyManager& target, const Bytes& blob) {
        return target.loadBlob(blob.data(), static_cast<int>(blob.size()));
    }
    static std::vector<float> values(const CPropertyManager& source) {
        std::vector<float> result;
        for (int i = 0; i < source.getNumParameters(); ++i)
            result.push_back(source.getParameter(i)->getValue());
        return result;
    }
    // Whether a blob is taken, and the values afterwards, of a manager that stood at 50.
    std::vector<float> loaded(const Bytes& blob, bool expected) {
        setAll(manager, 50);
        EXPECT_EQ(load(manager, blob), expected);
        return values(manager);
    }

    using Floats = std::vector<float>;
    CPropertyManager manager;
};

// An uncompressed blob, built by hand from the layout.
struct HandMade {
    std::string name = kName;
    std::uint32_t recordSize = 64;
    std::vector<std::pair<std::string, float>> records;

    Bytes bytes() const {
        Bytes blob(48);
        std::memcpy(blob.data(), name.data(), name.size());
        const auto body = static_cast<std::uint32_t>(records.size() * recordSize);
        const auto count = static_cast<std::uint32_t>(records.size());
        std::size_t at = 20;
        for (const std::uint32_t field : {48U, 0x1000U, 0U, body, body, recordSize, count}) {
            Core::writeU32(&blob[at], field);
            at += 4;
        }
        for (const auto& [key, value] : records) {
            Bytes record(recordSize);
            std::memcpy(record.data(), key.data(), key.size());
            Core::writeF32(&record[52], value);
            Core::writeF32(&record[56], -1);
            Core::writeF32(&record[60], 1);
            blob.insert(blob.end(), record.begin(), record.end());
        }
        return blob;
    }
};
} // namespace

TEST_F(Properties, SuspendedListenersHearOnceAtTheEnd) {
    Counter counter;
    for (int i = 0; i < 3; ++i)
        manager.getParameter(i)->addListener(&counter, false);
    manager.suspendNotifications();
    setAll(manager, 5);
    setAll(manager, 6);
    EXPECT_TRUE(counter.calls.empty());
    manager.resumeNotifications();
    EXPECT_EQ(counter.calls.size(), 3U);
    for (const auto& [parameter, calls] : counter.calls)
        EXPECT_EQ(calls, 1);
}

TEST_F(Properties, BlobHasTheStatedBytes) {
    manager.setCompressed(false);
    HandMade expected;
    expected.records = {{"A", 1.0F}, {"B", 2.0F}, {"C", 3.0F}};
    Bytes bytes = expected.bytes();
    for (std::size_t i = 0; i < 3; ++i) {
        Core::writeF32(&bytes[48 + 64 * i + 56], -100);
        Core::writeF32(&bytes[48 + 64 * i + 60], 100);
    }
    EXPECT_EQ(blobOf(manager), bytes);
}

TEST_F(Properties, BlobsComeBackExactly) {
    for (const bool compressed : {true, false}) {
        manager.setCompressed(compressed);
        const float odd = std::nextafter(0.1F, 1.0F);
        manager.getParameter(0)->setValue(odd);
        manager.getParameter(1)->setValue(-100);
        manager.getParameter(2)->setValue(1e-38F);
        EXPECT_EQ(loaded(blobOf(manager), true), (Floats{odd, -100, 1e-38F}));
    }
    void* own = nullptr;
    const int size = manager.makeBlob(&own);
    const Floats before = values(manager);
    setAll(manager, 9);
    EXPECT_TRUE(manager.loadBlob(own, size)) << "its own memory";
    EXPECT_EQ(values(manager), before);
    manager.setBlobName("Other");
    EXPECT_FALSE(manager.loadBlob(own, size)) << "another's blob";
}

TEST_F(Properties, OtherVersionsLoadAsFarAsKeysAgree) {
    CPropertyManager newer;
    fill(newer, 6);
    newer.getOrCreateParameter("unknown");
    EXPECT_EQ(loaded(blobOf(newer), true), (Floats{1, 2, 3}));
    CPropertyManager older;
    fill(older, 2);
    EXPECT_EQ(loaded(blobOf(older), true), (Floats{1, 2, 50}));

    HandMade blob;
    blob.records = {{"C", 30}, {"", 1}, {"a", 1}, {"A", 1000}};
    EXPECT_EQ(loaded(blob.bytes(), true), (Floats{100, 50, 30}))
        << "limits are the parameter's, not the record's";
    blob.recordSize = 80;
    EXPECT_EQ(loaded(blob.bytes(), true), (Floats{100, 50, 30})) << "larger records";
}

TEST_F(Properties, ValuesThatAreNoNumbersAreSkipped) {
    HandMade blob;
    blob.records = {{"A", std::nanf("")}, {"B", std::numeric_limits<float>::infinity()}, {"C", 4}};
    EXPECT_EQ(loaded(blob.bytes(), true), (Floats{50, 50, 4}));
    blob.records = {{"A", 1}, {std::string(52, 'B'), 2}};
    EXPECT_EQ(loaded(blob.bytes(), true), (Floats{1, 50, 50})) << "a key without an end";
}

TEST_F(Properties, BytesInFrontAreSkipped) {
    const Bytes blob = blobOf(manager);
    Bytes data(7, std::byte{0xAB});
    const std::string decoy = std::string(kName) + " by chance BlobNam";
    for (const char c : decoy)
        data.push_back(static_cast<std::byte>(c));
    data.insert(data.end(), blob.begin(), blob.end());
    data.insert(data.end(), 100, std::byte{0xCD});
    EXPECT_EQ(loaded(data, true), (Floats{1, 2, 3}));
}

TEST_F(Properties, HostileHeadersChangeNothing) {
    HandMade blob;
    blob.records = {{"A", 1}, {"B", 2}, {"C", 3}};
    const Bytes good = blob.bytes();
    // The header's fields: its size, version, packed, packed size, size, record size, count.
    const std::vector<std::pair<std::size_t, std::uint32_t>> cases = {
        {20, 47},  {20, 49},  {20, 0xFFFFFFF0}, {24, 0x1001}, {28, 1},         {32, 191},
        {32, 193}, {32, ~0U}, {36, 191},        {36, ~0U},    {40, 0},         {40, 63},
        {40, 65},  {40, ~0U}, {44, 4},          {44, ~0U},    {44, 0x04000000}};
    for (const auto& [at, value] : cases) {
        Bytes bad = good;
        Core::writeU32(&bad[at], value);
        EXPECT_EQ(loaded(bad, false), (Floats{50, 50, 50}))
            << "offset " << at << ", value " << value;
    }
    EXPECT_FALSE(manager.loadBlob(nullptr, 100));
    EXPECT_FALSE(manager.loadBlob(good.data(), -1));
    EXPECT_FALSE(manager.loadBlob(good.data(), 0));
}

TEST_F(Properties, InflationIsBounded) {
    // A body that says 192 bytes and inflates to far more, and one that says more than allowed.
    Bytes zeros(1 << 20);
    uLongf size = compressBound(zeros.size());
    Bytes packed(size);
    ASSERT_EQ(compress2(reinterpret_cast<Bytef*>(packed.data()), &size,
                        reinterpret_cast<const Bytef*>(zeros.data()), zeros.size(), 9),
              Z_OK);
    Bytes blob = HandMade().bytes();
    blob.insert(blob.end(), packed.begin(), packed.begin() + static_cast<std::ptrdiff_t>(size));
    Core::writeU32(&blob[28], 1);
    Core::writeU32(&blob[32], static_cast<std::uint32_t>(size));
    Core::writeU32(&blob[36], static_cast<std::uint32_t>(zeros.size()));
    EXPECT_TRUE(load(manager, blob)) << "sound, so that the cases below fail for their reason";
    for (const std::uint32_t claim : {192U, (1U << 20) - 1, (1U << 20) + 1, (1U << 24) + 1}) {
        Core::writeU32(&blob[36], claim);
        EXPECT_FALSE(load(manager, blob)) << claim;
    }
}

TEST_F(Properties, CutAnywhereChangesNothing) {
    for (const bool compressed : {true, false}) {
        manager.setCompressed(compressed);
        setAll(manager, 7);
        const Bytes whole = blobOf(manager);
        for (std::size_t length = 0; length < whole.size(); ++length) {
            const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
            ASSERT_EQ(loaded(cut, false), (Floats{50, 50, 50})) << "cut at " << length;
        }
    }
}

TEST_F(Properties, DamageIsNoticedOrHarmless) {
    // A changed byte in a packed body must never let single values through: the stream's checksum
    // covers all of it.
    setAll(manager, 7);
    const Bytes whole = blobOf(manager);
    int refused = 0;
    for (std::size_t at = 0; at < whole.size(); ++at)
        for (const int flip : {0x01, 0x80, 0xFF}) {
            Bytes damaged = whole;
            damaged[at] ^= static_cast<std::byte>(flip);
            setAll(manager, 50);
            const bool taken = load(manager, damaged);
            refused += taken ? 0 : 1;
            if (!taken) {
                ASSERT_EQ(values(manager), (Floats{50, 50, 50})) << "byte " << at;
            } else if (at >= 48) {
                ASSERT_EQ(values(manager), (Floats{7, 7, 7})) << "byte " << at;
            }
        }
    EXPECT_GT(refused, static_cast<int>(whole.size() - 48) * 2);
}
