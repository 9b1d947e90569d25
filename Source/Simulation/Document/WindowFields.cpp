#include "Simulation/Document/WindowFields.h"

#include <cstddef>
#include <memory>
#include <vector>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/FieldTable.h"

namespace {

constexpr const char* kPanel = "the open panel's";

struct WindowField {
    const char* name;
    type_code type;
    const char* meaning;
    const char* count = "1";
    const char* whenMissing = "unchanged";
};

constexpr WindowField kWindowFields[] = {
    {kDisplaysField, B_MESSAGE_TYPE,
     "the display's record; the first 32 open by themselves, the rest stay as they are",
     "per display", "one projection display is made"},
    {kDisplayTypesField, B_INT32_TYPE, "1: projection display", "per display",
     "that display is skipped"},
    {kWindowAtField, B_POINT_TYPE, "left-top of the simulation window"},
    {kAnimationAtField, B_POINT_TYPE, "left-top of the animation window"},
    {kAnimationShownField, B_BOOL_TYPE, "it is showing"},
    {kColorsAtField, B_POINT_TYPE, "left-top of the trail-and-disc window"},
    {kColorsShownField, B_BOOL_TYPE, "it is showing"},
    {kEpochsAtField, B_POINT_TYPE, "left-top of the epoch window"},
    {kEpochsShownField, B_BOOL_TYPE, "it is showing"},
    {kEpochsWidthField, B_FLOAT_TYPE, "its width, in sizes of the plain font"},
    {kEpochsHeightField, B_FLOAT_TYPE, "its height, in sizes of the plain font"},
    {kSaveAtField, B_POINT_TYPE, "left-top of the save panel", "0, 1", kPanel},
    {kSaveWidthField, B_FLOAT_TYPE, "its width", "0, 1", kPanel},
    {kSaveHeightField, B_FLOAT_TYPE, "its height", "0, 1", kPanel},
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
    for (const WindowField& field : kWindowFields) {
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

void DescribeWindowFields(FieldDescriptions* into) {
    for (const WindowField& field : kWindowFields)
        DescribeField(into, field.name, field.type, field.count, field.whenMissing, field.meaning);
}
