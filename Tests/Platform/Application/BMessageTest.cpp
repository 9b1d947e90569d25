#include "Platform/Application/BMessage.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <thread>

#include "Platform/Storage/entry_ref.h"
#include "Tests/Platform/Allocations.h"
#include "Tests/Platform/RecordVectors.h"

namespace {

TEST(BMessage, WritesTheStoredFormByteForByte) {
    const std::pair<BMessage, std::string> forms[] = {{VectorMessage(), "archive"},
                                                      {BMessage(), "empty"}};
    for (const auto& [message, name] : forms) {
        RecordBytes bytes;
        ASSERT_EQ(message.Flatten(&bytes, BMessage::ByteOrder::kLittleEndian), B_OK);
        EXPECT_EQ(bytes, ReadVector(name + "-le.bin"));
        EXPECT_EQ(message.FlattenedSize(), bytes.size());
        ASSERT_EQ(message.Flatten(&bytes, BMessage::ByteOrder::kBigEndian), B_OK);
        EXPECT_EQ(bytes, ReadVector(name + "-be.bin"));
    }
}

TEST(BMessage, AFieldKeepsItsTypeAndItemSize) {
    BMessage message;
    EXPECT_EQ(message.AddInt32("a", 1), B_OK);
    EXPECT_EQ(message.AddInt64("a", 2), B_BAD_TYPE);
    EXPECT_EQ(message.AddData("a", B_INT32_TYPE, "12345678", 8), B_BAD_VALUE);
    EXPECT_EQ(message.AddData("b", B_RAW_TYPE, "", 0), B_BAD_VALUE);
    EXPECT_EQ(message.AddData("b", B_ANY_TYPE, "1", 1), B_BAD_VALUE);
    EXPECT_EQ(message.AddDoubles("b", nullptr, 3), B_BAD_VALUE);
    EXPECT_EQ(message.AddInt32(std::string(256, 'n').c_str(), 1), B_NAME_TOO_LONG);
    EXPECT_EQ(message.CountNames(), 1) << "what fails leaves no field behind";
    EXPECT_EQ(message.AddInt32(std::string(255, 'n').c_str(), 1), B_OK);
    // Whether items have one size is settled by the first; a string of any length may follow.
    EXPECT_EQ(message.AddData("text", B_STRING_TYPE, "a", 2, false), B_OK);
    EXPECT_EQ(message.AddData("text", B_STRING_TYPE, "bcd", 4, true), B_OK);
    std::string text;
    EXPECT_EQ(message.FindString("text", 1, &text), B_OK);
    EXPECT_EQ(text, "bcd");
}

TEST(BMessage, FailedFindsOverwriteTheResult) {
    BMessage message;
    ASSERT_EQ(message.AddInt16("short", 1), B_OK);
    ASSERT_EQ(message.AddData("odd", B_INT32_TYPE, "12", 2), B_OK);
    const auto expect = [&message](const char* name, int32 index, status_t status) {
        int32 number = 9;
        EXPECT_EQ(message.FindInt32(name, index, &number), status);
        EXPECT_EQ(number, 0);
    };
    expect("none", 7, B_NAME_NOT_FOUND);
    expect("short", 7, B_BAD_TYPE);  // the type counts first
    expect("odd", -1, B_BAD_INDEX);
    expect("odd", 1, B_BAD_INDEX);
    expect("odd", 0, B_BAD_DATA);

    bool flag = true;
    EXPECT_EQ(message.FindBool("none", &flag), B_NAME_NOT_FOUND);
    EXPECT_FALSE(flag);
    BRect rect{1, 2, 3, 4};
    EXPECT_EQ(message.FindRect("none", &rect), B_NAME_NOT_FOUND);
    EXPECT_EQ(rect, (BRect{0, 0, -1, -1}));
    std::string text = "old";
    EXPECT_EQ(message.FindString("none", &text), B_NAME_NOT_FOUND);
    EXPECT_EQ(text, "");
    BMessage nested(5);
    EXPECT_EQ(message.FindMessage("none", &nested), B_NAME_NOT_FOUND);
    EXPECT_EQ(nested, BMessage());
    const void* data = &message;
    std::size_t size = 77;
    EXPECT_EQ(message.FindData("none", B_RAW_TYPE, 0, &data, &size), B_NAME_NOT_FOUND);
    EXPECT_EQ(data, nullptr);
    EXPECT_EQ(size, 77u) << "the size stays";
    double values[2] = {9, 9};
    ASSERT_EQ(message.AddDouble("one", 1), B_OK);
    EXPECT_EQ(message.FindDoubles("one", 0, 2, values), B_BAD_INDEX);
    EXPECT_EQ(values[0], 0);
}

TEST(BMessage, ReplacingAndRemovingItems) {
    RecordBytes bytes = ReadVector("archive-le.bin");
    BMessage stored;
    ASSERT_EQ(stored.Unflatten(bytes.data(), bytes.size()), B_OK);
    // The same whether fields are views into stored bytes or were added.
    for (BMessage message : {VectorMessage(), stored}) {
        ASSERT_EQ(message.AddString("class", "Thing"), B_OK);
        EXPECT_EQ(message.ReplaceString("class", "A rather longer name"), B_OK);
        EXPECT_EQ(message.ReplaceInt64("IDs", 77), B_OK);
        const int64 last = -5;
        EXPECT_EQ(message.ReplaceData("IDs", B_INT64_TYPE, 2, &last, sizeof last), B_OK);
        EXPECT_EQ(message.ReplaceInt64("none", 1), B_NAME_NOT_FOUND);
        EXPECT_EQ(message.ReplaceInt32("IDs", 1), B_BAD_TYPE);
        EXPECT_EQ(message.ReplaceData("IDs", B_INT64_TYPE, 3, &last, sizeof last), B_BAD_INDEX);
        EXPECT_EQ(message.ReplaceData("IDs", B_INT64_TYPE, 0, &last, 4), B_BAD_VALUE);
        EXPECT_EQ(message.RemoveData("r", 1), B_OK);
        EXPECT_EQ(message.RemoveData("r", 2), B_BAD_INDEX);
        EXPECT_EQ(message.RemoveData("fixed"), B_OK);
        EXPECT_FALSE(message.HasName("fixed")) << "the last item takes the name with it";
        // Removed and added again, a name comes last.
        EXPECT_EQ(message.RemoveName("color"), B_OK);
        EXPECT_EQ(message.AddInt64("color", 1), B_OK);

        EXPECT_EQ(message.ToText(), R"(message 'ARCV' {
    string "class"[0] = "A rather longer name"
    string "class"[1] = "Thing"
    int64 "IDs"[0] = 77
    int64 "IDs"[1] = -2
    int64 "IDs"[2] = -5
    double "r"[0] = 0
    double "r"[1] = 6.02214076e+23
    point "pos" = 1.5, -2.25
    message "meta" = 'info' {
        string "name" = "Sol"
    }
    int64 "color" = 1
}
)");
    }
}

TEST(BMessage, ChangingForeverDoesNotGrowWithoutBound) {
    BMessage message;
    ASSERT_EQ(message.AddString("text", ""), B_OK);
    const std::string large(10000, 'x');
    (void)TakeLargestAllocation();
    for (int32 i = 0; i < 2000; i++) {
        ASSERT_EQ(message.ReplaceString("text", i % 2 == 0 ? large : "short"), B_OK);
        ASSERT_EQ(message.AddInt32("passing", i), B_OK);
        ASSERT_EQ(message.RemoveName("passing"), B_OK);
    }
    EXPECT_LT(TakeLargestAllocation(), 100000u);
    std::string text;
    EXPECT_EQ(message.FindString("text", &text), B_OK);
    EXPECT_EQ(text, "short");
}

TEST(BMessage, ItsOwnBytesMayBeAdded) {
    BMessage message;
    for (int32 i = 0; i < 40; i++) {
        ASSERT_EQ(message.AddInt32("n", i), B_OK);
        const void* data = nullptr;
        std::size_t size = 0;
        ASSERT_EQ(message.FindData("n", B_INT32_TYPE, i, &data, &size), B_OK);
        ASSERT_EQ(message.AddData("copy", B_INT32_TYPE, data, size), B_OK);
        int32 copy = -1;
        ASSERT_EQ(message.FindInt32("copy", i, &copy), B_OK);
        ASSERT_EQ(copy, i);
    }
}

TEST(BMessage, NestedRecordsAreSnapshots) {
    BMessage inner(1), outer(2), found;
    ASSERT_EQ(inner.AddInt32("n", 1), B_OK);
    ASSERT_EQ(outer.AddMessage("m", &inner), B_OK);
    ASSERT_EQ(inner.ReplaceInt32("n", 2), B_OK);
    ASSERT_EQ(outer.AddMessage("m", &inner), B_OK);
    ASSERT_EQ(outer.AddMessage("self", &outer), B_OK);
    for (int round = 0; round < 2; round++) {
        int32 n = 0;
        ASSERT_EQ(outer.FindMessage("m", 0, &found), B_OK);
        EXPECT_EQ(found.FindInt32("n", &n), B_OK);
        EXPECT_EQ(n, 1);
        ASSERT_EQ(found.ReplaceInt32("n", 3), B_OK);  // in the copy that was found
    }
    ASSERT_EQ(outer.FindMessage("self", &found), B_OK);
    EXPECT_EQ(found.what, 2u);
    EXPECT_FALSE(found.HasName("self"));
    ASSERT_EQ(outer.RemoveData("m", 0), B_OK);
    ASSERT_EQ(outer.FindMessage("m", &outer), B_OK) << "into itself";
    EXPECT_EQ(outer, inner);
}

// Copies share nested records; threads that use one copy each must not notice (run under TSan).
TEST(BMessage, CopiesInSeveralThreads) {
    BMessage system;
    for (int32 i = 0; i < 50; i++)
        ASSERT_EQ(system.AddMessage("children", VectorMessage()), B_OK);
    auto shared = std::make_unique<const BMessage>(system);
    std::vector<std::thread> threads;
    for (int32 t = 0; t < 4; t++) {
        threads.emplace_back([t, copy = *shared]() mutable {
            BMessage child;
            for (int32 i = 0; i < 50; i++) {
                EXPECT_EQ(copy.FindMessage("children", i, &child), B_OK);
                EXPECT_EQ(child.ReplaceInt64("IDs", t), B_OK);
            }
            RecordBytes bytes;
            EXPECT_EQ(copy.Flatten(&bytes), B_OK);
            EXPECT_EQ(copy.RemoveName("children"), B_OK);
        });
    }
    shared.reset();
    system = BMessage();
    for (std::thread& thread : threads)
        thread.join();
}

TEST(BMessage, ReferencesToFiles) {
    BMessage message;
    const entry_ref file{0xFFFFFFFE, 0x0102030405060708, "file"};
    const entry_ref none;
    ASSERT_EQ(message.AddRef("refs", &file), B_OK);
    ASSERT_EQ(message.AddRef("refs", &none), B_OK);
    const entry_ref unstorable{int64{1} << 40, 1, "x"};
    EXPECT_EQ(message.AddRef("refs", &unstorable), B_BAD_VALUE);
    RecordBytes bytes;
    ASSERT_EQ(message.Flatten(&bytes, BMessage::ByteOrder::kBigEndian), B_OK);
    ASSERT_EQ(message.Unflatten(bytes.data(), bytes.size()), B_OK);
    entry_ref found;
    EXPECT_EQ(message.FindRef("refs", 1, &found), B_OK);
    EXPECT_EQ(found, none);
    EXPECT_EQ(message.FindRef("refs", &found), B_OK);
    EXPECT_EQ(found, file);
    ASSERT_EQ(message.AddData("short", B_REF_TYPE, "12345678901", 11, false), B_OK);
    EXPECT_EQ(message.FindRef("short", &found), B_BAD_DATA);
    EXPECT_EQ(found, none);
}

TEST(BMessage, EqualityLooksAtContentOnly) {
    const BMessage message = VectorMessage();
    const auto differs = [&](auto change) {
        BMessage other = message;
        change(other);
        return !(message == other) && !(other == message);
    };
    EXPECT_TRUE(differs([](BMessage& m) { m.what++; }));
    EXPECT_TRUE(differs([](BMessage& m) { (void)m.ReplaceBool("fixed", false); }));
    EXPECT_TRUE(differs([](BMessage& m) { (void)m.RemoveData("r", 2); }));
    EXPECT_TRUE(differs([](BMessage& m) {
        (void)m.RemoveName("meta");
        (void)m.AddMessage("meta", BMessage(FourCC("info")));
    }));
    // The order of the fields counts.
    EXPECT_TRUE(differs([](BMessage& m) {
        (void)m.RemoveName("class");
        (void)m.AddString("class", "Body");
    }));
    // Items that vary in size where others do not: resource compilers write all numbers so. And
    // records as objects and as bytes.
    BMessage plain, other;
    const int32 n = 5;
    RecordBytes bytes;
    ASSERT_EQ(message.Flatten(&bytes), B_OK);
    ASSERT_EQ(plain.AddInt32("n", n), B_OK);
    ASSERT_EQ(other.AddData("n", B_INT32_TYPE, &n, sizeof n, false), B_OK);
    ASSERT_EQ(plain.AddMessage("m", &message), B_OK);
    ASSERT_EQ(other.AddData("m", B_MESSAGE_TYPE, bytes.data(), bytes.size(), false), B_OK);
    EXPECT_EQ(plain.AddData("m", B_MESSAGE_TYPE, "junk", 4, false), B_NOT_A_MESSAGE);
    EXPECT_EQ(plain, other);
}

// Also what is damaged or has a type of its own.
TEST(BMessage, TextShowsEveryField) {
    BMessage message(FourCC("ARCV"));
    ASSERT_EQ(message.AddBool("fixed", true), B_OK);
    ASSERT_EQ(message.AddData("own", FourCC("Body"), "\x01\xab", 2), B_OK);
    ASSERT_EQ(message.AddString("quoted", "a \"b\"\n\x01"), B_OK);
    ASSERT_EQ(message.AddDouble("third", 1.0 / 3.0), B_OK);
    ASSERT_EQ(message.AddDouble("limit", std::numeric_limits<double>::infinity()), B_OK);
    ASSERT_EQ(message.AddData("damaged", B_INT32_TYPE, "\x01\x02\x03", 3), B_OK);
    ASSERT_EQ(message.AddData("bad", B_MESSAGE_TYPE, "junk", 4, false), B_OK);
    EXPECT_EQ(message.ToText(), R"(message 'ARCV' {
    bool "fixed" = true
    'Body' "own" = $"01ab"
    string "quoted" = "a \"b\"\n\x01"
    double "third" = 0.3333333333333333
    double "limit" = inf
    int32 "damaged" = $"010203"
    message "bad" = $"6a756e6b"
}
)");
}

}  // namespace
