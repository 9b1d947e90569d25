// The fields of one record: their names and items, kept so that a small record costs little more
// than its bytes. A BMessage owns exactly one; used by one thread at a time, and read by any number
// of threads while nobody changes it.
//
// A field's name and items lie either in the source, a shared buffer that a stored record was read
// from (the field is then only a view into it), or in the arena, a buffer of this record's own.
// Changing a field first moves it into the arena. Numbers always are in this machine's byte order.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "Platform/Support/Errors.h"
#include "Platform/Support/SupportDefs.h"
#include "Platform/Support/TypeConstants.h"

class BMessage;

class MessageFields {
public:
    using Bytes = std::span<const std::byte>;
    using Buffer = std::shared_ptr<const std::vector<std::byte>>;
    using Record = std::shared_ptr<const BMessage>;

    struct Place {
        uint32 at = 0;
        uint32 size = 0;
    };

    // What most fields do without: the places of several items of varying size, or nested records.
    struct ItemList {
        std::vector<Place> places;
        std::vector<Record> records;
    };

    // An item list, or none, that is copied with its field.
    class OwnedItemList {
    public:
        OwnedItemList() = default;
        OwnedItemList(const OwnedItemList& other)
            : list_(other.list_ ? std::make_unique<ItemList>(*other.list_) : nullptr) {}
        OwnedItemList(OwnedItemList&&) noexcept = default;
        OwnedItemList& operator=(OwnedItemList other) noexcept {
            list_ = std::move(other.list_);
            return *this;
        }
        ItemList& Make() {
            if (!list_) list_ = std::make_unique<ItemList>();
            return *list_;
        }
        explicit operator bool() const { return list_ != nullptr; }
        ItemList* operator->() const { return list_.get(); }

    private:
        std::unique_ptr<ItemList> list_;
    };

    struct Field {
        type_code type = 0;
        int32 count = 0;
        uint32 nameAt = 0;
        uint32 dataAt = 0;
        uint32 dataSize = 0;  // of all items together
        uint32 capacity = 0;  // bytes of the arena that fixed-size items may grow into
        uint8 nameLength = 0;
        bool isFixed = false;
        bool inSource = false;
        OwnedItemList list;

        [[nodiscard]] bool HoldsRecords() const { return list && !list->records.empty(); }
        // Fixed-size fields only.
        [[nodiscard]] std::size_t ItemSize() const {
            return dataSize / static_cast<std::size_t>(count);
        }
    };

    static constexpr std::size_t kMaxNameLength = 255;
    static constexpr std::size_t kMaxBytes = INT32_MAX;

    [[nodiscard]] const std::vector<Field>& All() const { return fields_; }
    [[nodiscard]] const Field* Find(std::string_view name) const;
    [[nodiscard]] Field* Find(std::string_view name);
    [[nodiscard]] Field& At(std::size_t index) { return fields_[index]; }
    [[nodiscard]] std::string_view Name(const Field& field) const;
    // The items of a fixed-size field, back to back.
    [[nodiscard]] Bytes FixedItems(const Field& field) const;
    // The field must not hold records, the index be in range.
    [[nodiscard]] Bytes Item(const Field& field, int32 index) const;
    // The source if the field is a view into it, else null.
    [[nodiscard]] Buffer SourceOf(const Field& field) const;

    // --- Building ---

    // A field without items; at least one must follow. The name must be new and not too long. Field
    // references are valid until the next field is made or removed.
    Field& NewField(std::string_view name, type_code type, bool isFixed);
    // Appends `count` items of `itemSize` bytes that lie back to back. B_BAD_VALUE: the field has
    // fixed-size items of another size; B_NO_MEMORY: the record would pass kMaxBytes.
    [[nodiscard]] status_t Append(Field& field, const void* items, std::size_t itemSize,
                                  int32 count);
    // The field must be empty or hold records.
    void AppendRecord(Field& field, Record record);
    [[nodiscard]] status_t ReplaceItem(Field& field, int32 index, const void* data,
                                       std::size_t size);
    void RemoveItem(Field& field, int32 index);
    void RemoveField(Field& field);
    void Clear();
    // Gives back memory that was taken in advance.
    void Shrink();

    // --- Reading a stored record ---

    // Where the positions of views count from. No view may exist.
    void SetSource(Buffer buffer, const std::byte* base);
    // `places`: the items of a field of several variable-size items, else empty. `data.size` counts
    // the bytes of all items; `data.at` is where a single one, or the first fixed-size one, lies.
    Field& AddView(type_code type, bool isFixed, int32 count, Place name, Place data,
                   std::vector<Place> places);

    // Destroys nested records one after the other, not one within the other.
    ~MessageFields();
    MessageFields() = default;
    MessageFields(const MessageFields&) = default;
    MessageFields(MessageFields&&) noexcept = default;
    MessageFields& operator=(MessageFields other) noexcept;

private:
    [[nodiscard]] const std::byte* BaseOf(const Field& field) const;
    [[nodiscard]] bool IsInArena(const void* data) const;
    [[nodiscard]] bool HasRoom(std::size_t more) const;
    uint32 Take(std::size_t size);
    void GrowFixed(Field& field, std::size_t size);
    void AppendVariable(Field& field, Place place);
    void MoveToArena(Field& field);
    void Waste(std::size_t size) { wasted_ += size; }
    void CompactIfWasteful();

    std::vector<Field> fields_;
    std::vector<std::byte> arena_;
    Buffer source_;
    const std::byte* sourceBase_ = nullptr;
    std::size_t wasted_ = 0;  // bytes of the arena that no field uses any more
};
