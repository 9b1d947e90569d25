#include "Platform/Application/MessageReader.h"

#include <string>
#include <unordered_map>
#include <utility>

#include "Platform/Application/MessageFormat.h"
#include "Platform/Support/ByteOrder.h"

namespace {

using Bytes = MessageFields::Bytes;
using Field = MessageFields::Field;
using Place = MessageFields::Place;

struct Form {
    bool isTabular = false;
    bool isSwapped = false;  // against this machine
};

status_t Identify(Bytes bytes, Form* form) {
    if (bytes.size() < sizeof(uint32)) return B_NOT_A_MESSAGE;
    for (const bool swapped : {false, true}) {
        const auto magic = LoadNumber<uint32>(bytes.data(), swapped);
        if (magic == StoredRecord::kMagic) {
            *form = {false, swapped};
            return B_OK;
        }
    }
    if (LoadNumber<uint32>(bytes.data(), kHostIsBigEndian) != TabularRecord::kMagic)
        return B_NOT_A_MESSAGE;
    *form = {true, kHostIsBigEndian};
    return B_OK;
}

// A field as it stands in the record; places count from the record's start.
struct StoredField {
    type_code type = 0;
    bool isFixed = false;
    int32 count = 0;
    Place name;
    Place data;                 // all items, or the only one
    std::vector<Place> places;  // several variable-size items
};

// Reads the numbers of one record, and gathers its fields.
class Parser {
public:
    Parser(Bytes record, bool isSwapped, MessageFields& fields)
        : record_(record), isSwapped_(isSwapped), fields_(fields) {}

    status_t ReadStored(BMessage::Checksum checksum, uint32* what);
    status_t ReadTabular(uint32* what);

private:
    template <typename T>
    [[nodiscard]] T Number(std::size_t at) const {
        return LoadNumber<T>(record_.data() + at, isSwapped_);
    }
    [[nodiscard]] std::string_view Text(Place place) const {
        return {reinterpret_cast<const char*>(record_.data() + place.at), place.size};
    }
    // The next `size` bytes, if they are there.
    [[nodiscard]] bool Take(std::size_t size, std::size_t* at);
    [[nodiscard]] bool TakeSize(bool isMini, uint32* size);

    status_t ReadStoredHeader(BMessage::Checksum checksum, uint32* what);
    status_t ReadStoredField(uint8 flags, StoredField* field);
    // Checks count and data, and finds the items.
    [[nodiscard]] bool ResolveItems(StoredField* field, bool isPadded) const;
    [[nodiscard]] bool ResolveVariableItems(StoredField* field, bool isPadded) const;

    status_t Add(StoredField field);
    [[nodiscard]] Field* Known(std::string_view name);
    status_t CopyItems(Field& to, const StoredField& from);

    Bytes record_;
    bool isSwapped_;
    MessageFields& fields_;
    std::size_t at_ = 0;
    std::unordered_map<std::string, std::size_t> byName_;
};

bool Parser::Take(std::size_t size, std::size_t* at) {
    if (size > record_.size() - at_) return false;
    *at = at_;
    at_ += size;
    return true;
}

bool Parser::TakeSize(bool isMini, uint32* size) {
    std::size_t at = 0;
    if (!Take(isMini ? 1 : 4, &at)) return false;
    *size = isMini ? Number<uint8>(at) : Number<uint32>(at);
    return *size >= 1 && *size <= INT32_MAX;
}

status_t Parser::ReadStored(BMessage::Checksum checksum, uint32* what) {
    if (const status_t status = ReadStoredHeader(checksum, what); status != B_OK) return status;
    for (;;) {
        std::size_t at = 0;
        if (!Take(1, &at)) return B_BAD_DATA;
        const auto flags = Number<uint8>(at);
        if ((flags & StoredRecord::kFieldValid) == 0) break;
        StoredField field;
        status_t status = ReadStoredField(flags, &field);
        if (status == B_OK) status = Add(std::move(field));
        if (status != B_OK) return status;
    }
    return at_ == record_.size() ? B_OK : B_BAD_DATA;
}

status_t Parser::ReadStoredHeader(BMessage::Checksum checksum, uint32* what) {
    using namespace StoredRecord;
    const auto flags = Number<uint8>(kFlagsOffset);
    std::size_t size = kHeaderSize;
    if ((flags & kTargetIncluded) != 0) size += kTargetSize;
    if ((flags & kReplyIncluded) != 0) size += kReplySize;
    std::size_t at = 0;
    if (!Take(size, &at)) return B_BAD_DATA;
    if (checksum == BMessage::Checksum::kVerify &&
        Number<uint32>(kChecksumOffset) !=
            StoredRecord::Checksum(record_.subspan(kSizeOffset, size - kSizeOffset)))
        return B_NOT_A_MESSAGE;
    *what = Number<uint32>(kWhatOffset);
    return B_OK;
}

status_t Parser::ReadStoredField(uint8 flags, StoredField* field) {
    using namespace StoredRecord;
    const bool isMini = (flags & kMiniData) != 0;
    std::size_t at = 0;
    if (!Take(sizeof(type_code), &at)) return B_BAD_DATA;
    field->type = Number<uint32>(at);
    field->isFixed = (flags & kFixedSize) != 0;
    uint32 count = 1;
    if ((flags & kSingleItem) == 0 && !TakeSize(isMini, &count)) return B_BAD_DATA;
    field->count = static_cast<int32>(count);
    if (!TakeSize(isMini, &field->data.size)) return B_BAD_DATA;
    if (!Take(1, &at)) return B_BAD_DATA;
    field->name.size = Number<uint8>(at);
    if (!Take(field->name.size, &at)) return B_BAD_DATA;
    field->name.at = static_cast<uint32>(at);
    if (!Take(field->data.size, &at)) return B_BAD_DATA;
    field->data.at = static_cast<uint32>(at);
    return ResolveItems(field, true) ? B_OK : B_BAD_DATA;
}

status_t Parser::ReadTabular(uint32* what) {
    using namespace TabularRecord;
    const auto flags = Number<uint32>(kFlagsOffset);
    if ((flags & kHeaderValid) == 0 || (flags & kDataInSharedArea) != 0) return B_BAD_DATA;
    *what = Number<uint32>(kWhatOffset);
    const auto fieldCount = Number<uint32>(kFieldCountOffset);
    const std::size_t block = kHeaderSize + std::size_t{fieldCount} * kFieldHeaderSize;
    // Fields do not overlap: together they are no larger than the block.
    uint64 unclaimed = record_.size() - block;
    for (uint32 i = 0; i < fieldCount; i++) {
        const std::size_t header = kHeaderSize + std::size_t{i} * kFieldHeaderSize;
        const auto fieldFlags = Number<uint16>(header);
        const uint32 nameSize = Number<uint16>(header + kFieldNameLengthOffset);
        const auto count = Number<uint32>(header + kFieldItemCountOffset);
        const auto dataSize = Number<uint32>(header + kFieldDataSizeOffset);
        const auto position = Number<uint32>(header + kFieldPositionOffset);
        const uint64 size = uint64{nameSize} + dataSize;
        if ((fieldFlags & kFieldValid) == 0 || nameSize < 1 ||
            nameSize > MessageFields::kMaxNameLength + 1 || count < 1 || count > INT32_MAX ||
            size > unclaimed || uint64{position} + size > record_.size() - block)
            return B_BAD_DATA;
        unclaimed -= size;
        StoredField field;
        field.type = Number<uint32>(header + kFieldTypeOffset);
        field.isFixed = (fieldFlags & kFixedSize) != 0;
        field.count = static_cast<int32>(count);
        field.name = {static_cast<uint32>(block + position), nameSize - 1};
        field.data = {field.name.at + nameSize, dataSize};
        if (Number<uint8>(field.data.at - 1) != 0 || !ResolveItems(&field, false))
            return B_BAD_DATA;
        if (const status_t status = Add(std::move(field)); status != B_OK) return status;
    }
    return B_OK;
}

bool Parser::ResolveItems(StoredField* field, bool isPadded) const {
    if (!field->isFixed) return ResolveVariableItems(field, isPadded);
    const auto count = static_cast<uint32>(field->count);
    return field->data.size >= count && field->data.size % count == 0;
}

bool Parser::ResolveVariableItems(StoredField* field, bool isPadded) const {
    constexpr std::size_t kSizeWord = 4;
    const auto count = static_cast<std::size_t>(field->count);
    std::size_t left = field->data.size;
    // The padding of the last item may be missing.
    if (count > (isPadded ? (left + 4) / 8 : left / kSizeWord)) return false;
    if (count > 1) field->places.reserve(count);
    std::size_t at = field->data.at;
    uint64 itemBytes = 0;
    Place place;
    for (std::size_t i = 0; i < count; i++) {
        if (left < kSizeWord) return false;
        place = {static_cast<uint32>(at + kSizeWord), Number<uint32>(at)};
        uint64 step = kSizeWord + uint64{place.size};
        if (isPadded && !(i + 1 == count && step == left))
            step = StoredRecord::PaddedItemSize(place.size);
        if (step > left) return false;
        at += step;
        left -= step;
        itemBytes += place.size;
        if (count > 1) field->places.push_back(place);
    }
    field->data = {place.at, static_cast<uint32>(itemBytes)};
    return left == 0;
}

Field* Parser::Known(std::string_view name) {
    // Most records have few fields, but a bad one may have millions.
    constexpr std::size_t kFewFields = 32;
    const std::vector<Field>& all = fields_.All();
    if (all.size() < kFewFields) return fields_.Find(name);
    if (byName_.empty())
        for (std::size_t i = 0; i < all.size(); i++)
            byName_.emplace(fields_.Name(all[i]), i);
    const auto found = byName_.find(std::string(name));
    return found == byName_.end() ? nullptr : &fields_.At(found->second);
}

status_t Parser::Add(StoredField field) {
    const std::string_view name = Text(field.name);
    if (Field* known = Known(name); known != nullptr) {
        if (known->type != field.type || known->isFixed != field.isFixed) return B_BAD_TYPE;
        return CopyItems(*known, field);
    }
    status_t status = B_OK;
    if (isSwapped_ && HasByteOrder(field.type)) {
        status = CopyItems(fields_.NewField(name, field.type, field.isFixed), field);
    } else {
        fields_.AddView(field.type, field.isFixed, field.count, field.name, field.data,
                        std::move(field.places));
    }
    if (!byName_.empty()) byName_.emplace(name, fields_.All().size() - 1);
    return status;
}

status_t Parser::CopyItems(Field& to, const StoredField& from) {
    const auto copy = [&](Place place, int32 count) {
        const auto bytes = record_.subspan(place.at, place.size);
        std::vector<std::byte> items(bytes.begin(), bytes.end());
        const std::size_t itemSize = items.size() / static_cast<std::size_t>(count);
        if (isSwapped_)
            for (int32 i = 0; i < count; i++)
                SwapItem(from.type, items.data() + static_cast<std::size_t>(i) * itemSize,
                         itemSize);
        const status_t status = fields_.Append(to, items.data(), itemSize, count);
        return status == B_BAD_VALUE ? B_BAD_DATA : status;
    };
    if (from.places.empty()) return copy(from.data, from.count);
    for (const Place& place : from.places)
        if (const status_t status = copy(place, 1); status != B_OK) return status;
    return B_OK;
}

}  // namespace

status_t MessageReader::Measure(Bytes bytes, std::size_t* length) {
    Form form;
    if (const status_t status = Identify(bytes, &form); status != B_OK) return status;
    uint64 size = 0;
    std::size_t minSize = 0;
    if (form.isTabular) {
        using namespace TabularRecord;
        minSize = kHeaderSize;
        if (bytes.size() < minSize) return B_BAD_DATA;
        size = kHeaderSize +
               uint64{LoadNumber<uint32>(bytes.data() + kFieldCountOffset, form.isSwapped)} *
                   kFieldHeaderSize +
               LoadNumber<uint32>(bytes.data() + kDataSizeOffset, form.isSwapped);
    } else {
        using namespace StoredRecord;
        minSize = kMinSize;
        if (bytes.size() < minSize) return B_BAD_DATA;
        size = LoadNumber<uint32>(bytes.data() + kSizeOffset, form.isSwapped);
    }
    if (size < minSize || size > bytes.size() || size > INT32_MAX) return B_BAD_DATA;
    *length = static_cast<std::size_t>(size);
    return B_OK;
}

status_t MessageReader::Read(Buffer buffer, Bytes bytes, int32 nesting, BMessage::Checksum checksum,
                             BMessage* out) {
    *out = BMessage();
    std::size_t length = 0;
    Form form;
    if (const status_t status = Measure(bytes, &length); status != B_OK) return status;
    if (const status_t status = Identify(bytes, &form); status != B_OK) return status;
    out->nesting_ = nesting;
    out->checksum_ = checksum;
    out->fields_.SetSource(std::move(buffer), bytes.data());
    Parser parser(bytes.first(length), form.isSwapped, out->fields_);
    const status_t status =
        form.isTabular ? parser.ReadTabular(&out->what) : parser.ReadStored(checksum, &out->what);
    if (status != B_OK) *out = BMessage();
    return status;
}

status_t MessageReader::ReadCopy(Bytes bytes, int32 nesting, BMessage::Checksum checksum,
                                 BMessage* out) {
    std::size_t length = 0;
    if (const status_t status = Measure(bytes, &length); status != B_OK) {
        *out = BMessage();
        return status;
    }
    auto copy = std::make_shared<const std::vector<std::byte>>(
        bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
    const Bytes record(*copy);
    return Read(std::move(copy), record, nesting, checksum, out);
}
