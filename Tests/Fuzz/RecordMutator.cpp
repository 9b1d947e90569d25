// How the fuzzer changes inputs that are, or hold, stored records. Bytes changed at random seldom
// pass a record's checks; so every second time it is a field that is changed, and lengths and
// checksum are put right afterwards.
#include <algorithm>
#include <cstring>
#include <random>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/MessageFormat.h"
#include "Tests/Fuzz/FuzzKit.h"

// The fuzzer's own change of bytes, in their place.
extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);
extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size,
                                               std::size_t maxSize, unsigned int seed);

namespace {

using Random = std::minstd_rand;

constexpr std::uint8_t kMagic[] = {'1', 'B', 'O', 'F'};

// A number below `limit`.
template <typename Number>
Number Below(Number limit, Random* random) {
    return static_cast<Number>((*random)() % static_cast<std::uint64_t>(limit));
}

void Change(BMessage* record, Random* random);

void ChangeItem(BMessage* record, const char* name, type_code type, int32 item, Random* random) {
    constexpr std::size_t kRoom = 64;
    const void* data = nullptr;
    std::size_t size = 0;
    if (record->FindData(name, type, item, &data, &size) != B_OK) return;
    std::vector<std::uint8_t> bytes(size + kRoom);
    std::memcpy(bytes.data(), data, size);
    size_t changed = LLVMFuzzerMutate(bytes.data(), size, bytes.size());
    // Items of one size keep it.
    if (record->ReplaceData(name, type, item, bytes.data(), changed) != B_OK)
        record->ReplaceData(name, type, item, bytes.data(), size);
}

void ChangeNested(BMessage* record, const char* name, int32 item, Random* random) {
    BMessage nested;
    if (record->FindMessage(name, item, &nested) != B_OK) return;
    Change(&nested, random);
    record->RemoveData(name, item);
    record->AddMessage(name, std::move(nested));
}

void Repeat(BMessage* record, const char* name, type_code type, int32 item) {
    const void* data = nullptr;
    std::size_t size = 0;
    BMessage nested;
    if (record->FindMessage(name, item, &nested) == B_OK) {
        record->AddMessage(name, std::move(nested));
    } else if (record->FindData(name, type, item, &data, &size) == B_OK) {
        const auto* const from = static_cast<const std::byte*>(data);
        const std::vector<std::byte> copy(from, from + size);
        record->AddData(name, type, copy.data(), copy.size());
    }
}

// One field of the record, or of one that is nested in it.
void Change(BMessage* record, Random* random) {
    const int32 fields = record->CountNames();
    if (fields == 0) return;
    std::string name;
    type_code type = 0;
    int32 count = 0;
    record->GetInfo(B_ANY_TYPE, Below(fields, random), &name, &type, &count);
    const int32 item = Below(count, random);
    constexpr unsigned kWays = 12;
    switch (Below(kWays, random)) {
        case 0:
            record->RemoveName(name.c_str());
            break;
        case 1:
            record->RemoveData(name.c_str(), item);
            break;
        case 2:
            Repeat(record, name.c_str(), type, item);
            break;
        default:
            if (type == B_MESSAGE_TYPE)
                ChangeNested(record, name.c_str(), item, random);
            else
                ChangeItem(record, name.c_str(), type, item, random);
            break;
    }
}

void PutNumber(std::uint8_t* at, std::uint32_t number) {
    std::memcpy(at, &number, sizeof number);
}

// The record's size in its header and, in a preference set, in front of it; then the checksum.
void MendHeader(std::uint8_t* data, std::uint8_t* record, std::uint8_t* end) {
    if (end - record < static_cast<std::ptrdiff_t>(StoredRecord::kMinSize)) return;
    const auto size = static_cast<std::uint32_t>(end - record);
    if (record - data == sizeof size) PutNumber(data, size);
    PutNumber(record + StoredRecord::kSizeOffset, size);
    const fuzz::Bytes covered = fuzz::BytesOf(
        record + StoredRecord::kSizeOffset, StoredRecord::kHeaderSize - StoredRecord::kSizeOffset);
    PutNumber(record + StoredRecord::kChecksumOffset, StoredRecord::Checksum(covered));
}

}  // namespace

std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize,
                                    unsigned int seed) {
    Random random(seed + 1);
    std::uint8_t* const record =
        std::search(data, data + size, std::begin(kMagic), std::end(kMagic));
    const auto before = static_cast<std::size_t>(record - data);
    BMessage message;
    std::vector<std::byte> bytes;
    if (Below(2, &random) == 0 && message.Unflatten(record, size - before) == B_OK) {
        Change(&message, &random);
        if (message.Flatten(&bytes) == B_OK && before + bytes.size() <= maxSize) {
            std::memcpy(record, bytes.data(), bytes.size());
            size = before + bytes.size();
        }
    } else {
        size = LLVMFuzzerMutate(data, size, maxSize);
    }
    if (before + sizeof kMagic <= size && std::equal(std::begin(kMagic), std::end(kMagic), record))
        MendHeader(data, record, data + size);
    return size;
}
