// Archives: what is written comes back, and nothing outside a damaged one is read.
#include "core/LittleEndian.h"
#include "draw/ResourceArchive.h"
#include "draw/ResourceFormat.h"
#include "draw/ResourceWriter.h"

#include <gtest/gtest.h>
#include <zlib.h>

#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <vector>

using Sorel::CResourceArchive;
using Sorel::ResourceForm;
namespace Format = Sorel::ResourceFormat;

namespace {
using Bytes = std::vector<std::byte>;

Bytes bytesOf(std::string_view text) {
    const auto* const first = reinterpret_cast<const std::byte*>(text.data());
    return {first, first + text.size()};
}

Bytes zlibStream(const Bytes& bytes) {
    uLongf size = compressBound(bytes.size());
    Bytes packed(size);
    EXPECT_EQ(compress(reinterpret_cast<Bytef*>(packed.data()), &size,
                       reinterpret_cast<const Bytef*>(bytes.data()), bytes.size()),
              Z_OK);
    packed.resize(size);
    return packed;
}

class Archive : public testing::Test {
  protected:
    ~Archive() override { reader.close(); }

    // A heap block of the exact size, so that the address sanitizer sees every step beyond it.
    bool open(const Bytes& archive) {
        block_ = std::make_unique<std::byte[]>(archive.size());
        std::copy(archive.begin(), archive.end(), block_.get());
        return reader.open(block_.get(), archive.size());
    }
    std::optional<Bytes> find(const char* name) {
        std::size_t size = 1;
        const std::byte* const found = reader.find(name, size);
        if (found == nullptr) {
            EXPECT_EQ(size, 0U);
            return std::nullopt;
        }
        return Bytes(found, found + size);
    }

    CResourceArchive& reader = CResourceArchive::instance();

  private:
    std::unique_ptr<std::byte[]> block_;
};

// An archive put together from the layout, entry by entry, with nothing checked.
struct HandMade {
    struct Record {
        std::string name;
        std::int32_t unpackedSize;
        std::int32_t packedSize;
        std::uint32_t offset;
    };
    std::vector<Record> records;
    Bytes data;
    std::string magic = "RESOURCE2";
    std::uint32_t directoryOffset = 20;
    Bytes behindDirectory;
    std::optional<std::uint32_t> dataOffset, directorySize, directoryPacked, entryCount;

    Bytes bytes() const {
        Bytes directory(records.size() * 268, std::byte{0xEE}); // nothing behind a name is defined
        for (std::size_t i = 0; i < records.size(); ++i) {
            std::byte* const record = &directory[i * 268];
            const std::size_t length = std::min<std::size_t>(records[i].name.size() + 1, 256);
            std::memcpy(record, records[i].name.c_str(), length);
            Core::writeI32(record + 256, records[i].unpackedSize);
            Core::writeI32(record + 260, records[i].packedSize);
            Core::writeU32(record + 264, records[i].offset);
        }
        const auto stated = static_cast<std::uint32_t>(directory.size());
        directory.insert(directory.end(), behindDirectory.begin(), behindDirectory.end());
        const Bytes packed = zlibStream(directory);
        const auto packedSize = static_cast<std::uint32_t>(packed.size());
        Bytes result;
        result.reserve(40 + packed.size() + data.size());
        result.resize(40);
        std::memcpy(result.data(), magic.data(), magic.size());
        const auto count = static_cast<std::uint32_t>(records.size());
        std::size_t at = 12;
        for (const std::uint32_t field :
             {directoryOffset, 0x2000U, 0x9CB920U, dataOffset.value_or(20 + packedSize),
              directorySize.value_or(stated), directoryPacked.value_or(packedSize),
              entryCount.value_or(count)}) {
            Core::writeU32(&result[at], field);
            at += 4;
        }
        result.insert(result.end(), packed.begin(), packed.end());
        result.insert(result.end(), data.begin(), data.end());
        return result;
    }
};

HandMade sound() {
    HandMade archive;
    archive.data = zlibStream(bytesOf("packed words"));
    const auto packedSize = static_cast<std::int32_t>(archive.data.size());
    archive.records = {{"packed", 12, packedSize, 0},
                       {"stored", 3, -1, static_cast<std::uint32_t>(packedSize)}};
    Bytes stored = bytesOf("odd");
    Format::scramble(stored);
    archive.data.insert(archive.data.end(), stored.begin(), stored.end());
    return archive;
}

constexpr std::uint32_t kHuge[] = {0x7FFFFFFF, 0x80000000, 0xFFFFFFF0, 0xFFFFFFFF};
} // namespace

TEST_F(Archive, WhatIsWrittenComesBack) {
    std::vector<Sorel::ResourceEntry> entries = {
        {"even", bytesOf("four"), ResourceForm::stored},
        {"odd", bytesOf("seven.."), ResourceForm::stored},
        {"nothing", {}, ResourceForm::stored},
        {"nothing packed", {}, ResourceForm::packed},
        {std::string(255, 'n'), Bytes(100'000, std::byte{7}), ResourceForm::packed}};
    std::string error;
    const Bytes archive = writeResourceArchive(entries, 0x5F3530, error);
    EXPECT_EQ(error, "");
    EXPECT_LT(archive.size(), 2000U) << "packed";
    ASSERT_TRUE(open(archive));
    ASSERT_EQ(reader.count(), entries.size());
    for (std::size_t i = 0; i < entries.size(); ++i) {
        EXPECT_EQ(reader.entryName(i), entries[i].name);
        EXPECT_EQ(find(entries[i].name.c_str()), entries[i].bytes) << entries[i].name;
    }
    EXPECT_EQ(reader.entryName(entries.size()), nullptr);
    EXPECT_TRUE(reader.exists("even"));
    for (const char* stranger : {"Even", "eve", "even.", "", static_cast<const char*>(nullptr)}) {
        EXPECT_FALSE(reader.exists(stranger));
        EXPECT_EQ(find(stranger), std::nullopt);
    }
}

TEST_F(Archive, StoredBytesAreScrambledAlternately) {
    std::string error;
    const std::vector<Sorel::ResourceEntry> entries = {{"b", bytesOf("xyz"), ResourceForm::stored}};
    const Bytes written = writeResourceArchive(entries, 0x9CB920, error);
    // The entry closes the archive: first, second, first byte of the key.
    const std::span<const std::byte> stored = std::span(written).last(3);
    EXPECT_NE(stored[0], std::byte{'x'});
    EXPECT_EQ(stored[0] ^ std::byte{'x'}, stored[2] ^ std::byte{'z'});
    EXPECT_NE(stored[0] ^ std::byte{'x'}, stored[1] ^ std::byte{'y'});
}

TEST_F(Archive, TheWriterRefusesWhatNoReaderWouldFind) {
    const std::vector<std::vector<Sorel::ResourceEntry>> cases = {
        {{"", {}, ResourceForm::packed}},
        {{std::string(256, 'n'), {}, ResourceForm::packed}},
        {{std::string("a\0b", 3), {}, ResourceForm::packed}},
        {{"twice", {}, ResourceForm::packed}, {"twice", {}, ResourceForm::stored}}};
    for (const auto& entries : cases) {
        std::string error;
        EXPECT_TRUE(writeResourceArchive(entries, 0, error).empty());
        EXPECT_NE(error, "");
    }
}

TEST_F(Archive, TakesWhatOtherPackersMake) {
    HandMade archive = sound();
    archive.magic = "RESOURCE9"; // the ninth character is a version nobody asks for
    archive.behindDirectory = Bytes(20);
    archive.records.push_back({"stored", 1, -1, 0}); // the first of two counts
    archive.records.push_back({"inside", 2, -1, 4}); // may share bytes with another
    archive.records[0].unpackedSize = 8;             // and the stream may run on a little
    ASSERT_TRUE(open(archive.bytes()));
    EXPECT_EQ(reader.count(), 4U);
    EXPECT_EQ(find("stored"), bytesOf("odd"));
    EXPECT_EQ(find("packed"), bytesOf("packed words"));
    EXPECT_TRUE(find("inside").has_value());
    archive.magic = "RESOURCF2";
    EXPECT_FALSE(open(archive.bytes()));
    EXPECT_EQ(reader.count(), 0U) << "the archive before is gone as well";
    EXPECT_EQ(find("stored"), std::nullopt);
}

TEST_F(Archive, GivesBuffersAwayUntilTheyComeBack) {
    ASSERT_TRUE(open(sound().bytes()));
    std::size_t size = 0;
    const std::byte* const first = reader.find("stored", size);
    const std::byte* const second = reader.find("stored", size);
    ASSERT_NE(first, second);
    reader.free(first);
    reader.free(&size); // a stranger
    reader.free(nullptr);
    EXPECT_EQ(std::memcmp(second, "odd", 3), 0);
    reader.close(); // what is still out goes with the archive; leaks are the sanitizer's to see
    EXPECT_EQ(reader.count(), 0U);
    EXPECT_FALSE(reader.exists("stored"));
    EXPECT_FALSE(reader.open(nullptr, 100));
}

TEST_F(Archive, CutAnywhereGivesWholeEntriesOrNone) {
    const HandMade archive = sound();
    const Bytes whole = archive.bytes();
    for (std::size_t length = 0; length < whole.size(); ++length) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
        const bool hasDirectory = length >= whole.size() - archive.data.size();
        ASSERT_EQ(open(cut), hasDirectory) << length;
        ASSERT_EQ(find("stored"), std::nullopt) << length;
        const bool hasPacked = length >= whole.size() - 3;
        ASSERT_EQ(find("packed").has_value(), hasPacked) << length;
    }
}

TEST_F(Archive, DirectoriesThatLieAreRefused) {
    for (const std::uint32_t huge : kHuge) {
        using Field = std::optional<std::uint32_t> HandMade::*;
        for (const Field field : {&HandMade::dataOffset, &HandMade::directorySize,
                                  &HandMade::directoryPacked, &HandMade::entryCount}) {
            HandMade archive = sound();
            archive.*field = huge;
            EXPECT_FALSE(open(archive.bytes()));
        }
        HandMade archive = sound();
        archive.directoryOffset = huge;
        EXPECT_FALSE(open(archive.bytes()));
    }
    HandMade archive = sound();
    archive.entryCount = 3; // one more than there are records
    EXPECT_FALSE(open(archive.bytes()));
    archive = sound();
    archive.directorySize = 0; // more than its buffer takes
    EXPECT_FALSE(open(archive.bytes()));
    archive = sound();
    archive.records[1].name = std::string(256, 'n'); // without an end
    EXPECT_FALSE(open(archive.bytes()));
    EXPECT_EQ(reader.count(), 0U);
}

TEST_F(Archive, EntriesThatLieAreNotFound) {
    for (const std::uint32_t huge : kHuge) {
        const auto number = static_cast<std::int32_t>(huge);
        HandMade archive = sound();
        archive.records[0].offset = huge;
        archive.records[1].unpackedSize = number;
        ASSERT_TRUE(open(archive.bytes()));
        EXPECT_EQ(find("packed"), std::nullopt) << huge;
        EXPECT_EQ(find("stored"), std::nullopt) << huge;
        archive = sound();
        archive.records[0].unpackedSize = number;
        archive.records[1].offset = huge;
        ASSERT_TRUE(open(archive.bytes()));
        EXPECT_EQ(find("packed"), std::nullopt) << huge;
        EXPECT_EQ(find("stored"), std::nullopt) << huge;
    }
    HandMade archive = sound();
    archive.records[0].packedSize = 0x7FFFFFFF;
    ++archive.records[1].offset; // one byte beyond the end
    ASSERT_TRUE(open(archive.bytes()));
    EXPECT_EQ(find("packed"), std::nullopt);
    EXPECT_EQ(find("stored"), std::nullopt);

    archive = sound(); // a stream of 1 MB that says 12 bytes
    archive.data = zlibStream(Bytes(1 << 20));
    archive.records = {{"bomb", 12, static_cast<std::int32_t>(archive.data.size()), 0}};
    ASSERT_TRUE(open(archive.bytes()));
    EXPECT_EQ(find("bomb"), std::nullopt);
}
