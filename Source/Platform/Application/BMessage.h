// A record of named, typed, repeatable fields: what travels between loopers and what files hold.
// A plain value, used by one thread at a time; copies share nothing that can change. Nested records
// are snapshots: they are never changed after they were added, so a copy does not copy them.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Application/MessageFields.h"
#include "Platform/Support/Errors.h"
#include "Platform/Support/GraphicsDefs.h"
#include "Platform/Support/SupportDefs.h"
#include "Platform/Support/TypeConstants.h"

class BMessenger;
struct entry_ref;

class BMessage {
public:
    // Four-character code of the record; 0 has no special meaning.
    uint32 what = 0;

    BMessage();
    explicit BMessage(uint32 code);
    BMessage(const BMessage&);
    BMessage(BMessage&&) noexcept;
    BMessage& operator=(const BMessage&);
    BMessage& operator=(BMessage&&) noexcept;
    ~BMessage();

    // Add an item at the end of the field, making the field when there is none.
    // B_BAD_TYPE: the name holds another type; B_BAD_VALUE: null, empty or of the wrong size;
    // B_NAME_TOO_LONG: more than 255 bytes.
    status_t AddBool(const char* name, bool value);
    status_t AddInt16(const char* name, int16 value);
    status_t AddInt32(const char* name, int32 value);
    status_t AddInt64(const char* name, int64 value);
    status_t AddFloat(const char* name, float value);
    status_t AddDouble(const char* name, double value);
    status_t AddPoint(const char* name, BPoint value);
    status_t AddRect(const char* name, BRect value);
    status_t AddColor(const char* name, rgb_color value);  // as B_RGB_COLOR_TYPE, fixed size
    status_t AddString(const char* name, std::string_view value);
    status_t AddPointer(const char* name, const void* value);
    status_t AddMessage(const char* name, const BMessage* value);
    status_t AddMessage(const char* name, BMessage&& value);  // takes it over, even on failure
    status_t AddRef(const char* name, const entry_ref* value);
    status_t AddMessenger(const char* name, const BMessenger& value);
    // Many items of one fixed-size type in one go.
    status_t AddDoubles(const char* name, const double* values, int32 count);
    status_t AddInt64s(const char* name, const int64* values, int32 count);
    status_t AddData(const char* name, type_code type, const void* data, std::size_t size,
                     bool isFixedSize = true, int32 countHint = 1);

    // Read an item. Checked in this order: B_NAME_NOT_FOUND, B_BAD_TYPE, B_BAD_INDEX, B_BAD_DATA
    // (an item too short for its type). On failure the out value is overwritten with zero, false,
    // empty or the invalid rectangle: test the status, presetting a default does not work.
    status_t FindBool(const char* name, bool* out) const { return FindBool(name, 0, out); }
    status_t FindBool(const char* name, int32 index, bool* out) const;
    status_t FindInt8(const char* name, int8* out) const { return FindInt8(name, 0, out); }
    status_t FindInt8(const char* name, int32 index, int8* out) const;
    status_t FindInt16(const char* name, int16* out) const { return FindInt16(name, 0, out); }
    status_t FindInt16(const char* name, int32 index, int16* out) const;
    status_t FindInt32(const char* name, int32* out) const { return FindInt32(name, 0, out); }
    status_t FindInt32(const char* name, int32 index, int32* out) const;
    status_t FindInt64(const char* name, int64* out) const { return FindInt64(name, 0, out); }
    status_t FindInt64(const char* name, int32 index, int64* out) const;
    status_t FindFloat(const char* name, float* out) const { return FindFloat(name, 0, out); }
    status_t FindFloat(const char* name, int32 index, float* out) const;
    status_t FindDouble(const char* name, double* out) const { return FindDouble(name, 0, out); }
    status_t FindDouble(const char* name, int32 index, double* out) const;
    status_t FindPoint(const char* name, BPoint* out) const { return FindPoint(name, 0, out); }
    status_t FindPoint(const char* name, int32 index, BPoint* out) const;
    status_t FindRect(const char* name, BRect* out) const { return FindRect(name, 0, out); }
    status_t FindRect(const char* name, int32 index, BRect* out) const;
    // Accepts both colour codes, RGBC and RGBB.
    status_t FindColor(const char* name, rgb_color* out) const { return FindColor(name, 0, out); }
    status_t FindColor(const char* name, int32 index, rgb_color* out) const;
    status_t FindString(const char* name, std::string* out) const {
        return FindString(name, 0, out);
    }
    status_t FindString(const char* name, int32 index, std::string* out) const;
    status_t FindPointer(const char* name, void** out) const { return FindPointer(name, 0, out); }
    status_t FindPointer(const char* name, int32 index, void** out) const;
    status_t FindMessage(const char* name, BMessage* out) const {
        return FindMessage(name, 0, out);
    }
    status_t FindMessage(const char* name, int32 index, BMessage* out) const;
    status_t FindRef(const char* name, entry_ref* out) const { return FindRef(name, 0, out); }
    status_t FindRef(const char* name, int32 index, entry_ref* out) const;
    status_t FindMessenger(const char* name, BMessenger* out) const {
        return FindMessenger(name, 0, out);
    }
    status_t FindMessenger(const char* name, int32 index, BMessenger* out) const;
    // Items first ... first + count - 1 of a field of doubles or 64-bit integers.
    status_t FindDoubles(const char* name, int32 first, int32 count, double* out) const;
    status_t FindInt64s(const char* name, int32 first, int32 count, int64* out) const;
    // A pointer into the record, valid until it is changed or destroyed; numbers there have this
    // machine's byte order and any alignment. On failure *data becomes null. B_NOT_ALLOWED for
    // nested records that were added as objects (use FindMessage).
    status_t FindData(const char* name, type_code type, int32 index, const void** data,
                      std::size_t* size) const;

    // Never create; sizes of fixed-size items must agree.
    status_t ReplaceBool(const char* name, bool value);
    status_t ReplaceInt32(const char* name, int32 value);
    status_t ReplaceInt64(const char* name, int64 value);
    status_t ReplaceDouble(const char* name, double value);
    status_t ReplacePoint(const char* name, BPoint value);
    status_t ReplaceString(const char* name, std::string_view value);
    status_t ReplaceData(const char* name, type_code type, int32 index, const void* data,
                         std::size_t size);

    status_t RemoveData(const char* name, int32 index = 0);
    status_t RemoveName(const char* name);
    // Removes the fields, keeps `what`.
    status_t MakeEmpty();
    [[nodiscard]] bool IsEmpty() const;

    [[nodiscard]] bool HasName(const char* name, type_code type = B_ANY_TYPE) const;
    // B_NAME_NOT_FOUND (count becomes 0), else type and number of items; out pointers may be null.
    status_t GetInfo(const char* name, type_code* type, int32* count = nullptr) const;
    // The index-th name among those of type `wanted` (B_ANY_TYPE: of all).
    status_t GetInfo(type_code wanted, int32 index, std::string* name, type_code* type,
                     int32* count = nullptr) const;
    [[nodiscard]] int32 CountNames(type_code type = B_ANY_TYPE) const;

    // The stored form, 'FOB1' in this machine's byte order or the one asked for; nested records
    // too. B_UNSUPPORTED: nested too deeply; B_BUFFER_OVERFLOW: 2 GiB or more. The size is 0 then.
    [[nodiscard]] std::size_t FlattenedSize() const;
    enum class ByteOrder { kNative, kLittleEndian, kBigEndian };
    status_t Flatten(std::vector<std::byte>* out, ByteOrder order = ByteOrder::kNative) const;
    // The same piece by piece, without memory for all of it.
    using Sink = std::function<void(std::span<const std::byte>)>;
    status_t Flatten(const Sink& sink) const;

    // Reads any of the accepted forms. On failure the record ends up empty, with what 0. Bytes
    // after the record are not an error; `used`, if given, receives the record's length.
    // B_NOT_A_MESSAGE, B_BAD_DATA, B_BAD_TYPE, B_UNSUPPORTED (nested too deeply).
    enum class Checksum { kVerify, kIgnore };
    status_t Unflatten(const void* data, std::size_t size, std::size_t* used = nullptr,
                       Checksum checksum = Checksum::kVerify);
    // The same without a copy: the record keeps the buffer alive and points into it.
    status_t Unflatten(std::shared_ptr<const std::vector<std::byte>> buffer, std::size_t offset,
                       std::size_t* used = nullptr, Checksum checksum = Checksum::kVerify);

    // Every field as readable text, one line an item, nested records indented; unknown types in
    // hex.
    [[nodiscard]] std::string ToText() const;

    // Records nested in records more deeply than this are neither written nor read.
    static constexpr int32 kMaxNesting = 65536;

    // Equal what, and equal fields in the same order.
    bool operator==(const BMessage& other) const;

private:
    friend class MessageReader;
    friend class MessageWriter;
    friend class MessageText;
    friend class MessageComparison;
    using Field = MessageFields::Field;

    // The field for new items of this kind; `isNew` tells that it was made for them.
    status_t FieldFor(const char* name, type_code type, bool isFixed, Field** field, bool* isNew);
    status_t AddItems(const char* name, type_code type, bool isFixed, const void* items,
                      std::size_t itemSize, int32 count);
    status_t AddRecord(const char* name, std::shared_ptr<const BMessage> record);
    template <typename T>
    status_t AddValue(const char* name, type_code type, const T& value);

    status_t FindField(const char* name, type_code type, int32 index, const Field** field) const;
    status_t FindItem(const char* name, type_code type, int32 index,
                      MessageFields::Bytes* item) const;
    template <typename T>
    status_t FindValue(const char* name, type_code type, int32 index, T* out,
                       T failure = T{}) const;
    template <typename T>
    status_t FindValues(const char* name, type_code type, int32 first, int32 count, T* out) const;

    // The nested record `index` of a field of records; one that is stored bytes is read as lying
    // `nesting` levels deep.
    status_t NestedRecord(const Field& field, int32 index, int32 nesting,
                          std::shared_ptr<const BMessage>* record) const;

    MessageFields fields_;
    int32 nesting_ = 0;  // how deep in its outermost stored record this one was read
    Checksum checksum_ = Checksum::kVerify;  // for the nested records of a stored one
};
