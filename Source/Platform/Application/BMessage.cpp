#include "Platform/Application/BMessage.h"

#include <utility>

#include "Platform/Application/MessageComparison.h"
#include "Platform/Application/MessageReader.h"
#include "Platform/Application/MessageText.h"
#include "Platform/Application/MessageWriter.h"

BMessage::BMessage() = default;
BMessage::BMessage(uint32 code) : what(code) {}
BMessage::BMessage(const BMessage&) = default;
BMessage::BMessage(BMessage&&) noexcept = default;
BMessage& BMessage::operator=(const BMessage&) = default;
BMessage& BMessage::operator=(BMessage&&) noexcept = default;
BMessage::~BMessage() = default;

// --- Adding ---

status_t BMessage::FieldFor(const char* name, type_code type, bool isFixed, Field** field,
                            bool* isNew) {
    if (name == nullptr || type == B_ANY_TYPE) return B_BAD_VALUE;
    const std::string_view key(name);
    if (key.size() > MessageFields::kMaxNameLength) return B_NAME_TOO_LONG;
    *field = fields_.Find(key);
    *isNew = *field == nullptr;
    if (*isNew) *field = &fields_.NewField(key, type, isFixed);
    return (*field)->type == type ? B_OK : B_BAD_TYPE;
}

status_t BMessage::AddItems(const char* name, type_code type, bool isFixed, const void* items,
                            std::size_t itemSize, int32 count) {
    if (items == nullptr || itemSize == 0 || count < 1) return B_BAD_VALUE;
    Field* field = nullptr;
    bool isNew = false;
    if (const status_t status = FieldFor(name, type, isFixed, &field, &isNew); status != B_OK)
        return status;
    if (field->HoldsRecords()) {
        // Bytes join records that were added as objects: they must be a record, too.
        BMessage record;
        const status_t status = record.Unflatten(items, itemSize);
        return status == B_OK ? AddMessage(name, std::move(record)) : status;
    }
    const status_t status = fields_.Append(*field, items, itemSize, count);
    if (status != B_OK && isNew) fields_.RemoveField(*field);
    return status;
}

status_t BMessage::AddRecord(const char* name, std::shared_ptr<const BMessage> record) {
    Field* field = nullptr;
    bool isNew = false;
    if (const status_t status = FieldFor(name, B_MESSAGE_TYPE, false, &field, &isNew);
        status != B_OK)
        return status;
    if (isNew || field->HoldsRecords()) {
        fields_.AppendRecord(*field, std::move(record));
        return B_OK;
    }
    // The other items are stored bytes, and so must this one be.
    std::vector<std::byte> bytes;
    if (const status_t status = record->Flatten(&bytes); status != B_OK) return status;
    return fields_.Append(*field, bytes.data(), bytes.size(), 1);
}

template <typename T>
status_t BMessage::AddValue(const char* name, type_code type, const T& value) {
    return AddItems(name, type, true, &value, sizeof(T), 1);
}

status_t BMessage::AddBool(const char* name, bool value) {
    return AddValue(name, B_BOOL_TYPE, static_cast<uint8>(value));
}

status_t BMessage::AddInt16(const char* name, int16 value) {
    return AddValue(name, B_INT16_TYPE, value);
}

status_t BMessage::AddInt32(const char* name, int32 value) {
    return AddValue(name, B_INT32_TYPE, value);
}

status_t BMessage::AddInt64(const char* name, int64 value) {
    return AddValue(name, B_INT64_TYPE, value);
}

status_t BMessage::AddFloat(const char* name, float value) {
    return AddValue(name, B_FLOAT_TYPE, value);
}

status_t BMessage::AddDouble(const char* name, double value) {
    return AddValue(name, B_DOUBLE_TYPE, value);
}

status_t BMessage::AddPoint(const char* name, BPoint value) {
    return AddValue(name, B_POINT_TYPE, value);
}

status_t BMessage::AddRect(const char* name, BRect value) {
    return AddValue(name, B_RECT_TYPE, value);
}

status_t BMessage::AddColor(const char* name, rgb_color value) {
    return AddValue(name, B_RGB_COLOR_TYPE, value);
}

status_t BMessage::AddString(const char* name, std::string_view value) {
    const std::string text(value.substr(0, value.find('\0')));
    return AddItems(name, B_STRING_TYPE, false, text.c_str(), text.size() + 1, 1);
}

status_t BMessage::AddPointer(const char* name, const void* value) {
    return AddValue(name, B_POINTER_TYPE, value);
}

status_t BMessage::AddMessage(const char* name, const BMessage* value) {
    if (value == nullptr) return B_BAD_VALUE;
    return AddRecord(name, std::make_shared<const BMessage>(*value));
}

status_t BMessage::AddMessage(const char* name, BMessage&& value) {
    value.fields_.Shrink();
    return AddRecord(name, std::make_shared<const BMessage>(std::move(value)));
}

status_t BMessage::AddDoubles(const char* name, const double* values, int32 count) {
    return AddItems(name, B_DOUBLE_TYPE, true, values, sizeof(double), count);
}

status_t BMessage::AddInt64s(const char* name, const int64* values, int32 count) {
    return AddItems(name, B_INT64_TYPE, true, values, sizeof(int64), count);
}

status_t BMessage::AddData(const char* name, type_code type, const void* data, std::size_t size,
                           bool isFixedSize, int32 /*countHint*/) {
    return AddItems(name, type, isFixedSize, data, size, 1);
}

// --- Replacing and removing ---

status_t BMessage::ReplaceBool(const char* name, bool value) {
    const auto byte = static_cast<uint8>(value);
    return ReplaceData(name, B_BOOL_TYPE, 0, &byte, sizeof byte);
}

status_t BMessage::ReplaceInt32(const char* name, int32 value) {
    return ReplaceData(name, B_INT32_TYPE, 0, &value, sizeof value);
}

status_t BMessage::ReplaceInt64(const char* name, int64 value) {
    return ReplaceData(name, B_INT64_TYPE, 0, &value, sizeof value);
}

status_t BMessage::ReplaceDouble(const char* name, double value) {
    return ReplaceData(name, B_DOUBLE_TYPE, 0, &value, sizeof value);
}

status_t BMessage::ReplacePoint(const char* name, BPoint value) {
    return ReplaceData(name, B_POINT_TYPE, 0, &value, sizeof value);
}

status_t BMessage::ReplaceString(const char* name, std::string_view value) {
    const std::string text(value.substr(0, value.find('\0')));
    return ReplaceData(name, B_STRING_TYPE, 0, text.c_str(), text.size() + 1);
}

status_t BMessage::ReplaceData(const char* name, type_code type, int32 index, const void* data,
                               std::size_t size) {
    if (data == nullptr || size == 0) return B_BAD_VALUE;
    const Field* field = nullptr;
    if (const status_t status = FindField(name, type, index, &field); status != B_OK) return status;
    if (field->HoldsRecords()) return B_NOT_ALLOWED;
    return fields_.ReplaceItem(*fields_.Find(name), index, data, size);
}

status_t BMessage::RemoveData(const char* name, int32 index) {
    if (name == nullptr) return B_BAD_VALUE;
    if (index < 0) return B_BAD_INDEX;
    Field* field = fields_.Find(name);
    if (field == nullptr) return B_NAME_NOT_FOUND;
    if (index >= field->count) return B_BAD_INDEX;
    fields_.RemoveItem(*field, index);
    return B_OK;
}

status_t BMessage::RemoveName(const char* name) {
    if (name == nullptr) return B_BAD_VALUE;
    Field* field = fields_.Find(name);
    if (field == nullptr) return B_NAME_NOT_FOUND;
    fields_.RemoveField(*field);
    return B_OK;
}

status_t BMessage::MakeEmpty() {
    fields_.Clear();
    nesting_ = 0;
    checksum_ = Checksum::kVerify;
    return B_OK;
}

// --- Asking ---

status_t BMessage::FindField(const char* name, type_code type, int32 index,
                             const Field** field) const {
    if (name == nullptr) return B_BAD_VALUE;
    *field = fields_.Find(name);
    if (*field == nullptr) return B_NAME_NOT_FOUND;
    if (type != B_ANY_TYPE && (*field)->type != type) return B_BAD_TYPE;
    if (index < 0 || index >= (*field)->count) return B_BAD_INDEX;
    return B_OK;
}

bool BMessage::IsEmpty() const {
    return fields_.All().empty();
}

bool BMessage::HasName(const char* name, type_code type) const {
    const Field* field = nullptr;
    return FindField(name, type, 0, &field) == B_OK;
}

status_t BMessage::GetInfo(const char* name, type_code* type, int32* count) const {
    const Field* field = nullptr;
    const status_t status = FindField(name, B_ANY_TYPE, 0, &field);
    if (count != nullptr) *count = status == B_OK ? field->count : 0;
    if (status == B_OK && type != nullptr) *type = field->type;
    return status;
}

status_t BMessage::GetInfo(type_code wanted, int32 index, std::string* name, type_code* type,
                           int32* count) const {
    const std::vector<Field>& fields = fields_.All();
    if (index < 0 || static_cast<std::size_t>(index) >= fields.size()) return B_BAD_INDEX;
    int32 seen = 0;
    for (const Field& field : fields) {
        if (wanted != B_ANY_TYPE && field.type != wanted) continue;
        if (seen++ < index) continue;
        if (name != nullptr) *name = fields_.Name(field);
        if (type != nullptr) *type = field.type;
        if (count != nullptr) *count = field.count;
        return B_OK;
    }
    return seen == 0 ? B_BAD_TYPE : B_BAD_INDEX;
}

int32 BMessage::CountNames(type_code type) const {
    int32 count = 0;
    for (const Field& field : fields_.All())
        if (type == B_ANY_TYPE || field.type == type) count++;
    return count;
}

// --- The stored form, text, equality ---

std::size_t BMessage::FlattenedSize() const {
    return MessageWriter(*this, ByteOrder::kNative).Size();
}

status_t BMessage::Flatten(std::vector<std::byte>* out, ByteOrder order) const {
    if (out == nullptr) return B_BAD_VALUE;
    out->clear();
    const MessageWriter writer(*this, order);
    out->reserve(writer.Size());
    return writer.Write([out](std::span<const std::byte> piece) {
        out->insert(out->end(), piece.begin(), piece.end());
    });
}

status_t BMessage::Flatten(const Sink& sink) const {
    return MessageWriter(*this, ByteOrder::kNative).Write(sink);
}

status_t BMessage::Unflatten(const void* data, std::size_t size, std::size_t* used,
                             Checksum checksum) {
    MessageFields::Bytes bytes(static_cast<const std::byte*>(data), size);
    BMessage read;
    std::size_t length = 0;
    status_t status = data == nullptr ? B_BAD_VALUE : MessageReader::Measure(bytes, &length);
    if (status == B_OK) status = MessageReader::ReadCopy(bytes.first(length), 0, checksum, &read);
    *this = std::move(read);
    if (status == B_OK && used != nullptr) *used = length;
    return status;
}

status_t BMessage::Unflatten(std::shared_ptr<const std::vector<std::byte>> buffer,
                             std::size_t offset, std::size_t* used, Checksum checksum) {
    BMessage read;
    MessageFields::Bytes bytes;
    std::size_t length = 0;
    status_t status = B_BAD_VALUE;
    if (buffer != nullptr && offset <= buffer->size()) {
        bytes = MessageFields::Bytes(*buffer).subspan(offset);
        status = MessageReader::Measure(bytes, &length);
    }
    if (status == B_OK)
        status = MessageReader::Read(std::move(buffer), bytes.first(length), 0, checksum, &read);
    *this = std::move(read);
    if (status == B_OK && used != nullptr) *used = length;
    return status;
}

std::string BMessage::ToText() const {
    return MessageText(*this).Text();
}

bool BMessage::operator==(const BMessage& other) const {
    return MessageComparison(*this, other).Equal();
}
