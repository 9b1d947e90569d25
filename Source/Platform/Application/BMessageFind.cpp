// The operations of BMessage that read items.
#include <algorithm>
#include <cstring>
#include <utility>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/MessageReader.h"

status_t BMessage::FindItem(const char* name, type_code type, int32 index,
                            MessageFields::Bytes* item) const {
    const Field* field = nullptr;
    if (const status_t status = FindField(name, type, index, &field); status != B_OK) return status;
    if (field->HoldsRecords()) return B_NOT_ALLOWED;
    *item = fields_.Item(*field, index);
    return B_OK;
}

template <typename T>
status_t BMessage::FindValue(const char* name, type_code type, int32 index, T* out,
                             T failure) const {
    if (out == nullptr) return B_BAD_VALUE;
    *out = failure;
    MessageFields::Bytes item;
    if (const status_t status = FindItem(name, type, index, &item); status != B_OK) return status;
    if (item.size() < sizeof(T)) return B_BAD_DATA;
    std::memcpy(out, item.data(), sizeof(T));
    return B_OK;
}

template <typename T>
status_t BMessage::FindValues(const char* name, type_code type, int32 first, int32 count,
                              T* out) const {
    if (out == nullptr || count < 0) return B_BAD_VALUE;
    std::fill_n(out, count, T{});
    const Field* field = nullptr;
    if (const status_t status = FindField(name, type, first, &field); status != B_OK) return status;
    if (count > field->count - first) return B_BAD_INDEX;
    for (int32 i = 0; i < count; i++) {
        const MessageFields::Bytes item = fields_.Item(*field, first + i);
        if (item.size() < sizeof(T)) {
            std::fill_n(out, count, T{});
            return B_BAD_DATA;
        }
        std::memcpy(out + i, item.data(), sizeof(T));
    }
    return B_OK;
}

status_t BMessage::FindBool(const char* name, int32 index, bool* out) const {
    if (out == nullptr) return B_BAD_VALUE;
    uint8 value = 0;
    const status_t status = FindValue(name, B_BOOL_TYPE, index, &value);
    *out = value != 0;
    return status;
}

status_t BMessage::FindInt8(const char* name, int32 index, int8* out) const {
    return FindValue(name, B_INT8_TYPE, index, out);
}

status_t BMessage::FindInt16(const char* name, int32 index, int16* out) const {
    return FindValue(name, B_INT16_TYPE, index, out);
}

status_t BMessage::FindInt32(const char* name, int32 index, int32* out) const {
    return FindValue(name, B_INT32_TYPE, index, out);
}

status_t BMessage::FindInt64(const char* name, int32 index, int64* out) const {
    return FindValue(name, B_INT64_TYPE, index, out);
}

status_t BMessage::FindFloat(const char* name, int32 index, float* out) const {
    return FindValue(name, B_FLOAT_TYPE, index, out);
}

status_t BMessage::FindDouble(const char* name, int32 index, double* out) const {
    return FindValue(name, B_DOUBLE_TYPE, index, out);
}

status_t BMessage::FindPoint(const char* name, int32 index, BPoint* out) const {
    return FindValue(name, B_POINT_TYPE, index, out);
}

status_t BMessage::FindRect(const char* name, int32 index, BRect* out) const {
    return FindValue(name, B_RECT_TYPE, index, out);
}

status_t BMessage::FindColor(const char* name, int32 index, rgb_color* out) const {
    constexpr rgb_color kNothing{0, 0, 0, 0};
    const status_t status = FindValue(name, B_RGB_COLOR_TYPE, index, out, kNothing);
    if (status != B_BAD_TYPE) return status;
    return FindValue(name, B_RGB_32_BIT_TYPE, index, out, kNothing);
}

status_t BMessage::FindString(const char* name, int32 index, std::string* out) const {
    if (out == nullptr) return B_BAD_VALUE;
    out->clear();
    MessageFields::Bytes item;
    if (const status_t status = FindItem(name, B_STRING_TYPE, index, &item); status != B_OK)
        return status;
    const auto* text = reinterpret_cast<const char*>(item.data());
    out->assign(text, strnlen(text, item.size()));
    return B_OK;
}

status_t BMessage::FindPointer(const char* name, int32 index, void** out) const {
    return FindValue(name, B_POINTER_TYPE, index, out);
}

status_t BMessage::FindMessage(const char* name, int32 index, BMessage* out) const {
    if (out == nullptr) return B_BAD_VALUE;
    const Field* field = nullptr;
    std::shared_ptr<const BMessage> record;
    status_t status = FindField(name, B_MESSAGE_TYPE, index, &field);
    if (status == B_OK) status = NestedRecord(*field, index, nesting_ + 1, &record);
    // Last, because `out` may be this record itself.
    *out = status == B_OK ? BMessage(*record) : BMessage();
    return status;
}

status_t BMessage::FindDoubles(const char* name, int32 first, int32 count, double* out) const {
    return FindValues(name, B_DOUBLE_TYPE, first, count, out);
}

status_t BMessage::FindInt64s(const char* name, int32 first, int32 count, int64* out) const {
    return FindValues(name, B_INT64_TYPE, first, count, out);
}

status_t BMessage::FindData(const char* name, type_code type, int32 index, const void** data,
                            std::size_t* size) const {
    if (data == nullptr) return B_BAD_VALUE;
    *data = nullptr;
    MessageFields::Bytes item;
    if (const status_t status = FindItem(name, type, index, &item); status != B_OK) return status;
    *data = item.data();
    if (size != nullptr) *size = item.size();
    return B_OK;
}

status_t BMessage::NestedRecord(const Field& field, int32 index, int32 nesting,
                                std::shared_ptr<const BMessage>* record) const {
    if (field.HoldsRecords()) {
        *record = field.list->records[static_cast<std::size_t>(index)];
        return B_OK;
    }
    if (nesting > kMaxNesting) return B_UNSUPPORTED;
    const MessageFields::Bytes item = fields_.Item(field, index);
    auto nested = std::make_shared<BMessage>();
    MessageFields::Buffer buffer = fields_.SourceOf(field);
    status_t status = B_OK;
    if (buffer != nullptr) {
        status = MessageReader::Read(std::move(buffer), item, nesting, checksum_, nested.get());
    } else {
        status = MessageReader::ReadCopy(item, nesting, checksum_, nested.get());
    }
    if (status == B_OK) *record = std::move(nested);
    return status;
}
