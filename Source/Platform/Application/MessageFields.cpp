#include "Platform/Application/MessageFields.h"

#include <algorithm>
#include <cstring>
#include <functional>
#include <utility>

#include "Platform/Application/BMessage.h"

namespace {

constexpr std::size_t kFirstFields = 8;
constexpr std::size_t kFirstArena = 128;

// Destroying a record destroys its nested records. Chains of them can be thousands long, so the
// outermost destructor collects what the inner ones hold instead of letting them recurse.
void DestroyInTurn(std::vector<MessageFields::Record> records) {
    static thread_local std::vector<MessageFields::Record>* pending = nullptr;
    if (pending != nullptr) {
        std::move(records.begin(), records.end(), std::back_inserter(*pending));
        return;
    }
    pending = &records;
    while (!records.empty()) {
        MessageFields::Record last = std::move(records.back());
        records.pop_back();
        last.reset();
    }
    pending = nullptr;
}

// `move` takes bytes to the arena, and says where they are there.
template <typename Move>
void MoveParts(MessageFields::Field* field, Move move) {
    field->nameAt = move(field->nameAt, field->nameLength);
    if (field->list) {
        for (MessageFields::Place& place : field->list->places)
            place.at = move(place.at, place.size);
    } else {
        field->dataAt = move(field->dataAt, field->dataSize);
        field->capacity = field->isFixed ? field->dataSize : 0;
    }
}

}  // namespace

MessageFields::~MessageFields() {
    for (Field& field : fields_)
        if (field.HoldsRecords()) DestroyInTurn(std::move(field.list->records));
}

MessageFields& MessageFields::operator=(MessageFields other) noexcept {
    std::swap(fields_, other.fields_);
    std::swap(arena_, other.arena_);
    std::swap(source_, other.source_);
    std::swap(sourceBase_, other.sourceBase_);
    std::swap(wasted_, other.wasted_);
    return *this;
}

const MessageFields::Field* MessageFields::Find(std::string_view name) const {
    for (const Field& field : fields_)
        if (Name(field) == name) return &field;
    return nullptr;
}

MessageFields::Field* MessageFields::Find(std::string_view name) {
    return const_cast<Field*>(std::as_const(*this).Find(name));
}

std::string_view MessageFields::Name(const Field& field) const {
    return {reinterpret_cast<const char*>(BaseOf(field) + field.nameAt), field.nameLength};
}

MessageFields::Bytes MessageFields::FixedItems(const Field& field) const {
    return {BaseOf(field) + field.dataAt, field.dataSize};
}

MessageFields::Bytes MessageFields::Item(const Field& field, int32 index) const {
    const std::byte* base = BaseOf(field);
    const auto i = static_cast<std::size_t>(index);
    if (field.list) {
        const Place place = field.list->places[i];
        return {base + place.at, place.size};
    }
    const std::size_t size = field.ItemSize();
    return {base + field.dataAt + i * size, size};
}

MessageFields::Buffer MessageFields::SourceOf(const Field& field) const {
    return field.inSource ? source_ : nullptr;
}

MessageFields::Field& MessageFields::NewField(std::string_view name, type_code type, bool isFixed) {
    if (fields_.empty()) fields_.reserve(kFirstFields);
    if (arena_.empty()) arena_.reserve(kFirstArena);
    Field field;
    field.type = type;
    field.isFixed = isFixed;
    field.nameLength = static_cast<uint8>(name.size());
    field.nameAt = Take(name.size());
    if (!name.empty()) std::memcpy(arena_.data() + field.nameAt, name.data(), name.size());
    fields_.push_back(std::move(field));
    return fields_.back();
}

status_t MessageFields::Append(Field& field, const void* items, std::size_t itemSize, int32 count) {
    if (field.isFixed && field.count > 0 && field.ItemSize() != itemSize) return B_BAD_VALUE;
    const std::size_t size = itemSize * static_cast<std::size_t>(count);
    // Fixed-size items stay together, and may have to move.
    if (!HasRoom(size + (field.isFixed ? field.dataSize : 0))) return B_NO_MEMORY;
    const auto* bytes = static_cast<const std::byte*>(items);
    if (IsInArena(items)) {
        const std::vector<std::byte> copy(bytes, bytes + size);
        return Append(field, copy.data(), itemSize, count);
    }
    MoveToArena(field);
    if (field.isFixed) {
        const std::size_t oldSize = field.dataSize;
        GrowFixed(field, oldSize + size);
        std::memcpy(arena_.data() + field.dataAt + oldSize, bytes, size);
        field.count += count;
    } else {
        for (int32 i = 0; i < count; i++, bytes += itemSize) {
            const Place place{Take(itemSize), static_cast<uint32>(itemSize)};
            if (itemSize > 0) std::memcpy(arena_.data() + place.at, bytes, itemSize);
            AppendVariable(field, place);
        }
    }
    CompactIfWasteful();
    return B_OK;
}

void MessageFields::AppendRecord(Field& field, Record record) {
    field.list.Make().records.push_back(std::move(record));
    field.count++;
}

status_t MessageFields::ReplaceItem(Field& field, int32 index, const void* data, std::size_t size) {
    if (field.isFixed && field.ItemSize() != size) return B_BAD_VALUE;
    if (!HasRoom(size + field.dataSize)) return B_NO_MEMORY;
    if (IsInArena(data)) {
        const auto* bytes = static_cast<const std::byte*>(data);
        const std::vector<std::byte> copy(bytes, bytes + size);
        return ReplaceItem(field, index, copy.data(), size);
    }
    MoveToArena(field);
    const auto i = static_cast<std::size_t>(index);
    Place place = field.list ? field.list->places[i]
                             : Place{static_cast<uint32>(field.dataAt + i * field.ItemSize()),
                                     static_cast<uint32>(field.ItemSize())};
    if (size > place.size) {
        Waste(place.size);
        place.at = Take(size);
    } else {
        Waste(place.size - size);
    }
    place.size = static_cast<uint32>(size);
    std::memcpy(arena_.data() + place.at, data, size);
    if (field.list) {
        field.dataSize += place.size - field.list->places[i].size;
        field.list->places[i] = place;
    } else if (!field.isFixed) {
        field.dataAt = place.at;
        field.dataSize = place.size;
    }
    CompactIfWasteful();
    return B_OK;
}

void MessageFields::RemoveItem(Field& field, int32 index) {
    if (field.count == 1) {
        RemoveField(field);
        return;
    }
    if (field.HoldsRecords()) {
        field.list->records.erase(field.list->records.begin() + index);
        field.count--;
        return;
    }
    MoveToArena(field);
    const auto i = static_cast<std::size_t>(index);
    if (field.list) {
        const uint32 size = field.list->places[i].size;
        Waste(size);
        field.dataSize -= size;
        field.list->places.erase(field.list->places.begin() + index);
    } else {
        const std::size_t size = field.ItemSize();
        std::byte* item = arena_.data() + field.dataAt + i * size;
        std::memmove(item, item + size, field.dataSize - (i + 1) * size);
        field.dataSize -= static_cast<uint32>(size);
    }
    field.count--;
    CompactIfWasteful();
}

void MessageFields::RemoveField(Field& field) {
    if (field.HoldsRecords()) DestroyInTurn(std::move(field.list->records));
    if (!field.inSource) {
        Waste(field.nameLength + std::size_t{std::max(field.capacity, field.dataSize)});
    }
    fields_.erase(fields_.begin() + (&field - fields_.data()));
    CompactIfWasteful();
}

void MessageFields::Clear() {
    *this = MessageFields();
}

void MessageFields::Shrink() {
    fields_.shrink_to_fit();
    arena_.shrink_to_fit();
}

void MessageFields::SetSource(Buffer buffer, const std::byte* base) {
    source_ = std::move(buffer);
    sourceBase_ = base;
}

MessageFields::Field& MessageFields::AddView(type_code type, bool isFixed, int32 count, Place name,
                                             Place data, std::vector<Place> places) {
    if (fields_.empty()) fields_.reserve(kFirstFields);
    Field field;
    field.type = type;
    field.isFixed = isFixed;
    field.inSource = true;
    field.count = count;
    field.nameAt = name.at;
    field.nameLength = static_cast<uint8>(name.size);
    field.dataAt = data.at;
    field.dataSize = data.size;
    if (!places.empty()) field.list.Make().places = std::move(places);
    fields_.push_back(std::move(field));
    return fields_.back();
}

const std::byte* MessageFields::BaseOf(const Field& field) const {
    return field.inSource ? sourceBase_ : arena_.data();
}

bool MessageFields::IsInArena(const void* data) const {
    const auto* bytes = static_cast<const std::byte*>(data);
    const std::less<> before;
    return !arena_.empty() && !before(bytes, arena_.data()) &&
           before(bytes, arena_.data() + arena_.size());
}

bool MessageFields::HasRoom(std::size_t more) const {
    // Growing a field may double it.
    return more < kMaxBytes / 2 && arena_.size() < kMaxBytes - 2 * more;
}

uint32 MessageFields::Take(std::size_t size) {
    const std::size_t at = arena_.size();
    arena_.resize(at + size);
    return static_cast<uint32>(at);
}

void MessageFields::GrowFixed(Field& field, std::size_t size) {
    if (size > field.capacity) {
        if (field.count == 0) {
            field.dataAt = Take(size);
            field.capacity = static_cast<uint32>(size);
        } else if (field.dataAt + std::size_t{field.capacity} == arena_.size()) {
            Take(size - field.capacity);
            field.capacity = static_cast<uint32>(size);
        } else {
            const std::size_t capacity = std::max(size, 2 * std::size_t{field.capacity});
            const uint32 at = Take(capacity);
            std::memcpy(arena_.data() + at, arena_.data() + field.dataAt, field.dataSize);
            Waste(field.capacity);
            field.dataAt = at;
            field.capacity = static_cast<uint32>(capacity);
        }
    }
    field.dataSize = static_cast<uint32>(size);
}

void MessageFields::AppendVariable(Field& field, Place place) {
    if (field.count == 0) {
        field.dataAt = place.at;
    } else {
        ItemList& list = field.list.Make();
        if (list.places.empty()) list.places.push_back({field.dataAt, field.dataSize});
        list.places.push_back(place);
    }
    field.dataSize += place.size;
    field.count++;
}

void MessageFields::MoveToArena(Field& field) {
    if (!field.inSource) return;
    MoveParts(&field, [this](uint32 from, std::size_t size) {
        const uint32 at = Take(size);
        std::copy_n(sourceBase_ + from, size, arena_.begin() + at);
        return at;
    });
    field.inSource = false;
}

void MessageFields::CompactIfWasteful() {
    constexpr std::size_t kTolerated = 1024;
    if (wasted_ < kTolerated || wasted_ < arena_.size() / 2) return;
    const std::vector<std::byte> old = std::exchange(arena_, {});
    wasted_ = 0;
    for (Field& field : fields_)
        if (!field.inSource)
            MoveParts(&field, [&](uint32 from, std::size_t size) {
                const uint32 at = Take(size);
                std::copy_n(old.begin() + from, size, arena_.begin() + at);
                return at;
            });
}
