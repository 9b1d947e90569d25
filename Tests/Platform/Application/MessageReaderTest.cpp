#include "Platform/Application/MessageReader.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>
#include <string_view>

#include "Tests/Platform/Allocations.h"
#include "Tests/Platform/RecordVectors.h"

using namespace std::string_literals;

namespace {

status_t Unflatten(const RecordBytes& bytes, BMessage* message) {
    return message->Unflatten(bytes.data(), bytes.size());
}

// Reads all nested records, too, that can be read.
void VisitAll(const BMessage& message) {
    std::string name;
    int32 count = 0;
    for (int32 i = 0; message.GetInfo(B_MESSAGE_TYPE, i, &name, nullptr, &count) == B_OK; i++) {
        for (int32 k = 0; k < count; k++) {
            BMessage nested;
            if (message.FindMessage(name.c_str(), k, &nested) == B_OK) VisitAll(nested);
        }
    }
}

// A message of nothing but `levels` nested ones, each within the last.
BMessage Chain(int32 levels) {
    BMessage chain;
    for (int32 i = 0; i < levels; i++) {
        BMessage outer(static_cast<uint32>(i));
        EXPECT_EQ(outer.AddMessage("next", std::move(chain)), B_OK);
        chain = std::move(outer);
    }
    return chain;
}

TEST(MessageReader, EveryFormOfOneMessageReadsTheSame) {
    for (const char* name : {"archive-le.bin", "archive-be.bin", "archive-le-long.bin",
                             "archive-le-dirty-padding.bin", "archive-native-le.bin"}) {
        const RecordBytes bytes = ReadVector(name);
        BMessage message;
        std::size_t used = 0;
        ASSERT_EQ(message.Unflatten(bytes.data(), bytes.size(), &used), B_OK) << name;
        EXPECT_EQ(used, bytes.size()) << name;
        EXPECT_EQ(message, VectorMessage()) << name;
        // Whatever a record was read from, it is written in one form.
        RecordBytes again;
        ASSERT_EQ(message.Flatten(&again, BMessage::ByteOrder::kLittleEndian), B_OK);
        EXPECT_EQ(again, ReadVector("archive-le.bin")) << name;
        ASSERT_EQ(message.Flatten(&again, BMessage::ByteOrder::kBigEndian), B_OK);
        EXPECT_EQ(again, ReadVector("archive-be.bin")) << name;
    }
}

// An outer record of one order around an inner one of another: made by hand, as Flatten writes all
// of them in one.
TEST(MessageReader, NestedRecordsTellTheirOwnForm) {
    for (const char* name : {"archive-le.bin", "archive-be.bin", "archive-native-le.bin"}) {
        const RecordBytes inner = ReadVector(name);
        RecordBytes bytes;
        const uint32 padded = (static_cast<uint32>(inner.size()) + 4 + 7) / 8 * 8;
        for (const char c : std::string("1BOF____----tset\x01\x09GGSM____\x05inner----"))
            bytes.push_back(static_cast<std::byte>(c));
        bytes = WithUInt32(std::move(bytes), 22, padded);
        bytes = WithUInt32(std::move(bytes), 32, static_cast<uint32>(inner.size()));
        bytes.insert(bytes.end(), inner.begin(), inner.end());
        bytes.resize(32 + padded + 1);
        const auto whole = static_cast<int32>(bytes.size());
        BMessage mixed, found;
        ASSERT_EQ(Unflatten(WithSize(std::move(bytes), whole), &mixed), B_OK) << name;
        ASSERT_EQ(mixed.FindMessage("inner", &found), B_OK) << name;
        EXPECT_EQ(found, VectorMessage()) << name;
    }
}

TEST(MessageReader, DeliveryPartsOfTheHeaderAreSkipped) {
    constexpr char kBigEndian[] =
        "FOB1\xd6\x49\x4f\x79\0\0\0\x32PING\x0f\0\0\0\5"
        "\0\0\0\x0c\0\0\0\3\0\0\0\x63\0\1\0\0"
        "\x0fLONG\4\1n\0\0\0\7";
    RecordBytes big(sizeof kBigEndian);
    std::memcpy(big.data(), kBigEndian, sizeof kBigEndian);
    for (const RecordBytes& bytes : {ReadVector("delivery-le.bin"), big}) {
        BMessage message;
        int32 n = 0;
        ASSERT_EQ(Unflatten(bytes, &message), B_OK);
        EXPECT_EQ(message.what, FourCC("PING"));
        EXPECT_EQ(message.FindInt32("n", &n), B_OK);
        EXPECT_EQ(n, 7);
        EXPECT_EQ(message.FlattenedSize(), 30u);
        // The checksum covers all of the header.
        EXPECT_EQ(Unflatten(WithByte(bytes, 0x24, 1), &message), B_NOT_A_MESSAGE);
    }
}

// Of every size, too: fields have a short and a long form.
TEST(MessageReader, EveryTypeIsKeptAndSwapped) {
    BMessage message, swapped;
    RecordBytes again, big;
    std::string text;
    for (const char* name : {"sizes-le.bin", "alltypes-le.bin"}) {
        const RecordBytes little = ReadVector(name);
        ASSERT_EQ(Unflatten(little, &message), B_OK) << name;
        ASSERT_EQ(message.Flatten(&again, BMessage::ByteOrder::kLittleEndian), B_OK);
        EXPECT_EQ(again, little) << name;
        ASSERT_EQ(message.Flatten(&big, BMessage::ByteOrder::kBigEndian), B_OK);
        ASSERT_EQ(Unflatten(big, &swapped), B_OK) << name;
        EXPECT_EQ(swapped, message) << name;
        if (message.FindString("long", &text) != B_OK) continue;
        EXPECT_EQ(text, std::string(300, 'x'));
    }
    EXPECT_EQ(message.what, 0x80000001u);
    rgb_color color;
    EXPECT_EQ(swapped.FindColor("c2", &color), B_OK) << "the other colour code";
    EXPECT_EQ(color, (rgb_color{1, 2, 3, 4}));
    // Two int16, a float, a rect, and a file reference, whose device and directory turn round and
    // whose name does not.
    const std::string_view written(reinterpret_cast<const char*>(big.data()), big.size());
    for (const std::string& piece :
         {"i16\x80\0\x01\x02"s, "f\x3f\x80\0\0"s, "rc\0\0\0\0\0\0\0\0\x41\xf8\0\0"s,
          "\0\0\0\x03\x01\x02\x03\x04\x05\x06\x07\x08"s + "file"})
        EXPECT_NE(written.find(piece), std::string_view::npos) << piece;
}

TEST(MessageReader, BytesAfterTheRecordAreNotTouched) {
    RecordBytes bytes = ReadVector("archive-le.bin");
    const std::size_t length = bytes.size();
    bytes.insert(bytes.begin(), 8, std::byte{0x55});
    bytes.insert(bytes.end(), 100, std::byte{0x55});
    BMessage message;
    std::size_t used = 0;
    ASSERT_EQ(message.Unflatten(Shared(bytes), 8, &used), B_OK);
    EXPECT_EQ(used, length);
    EXPECT_EQ(message, VectorMessage());
    EXPECT_EQ(message.Unflatten(Shared(bytes), bytes.size() + 1), B_BAD_VALUE);
}

// Offsets into archive-le.bin and archive-le-long.bin.
constexpr std::size_t kClassSize = 0x16, kClassName = 0x17, kClassItem = 0x1d;
constexpr std::size_t kIdsCount = 0x32, kIdsSize = 0x33;
constexpr std::size_t kLongIdsCount = 0x35, kLongIdsSize = 0x39;

struct Malformed {
    const char* what;
    RecordBytes bytes;
    status_t status;
};

std::vector<Malformed> MalformedRecords() {
    const RecordBytes good = ReadVector("archive-le.bin");
    const RecordBytes longForm = ReadVector("archive-le-long.bin");
    const auto cut = [](RecordBytes bytes, std::size_t size) {
        bytes.resize(size);
        return bytes;
    };
    const RecordBytes tabular = ReadVector("archive-native-le.bin");
    return {
        {"3 bytes", cut(good, 3), B_NOT_A_MESSAGE},
        {"another magic", ReadVector("bad-magic.bin"), B_NOT_A_MESSAGE},
        {"wrong checksum", ReadVector("bad-checksum.bin"), B_NOT_A_MESSAGE},
        {"part of the header", ReadVector("bad-truncated-header.bin"), B_BAD_DATA},
        {"half a record", ReadVector("bad-truncated-middle.bin"), B_BAD_DATA},
        {"last byte missing", cut(good, 219), B_BAD_DATA},
        {"size larger than the buffer", WithSize(good, 228), B_BAD_DATA},
        {"negative size", WithSize(good, -1), B_BAD_DATA},
        {"size too small", WithSize(good, 17), B_BAD_DATA},
        {"size cuts a field", WithSize(good, 60), B_BAD_DATA},
        {"no end marker", WithSize(cut(good, 219), 219), B_BAD_DATA},
        {"a byte after the end marker", WithSize(cut(good, 221), 221), B_BAD_DATA},
        {"item larger than its field", ReadVector("bad-item-size-over-field.bin"), B_BAD_DATA},
        {"negative item size", WithUInt32(good, kClassItem, 0xFFFFFFFC), B_BAD_DATA},
        {"item smaller than its field", WithUInt32(good, kClassItem, 3), B_BAD_DATA},
        {"data size over the message", WithByte(good, kClassSize, 255), B_BAD_DATA},
        {"data size 0", WithByte(good, kIdsSize, 0), B_BAD_DATA},
        {"name over the message", ReadVector("bad-name-length-over-message.bin"), B_BAD_DATA},
        {"name length 255", WithByte(good, kClassName, 255), B_BAD_DATA},
        {"no items", WithByte(good, kIdsCount, 0), B_BAD_DATA},
        {"items of uneven size", WithByte(good, kIdsCount, 5), B_BAD_DATA},
        {"more items than bytes", WithByte(good, kIdsCount, 25), B_BAD_DATA},
        {"huge count", ReadVector("bad-count-huge.bin"), B_BAD_DATA},
        {"negative count", WithUInt32(longForm, kLongIdsCount, 0xFFFFFFFD), B_BAD_DATA},
        {"huge data size", WithUInt32(longForm, kLongIdsSize, 0x7FFFFFFF), B_BAD_DATA},
        {"name with two types", ReadVector("bad-same-name-other-type.bin"), B_BAD_TYPE},
        {"huge count of strings",
         RecordOf("\x01RTSC\xff\xff\xff\x7f\x08\0\0\0\x01n\x04\0\0\0abc\0"s), B_BAD_DATA},
        {"half the padding", RecordOf("\x0bRTSC\x07\x01n\x02\0\0\0a\0\0"s), B_BAD_DATA},
        {"name with and without fixed size",
         RecordOf("\x0fGNOL\x04\x01n\x07\0\0\0\x0bGNOL\x08\x01n\x04\0\0\0\x07\0\0\0"s), B_BAD_TYPE},
        {"name with two item sizes", RecordOf("\x0fTWAR\x01\x01n\x07\x0fTWAR\x02\x01n\x07\x07"s),
         B_BAD_DATA},
        {"tabular: huge count of strings", WithUInt32(tabular, 0x4c, 0x7FFFFFFF), B_BAD_DATA},
        {"tabular: fields overlap", WithByte(WithByte(tabular, 0x94, 50), 0x98, 50), B_BAD_DATA},
        {"tabular: cut", cut(tabular, 447), B_BAD_DATA},
        {"tabular: part of the header", cut(tabular, 67), B_BAD_DATA},
        {"tabular: not valid", WithByte(tabular, 8, 0), B_BAD_DATA},
        {"tabular: data elsewhere", WithByte(tabular, 8, 0x81), B_BAD_DATA},
        {"tabular: huge data size", WithUInt32(tabular, 36, 0xFFFFFFFF), B_BAD_DATA},
        {"tabular: huge field count", WithUInt32(tabular, 40, 0xFFFFFFFF), B_BAD_DATA},
        {"tabular: field not valid", WithByte(tabular, 0x44, 0), B_BAD_DATA},
        {"tabular: name without length", WithByte(tabular, 0x46, 0), B_BAD_DATA},
        {"tabular: name without end", WithByte(tabular, 0x46, 5), B_BAD_DATA},
        {"tabular: field past the end", WithUInt32(tabular, 0x54, 0xFFFFFFF0), B_BAD_DATA},
        {"tabular: huge field", WithUInt32(tabular, 0x50, 0xFFFFFFF0), B_BAD_DATA},
        {"tabular: no items", WithUInt32(tabular, 0x64, 0), B_BAD_DATA},
        {"tabular: huge count", WithUInt32(tabular, 0x64, 0xFFFFFFFF), B_BAD_DATA},
        {"tabular: items do not fill the field", WithUInt32(tabular, 0xf2, 4), B_BAD_DATA},
    };
}

TEST(MessageReader, MalformedRecordsAreRefused) {
    for (const Malformed& record : MalformedRecords()) {
        BMessage message = VectorMessage();
        SCOPED_TRACE(record.what);
        (void)TakeLargestAllocation();
        EXPECT_EQ(Unflatten(record.bytes, &message), record.status);
        EXPECT_LT(TakeLargestAllocation(), 2000u) << "its numbers believed";
        EXPECT_EQ(message, BMessage());
        message = VectorMessage();
        EXPECT_EQ(message.Unflatten(Shared(record.bytes), 0), record.status);
        EXPECT_EQ(message, BMessage());
    }
}

TEST(MessageReader, TheChecksumMayBeIgnored) {
    const RecordBytes bytes = ReadVector("bad-checksum.bin");
    BMessage message;
    EXPECT_EQ(message.Unflatten(bytes.data(), bytes.size(), nullptr, BMessage::Checksum::kIgnore),
              B_OK);
    EXPECT_EQ(message, VectorMessage());

    const RecordBytes nested = ReadVector("bad-nested-checksum.bin");
    ASSERT_EQ(Unflatten(nested, &message), B_OK);
    BMessage meta = VectorMessage();
    EXPECT_EQ(message.FindMessage("meta", &meta), B_NOT_A_MESSAGE);
    EXPECT_EQ(meta, BMessage());
    RecordBytes again;
    ASSERT_EQ(message.Flatten(&again, BMessage::ByteOrder::kLittleEndian), B_OK);
    EXPECT_EQ(again, nested) << "what cannot be read is kept";
    ASSERT_EQ(message.Unflatten(nested.data(), nested.size(), nullptr, BMessage::Checksum::kIgnore),
              B_OK);
    EXPECT_EQ(message.FindMessage("meta", &meta), B_OK);
}

TEST(MessageReader, DamagedRecordsNeverCrash) {
    const auto visit = [](const RecordBytes& bytes, BMessage::Checksum checksum) {
        BMessage message;
        // An exact copy on the heap, so that reading past its end is noticed.
        if (message.Unflatten(Shared(bytes), 0, nullptr, checksum) != B_OK) {
            EXPECT_EQ(message, BMessage());
            return;
        }
        VisitAll(message);
        RecordBytes again;
        BMessage copy;
        ASSERT_EQ(message.Flatten(&again), B_OK);
        EXPECT_EQ(copy.Unflatten(again.data(), again.size(), nullptr, checksum), B_OK);
        EXPECT_FALSE(message.ToText().empty());
        EXPECT_EQ(copy.CountNames(), message.CountNames());
    };
    for (const char* name : {"archive-le.bin", "archive-be.bin", "archive-le-long.bin",
                             "archive-native-le.bin", "alltypes-le.bin", "delivery-le.bin"}) {
        const RecordBytes good = ReadVector(name);
        for (std::size_t size = 0; size < good.size(); size++) {
            BMessage message;
            const auto bytes = Shared(RecordBytes(good.data(), good.data() + size));
            EXPECT_NE(message.Unflatten(bytes, 0), B_OK) << name << " cut to " << size;
        }
        for (std::size_t at = 0; at < good.size(); at++) {
            for (const std::byte flip : {std::byte{0x01}, std::byte{0x80}, std::byte{0xFF}}) {
                RecordBytes bytes = good;
                bytes[at] ^= flip;
                visit(bytes, BMessage::Checksum::kIgnore);
                visit(bytes, BMessage::Checksum::kVerify);
            }
        }
    }
}

TEST(MessageReader, ToleratesWhatOtherWritersDo) {
    const std::string number = "\x0fGNOL\x04\x01n\x07\0\0\0"s;
    const std::pair<std::string, std::string> cases[] = {
        // The last padding is missing, and unknown flag bits are set.
        {"\xfbRTSC\x06\x01n\x02\0\0\0a\0"s, R"(string "n" = "a")"},
        // One item is counted.
        {"\x07GNOL\x01\x04\x01n\x07\0\0\0"s, R"(int32 "n" = 7)"},
        // A string without its 0, and one of no bytes at all.
        {"\x03RTSC\x02\x10\x01n\x02\0\0\0ab\0\0\0\0\0\0\0\0\0\0"s,
         "string \"n\"[0] = \"ab\"\n    string \"n\"[1] = \"\""},
        // A nested record in a field of fixed size; it is written in one of varying size.
        {"\x0fGGSM\x12\x01n"
         "1BOF\x01\0\0\x12\x12\0\0\0\0\0\0\0\x01\0"s,
         "message \"n\" = 0x00000000 {\n    }"},
        // A name that comes again adds to its field.
        {number + number, "int32 \"n\"[0] = 7\n    int32 \"n\"[1] = 7"}};
    for (const auto& [fields, text] : cases) {
        BMessage message, again;
        RecordBytes bytes;
        ASSERT_EQ(Unflatten(RecordOf(fields), &message), B_OK) << text;
        EXPECT_EQ(message.ToText(), "message 0x00000000 {\n    " + text + "\n}\n");
        ASSERT_EQ(message.Flatten(&bytes, BMessage::ByteOrder::kBigEndian), B_OK);
        ASSERT_EQ(Unflatten(bytes, &again), B_OK) << text;
        EXPECT_EQ(again, message);
    }
}

TEST(MessageReader, NestedRecordsAreNotCopied) {
    BMessage system;
    for (int32 i = 0; i < 1000; i++) {
        BMessage body(static_cast<uint32>(i));
        ASSERT_EQ(body.AddString("text", std::string(100, 'x')), B_OK);
        ASSERT_EQ(system.AddMessage("children", std::move(body)), B_OK);
    }
    BMessage document;
    ASSERT_EQ(document.AddMessage("system", std::move(system)), B_OK);
    RecordBytes bytes;
    ASSERT_EQ(document.Flatten(&bytes), B_OK);
    const auto buffer = Shared(bytes);
    document = BMessage();
    (void)TakeLargestAllocation();
    BMessage child;
    ASSERT_EQ(document.Unflatten(buffer, 0), B_OK);
    ASSERT_EQ(document.FindMessage("system", &system), B_OK);
    ASSERT_EQ(system.FindMessage("children", 999, &child), B_OK);
    EXPECT_LT(TakeLargestAllocation(), 10000u);
    // The buffer lives as long as anything that was read from it.
    document = BMessage();
    system = BMessage();
    std::string text;
    EXPECT_EQ(child.FindString("text", &text), B_OK);
    EXPECT_EQ(text, std::string(100, 'x'));
}

TEST(MessageReader, NestingIsBounded) {
    const BMessage deepest = Chain(BMessage::kMaxNesting);
    RecordBytes bytes, again;
    BMessage read;
    ASSERT_EQ(deepest.Flatten(&bytes), B_OK);
    ASSERT_EQ(read.Unflatten(Shared(bytes), 0), B_OK);
    EXPECT_EQ(read, deepest);
    EXPECT_EQ(read.ToText(), deepest.ToText());
    ASSERT_EQ(read.Flatten(&again), B_OK);
    EXPECT_EQ(again, bytes);

    // One level more: Flatten refuses it whether the chain is objects or stored bytes.
    const BMessage tooDeep = Chain(BMessage::kMaxNesting + 1);
    EXPECT_EQ(tooDeep.Flatten(&again), B_UNSUPPORTED);
    EXPECT_TRUE(again.empty());
    EXPECT_EQ(tooDeep.FlattenedSize(), 0u);
    BMessage wrapped;
    ASSERT_EQ(wrapped.AddData("next", B_MESSAGE_TYPE, bytes.data(), bytes.size(), false), B_OK);
    EXPECT_EQ(wrapped.Flatten(&again), B_UNSUPPORTED);

    // And a reader that is given one stops at the bound.
    BMessage level = wrapped;
    for (int32 i = 0; i < BMessage::kMaxNesting; i++)
        ASSERT_EQ(level.FindMessage("next", &level), B_OK) << i;
    EXPECT_EQ(level.FindMessage("next", &level), B_UNSUPPORTED);
    EXPECT_TRUE(level.IsEmpty());
}

// No bound holds for records that are only put into each other.
TEST(MessageReader, LongChainsOfObjectsNeedNoStack) {
    constexpr int32 kLevels = 150000;
    const BMessage one = Chain(kLevels), other = Chain(kLevels);
    EXPECT_EQ(one, other);
    EXPECT_EQ(one.FlattenedSize(), 0u);
}

}  // namespace
