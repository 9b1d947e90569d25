#include "Platform/Storage/BResources.h"

#include <gtest/gtest.h>

#include <string>

#include "Platform/Storage/BFile.h"
#include "Platform/Storage/ResourceFormat.h"
#include "Platform/Support/ByteOrder.h"
#include "Tests/Platform/RecordVectors.h"
#include "Tests/Platform/TestFolder.h"
#include "Tools/ResourceCompiler/ResourceWriter.h"

using namespace ResourceFormat;

namespace {

using Bytes = std::vector<std::byte>;

const std::string kSample = std::string(ORVEK_TEST_DATA_DIR) + "/sample.rsrc";
constexpr std::size_t kBlock = sizeof kLittleEndianPrefix;  // where the sample's block begins
constexpr std::size_t kSampleTable = 0x8AC;                 // in its block

Bytes BytesOf(std::string_view text) {
    const auto* const begin = reinterpret_cast<const std::byte*>(text.data());
    return {begin, begin + text.size()};
}

template <typename Number>
Bytes Numbers(std::initializer_list<Number> numbers, bool bigEndian) {
    Bytes bytes(numbers.size() * sizeof(Number));
    std::size_t at = 0;
    for (const Number number : numbers) {
        StoreNumber(&bytes[at], number, bigEndian != kHostIsBigEndian);
        at += sizeof number;
    }
    return bytes;
}

// The sample with one word of its block changed.
Bytes SampleWith(std::size_t blockOffset, uint32 word) {
    return WithUInt32(ReadVector("sample.rsrc"), kBlock + blockOffset, word);
}

// The sample with a table that has no checksum, so that changes in it are looked at for themselves.
Bytes UncheckedSample() {
    return SampleWith(kTableSizeOffset, 114 - kTableEndSize);
}

status_t StatusOf(Bytes file) {
    BResources resources;
    const status_t status = resources.SetTo(std::move(file));
    EXPECT_TRUE(status == B_OK || resources.CountResources() == 0);
    return status;
}

TEST(BResourcesTest, FindsByNumberAndByName) {
    BResources resources;
    ASSERT_EQ(resources.SetTo(kSample.c_str()), B_OK);
    EXPECT_EQ(resources.CountResources(), 4);
    std::size_t size = 0;
    EXPECT_STREQ(static_cast<const char*>(resources.LoadResource(B_STRING_TYPE, "greeting", &size)),
                 "hello");
    EXPECT_EQ(size, 6u);
    EXPECT_EQ(resources.LoadString(7), "bye");
    const auto* const opening =
        static_cast<const std::byte*>(resources.LoadResource(B_MESSAGE_TYPE, 101, &size));
    ASSERT_NE(opening, nullptr);
    EXPECT_EQ(Bytes(opening, opening + size), ReadVector("archive-le.bin"));
    EXPECT_EQ(resources.LoadResource(B_STRING_TYPE, 101, &size), nullptr);
    EXPECT_EQ(resources.LoadResource(B_MESSAGE_TYPE, "greeting", &size), nullptr);

    type_code type = 0;
    int32 id = 0;
    const char* name = nullptr;
    ASSERT_TRUE(resources.GetResourceInfo(2, &type, &id, &name, &size));
    EXPECT_EQ(type, B_STRING_TYPE);
    EXPECT_EQ(id, 7);
    EXPECT_STREQ(name, "");
    EXPECT_EQ(size, 4u);
    for (const int32 none : {-1, 4})
        EXPECT_FALSE(resources.GetResourceInfo(none, &type, &id, &name, &size));
}

// Numbers come out in this machine's order from files of both.
TEST(BResourcesTest, TurnsNumbersRoundByType) {
    const auto items = [](bool bigEndian) {
        Bytes version = Numbers<uint32>({1, 2, 3, 4, 5}, bigEndian);
        const Bytes text = BytesOf("short text");
        version.insert(version.end(), text.begin(), text.end());
        return std::vector<std::pair<type_code, Bytes>>{
            {FourCC("APPV"), version},
            {B_INT32_TYPE, Numbers<int32>({7, -8}, bigEndian)},
            {B_RECT_TYPE, Numbers<float>({1, 2, 3, 4}, bigEndian)},
            {B_DOUBLE_TYPE, Numbers<double>({0.1}, bigEndian)},
            {FourCC("kwzx"), BytesOf("KWZXNB00")}};
    };
    for (const auto order :
         {ResourceWriter::ByteOrder::kBigEndian, ResourceWriter::ByteOrder::kLittleEndian}) {
        ResourceWriter writer;
        for (const auto& [type, data] : items(order == ResourceWriter::ByteOrder::kBigEndian))
            ASSERT_TRUE(writer.Add(type, -5, "", data));
        BResources resources;
        ASSERT_EQ(resources.SetTo(writer.File(order)), B_OK);
        for (const auto& [type, expected] : items(kHostIsBigEndian)) {
            std::size_t size = 0;
            const auto* const data =
                static_cast<const std::byte*>(resources.LoadResource(type, -5, &size));
            EXPECT_EQ(Bytes(data, data + size), expected) << type;
        }
    }
}

TEST(BResourcesTest, ToleratesWhatOtherWritersDo) {
    EXPECT_EQ(StatusOf({}), B_OK);
    EXPECT_EQ(StatusOf(UncheckedSample()), B_OK);

    // A count that is too low: the entries go on until the filler.
    BResources resources;
    ASSERT_EQ(resources.SetTo(SampleWith(kCountOffset, 1)), B_OK);
    EXPECT_EQ(resources.CountResources(), 4);

    // An entry of the table that belongs to no resource.
    ASSERT_EQ(resources.SetTo(WithUInt32(UncheckedSample(), kBlock + kSampleTable + 0x3E, 99)),
              B_OK);
    EXPECT_EQ(resources.CountResources(), 3);
    EXPECT_FALSE(resources.LoadString(7));

    // A second resource of the same type and number replaces the first.
    ASSERT_EQ(resources.SetTo(WithUInt32(UncheckedSample(), kBlock + kSampleTable + 0x3A, 1)),
              B_OK);
    EXPECT_EQ(resources.CountResources(), 3);
    EXPECT_EQ(resources.LoadString(1), "bye");
}

TEST(BResourcesTest, RefusesWhatIsNoResourceFile) {
    TestFolder folder;
    BResources resources;
    EXPECT_EQ(resources.SetTo(folder.Write("text", "resource(1) \"a\";").c_str()), B_IO_ERROR);
    EXPECT_EQ(resources.SetTo(folder.Write("short", "R").c_str()), B_IO_ERROR);
    EXPECT_EQ(resources.SetTo(folder.Path("missing").c_str()), B_ENTRY_NOT_FOUND);
    EXPECT_NE(resources.SetTo(folder.Path().c_str()), B_OK);
}

TEST(BResourcesTest, RefusesCutFiles) {
    const Bytes whole = ReadVector("sample.rsrc");
    for (std::size_t size = 1; size < whole.size(); size++)
        ASSERT_NE(StatusOf({whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)}),
                  B_OK)
            << size;
    EXPECT_EQ(StatusOf(BytesOf("Joy!resf")), B_BAD_DATA);
}

TEST(BResourcesTest, RefusesDamagedBlocks) {
    using Change = std::pair<std::size_t, uint32>;
    const Change kInBlock[] = {
        {0, 0x444F1001},        // the magic
        {kCountOffset, 10001},  // more than there may be
        {kCountOffset, 200},    // more than the index holds
        {kIndexOffsetOffset, 0x48},
        {kIndexSizeOffset, 0},
        {kIndexSizeOffset, 0xFFFFFFF0},
        {kEntriesOffset, 0xFFFFFFFF},      // data beyond the end
        {kEntriesOffset + 4, 0x92C},       // the end of the data beyond the end
        {kEntriesOffset + 4, 0xFFFFFFFF},  // offset and size together pass 32 bits
        {kTableOffsetOffset, 0xFFFFFFFF},
        {kTableSizeOffset, 0},
        {kTableSizeOffset, 0xFFFFFFFF},
        {kSampleTable + 106, 0},  // the checksum
        {kSampleTable + 4, 2},    // something that it covers
    };
    for (const auto& [offset, word] : kInBlock)
        EXPECT_EQ(StatusOf(SampleWith(offset, word)), B_BAD_DATA) << offset << ' ' << word;
    const Change kInTable[] = {
        {0x08, 2},           // index 2 a second time
        {0x0C, 0x4542FFFF},  // a name longer than the table
        {0x0C, 0x4542000C},  // a name without its 0
        {0x62, 0},           // no separator at the end
    };
    for (const auto& [offset, word] : kInTable)
        EXPECT_EQ(StatusOf(WithUInt32(UncheckedSample(), kBlock + kSampleTable + offset, word)),
                  B_BAD_DATA)
            << offset;
}

// Many entries for one piece of data would be more than the file is long.
TEST(BResourcesTest, RefusesResourcesThatOverlap) {
    ResourceWriter writer;
    for (int32 i = 0; i < 100; i++)
        ASSERT_TRUE(writer.Add(B_RAW_TYPE, i, "", {std::byte{1}}));
    Bytes file = writer.File();
    const auto blockSize = static_cast<uint32>(file.size() - kBlock);
    for (std::size_t i = 0; i < 100; i++) {
        const std::size_t entry = kBlock + kEntriesOffset + kEntrySize * i;
        file = WithUInt32(WithUInt32(std::move(file), entry, 0), entry + 4, blockSize / 2);
    }
    EXPECT_EQ(StatusOf(std::move(file)), B_BAD_DATA);
}

// Whatever is changed, what is found lies within the file (the sanitizers watch).
TEST(BResourcesTest, SurvivesAnyChangedByte) {
    const Bytes whole = ReadVector("sample.rsrc");
    uint64 sum = 0;
    for (std::size_t at = 0; at < whole.size(); at++) {
        for (const uint8 byte : {0x00, 0x7F, 0xFF}) {
            BResources resources;
            if (resources.SetTo(WithByte(whole, at, byte)) != B_OK) continue;
            type_code type = 0;
            int32 id = 0;
            std::size_t size = 0;
            for (int32 i = 0; resources.GetResourceInfo(i, &type, &id, nullptr, nullptr); i++) {
                const auto* data =
                    static_cast<const std::byte*>(resources.LoadResource(type, id, &size));
                ASSERT_LE(size, whole.size());
                for (std::size_t j = 0; j < size; j++)
                    sum += std::to_integer<uint64>(data[j]);
            }
        }
    }
    EXPECT_GT(sum, 0u);
}

TEST(BResourcesTest, RefusesDamagedPrograms) {
    TestFolder folder;
    std::string copy(100000, '\0');
    BFile self("/proc/self/exe", B_READ_ONLY);
    ASSERT_EQ(self.ReadAt(0, copy.data(), copy.size()), static_cast<ssize_t>(copy.size()));
    BResources resources;
    // The table of sections, at the end of the file, is gone.
    EXPECT_EQ(resources.SetTo(folder.Write("cut", copy).c_str()), B_BAD_DATA);
    EXPECT_EQ(resources.SetTo(folder.Write("head", copy.substr(0, 20)).c_str()), B_IO_ERROR);
}

}  // namespace
