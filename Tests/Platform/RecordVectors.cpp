#include "Tests/Platform/RecordVectors.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

RecordBytes ReadVector(const std::string& name) {
    std::ifstream file(std::string(ORVEK_TEST_DATA_DIR "/") + name, std::ios::binary);
    EXPECT_TRUE(file) << name;
    RecordBytes bytes;
    for (std::istreambuf_iterator<char> next(file), end; next != end; ++next)
        bytes.push_back(static_cast<std::byte>(*next));
    return bytes;
}

BMessage VectorMessage() {
    BMessage message(FourCC("ARCV"));
    const int64 ids[] = {1, -2, 0x0123456789ABCDEF};
    BMessage meta(FourCC("info"));
    EXPECT_EQ(message.AddString("class", "Body"), B_OK);
    EXPECT_EQ(message.AddInt64s("IDs", ids, 3), B_OK);
    for (const double r : {0.0, -1.5, 6.02214076e23})
        EXPECT_EQ(message.AddDouble("r", r), B_OK);
    EXPECT_EQ(message.AddBool("fixed", true), B_OK);
    EXPECT_EQ(message.AddColor("color", {255, 128, 0, 255}), B_OK);
    EXPECT_EQ(message.AddPoint("pos", {1.5f, -2.25f}), B_OK);
    EXPECT_EQ(meta.AddString("name", "Sol"), B_OK);
    EXPECT_EQ(message.AddMessage("meta", &meta), B_OK);
    return message;
}

RecordBytes WithUInt32(RecordBytes bytes, std::size_t at, uint32 number) {
    for (std::size_t i = 0; i < 4; i++)
        bytes.at(at + i) = static_cast<std::byte>(number >> (8 * i));
    return bytes;
}

RecordBytes WithByte(RecordBytes bytes, std::size_t at, uint8 byte) {
    bytes.at(at) = static_cast<std::byte>(byte);
    return bytes;
}

RecordBytes WithSize(RecordBytes bytes, int32 size) {
    bytes = WithUInt32(std::move(bytes), 8, static_cast<uint32>(size));
    auto sum = std::to_integer<uint32>(bytes.at(16));
    for (std::size_t at = 8; at < 16; at++)
        sum += std::to_integer<uint32>(bytes[at]) << (8 * (3 - at % 4));
    return WithUInt32(std::move(bytes), 4, sum);
}

RecordBytes RecordOf(std::string_view fields) {
    RecordBytes bytes = ReadVector("empty-le.bin");
    const auto* first = reinterpret_cast<const std::byte*>(fields.data());
    bytes.insert(bytes.end() - 1, first, first + fields.size());
    const auto size = static_cast<int32>(bytes.size());
    return WithSize(std::move(bytes), size);
}

std::shared_ptr<const RecordBytes> Shared(RecordBytes bytes) {
    return std::make_shared<const RecordBytes>(std::move(bytes));
}
