#include "Simulation/Document/WindowFields.h"

#include <cstddef>
#include <memory>
#include <vector>

#include "Platform/Application/BMessage.h"

namespace {

struct Field {
    const char* name;
    type_code type;
};

constexpr Field kWindowFields[] = {
    {kDisplaysField, B_MESSAGE_TYPE},    {kDisplayTypesField, B_INT32_TYPE},
    {kWindowAtField, B_POINT_TYPE},      {kAnimationAtField, B_POINT_TYPE},
    {kAnimationShownField, B_BOOL_TYPE}, {kColorsAtField, B_POINT_TYPE},
    {kColorsShownField, B_BOOL_TYPE},    {kEpochsAtField, B_POINT_TYPE},
    {kEpochsShownField, B_BOOL_TYPE},    {kEpochsWidthField, B_FLOAT_TYPE},
    {kEpochsHeightField, B_FLOAT_TYPE},  {kSaveAtField, B_POINT_TYPE},
    {kSaveWidthField, B_FLOAT_TYPE},     {kSaveHeightField, B_FLOAT_TYPE},
};

status_t CopyItem(const BMessage& from, const char* name, type_code type, int32 index,
                  BMessage* into) {
    if (type == B_MESSAGE_TYPE) {
        BMessage nested;
        const status_t status = from.FindMessage(name, index, &nested);
        return status == B_OK ? into->AddMessage(name, &nested) : status;
    }
    const void* data = nullptr;
    std::size_t size = 0;
    const status_t status = from.FindData(name, type, index, &data, &size);
    return status == B_OK ? into->AddData(name, type, data, size) : status;
}

status_t CopyField(const BMessage& from, const char* name, type_code type, int32 count,
                   BMessage* into) {
    for (int32 i = 0; i < count; i++) {
        const status_t status = CopyItem(from, name, type, i, into);
        if (status != B_OK) return status;
    }
    return B_OK;
}

}  // namespace

BMessage ExtractWindowFields(const BMessage& record) {
    BMessage fields;
    for (const Field& field : kWindowFields) {
        type_code type = 0;
        int32 count = 0;
        if (record.GetInfo(field.name, &type, &count) != B_OK || type != field.type) continue;
        BMessage copy;
        if (CopyField(record, field.name, type, count, &copy) == B_OK)
            static_cast<void>(AppendFields(copy, &fields));
    }
    // Nested records share the buffer of the file they were read from: going through the stored
    // form gives them one of their own.
    auto bytes = std::make_shared<std::vector<std::byte>>();
    BMessage own;
    if (fields.Flatten(bytes.get()) != B_OK || own.Unflatten(std::move(bytes), 0) != B_OK)
        return BMessage();
    return own;
}

status_t AppendFields(const BMessage& fields, BMessage* record) {
    std::string name;
    type_code type = 0;
    int32 count = 0;
    for (int32 i = 0; fields.GetInfo(B_ANY_TYPE, i, &name, &type, &count) == B_OK; i++) {
        const status_t status = CopyField(fields, name.c_str(), type, count, record);
        if (status != B_OK) return status;
    }
    return B_OK;
}
