#include "Tools/ResourceCompiler/RdefValue.h"

#include <cstring>
#include <limits>
#include <utility>

#include "Platform/Support/ByteOrder.h"
#include "Platform/Support/TypeConstants.h"

namespace {

using Form = RdefType::Form;

constexpr RdefType kTypes[] = {
    {"bool", B_BOOL_TYPE, Form::kBool, 1},
    {"int8", B_INT8_TYPE, Form::kInteger, 1},
    {"uint8", B_UINT8_TYPE, Form::kInteger, 1},
    {"int16", B_INT16_TYPE, Form::kInteger, 2},
    {"uint16", B_UINT16_TYPE, Form::kInteger, 2},
    {"int32", B_INT32_TYPE, Form::kInteger, 4},
    {"uint32", B_UINT32_TYPE, Form::kInteger, 4},
    {"int64", B_INT64_TYPE, Form::kInteger, 8},
    {"uint64", B_UINT64_TYPE, Form::kInteger, 8},
    {"size_t", B_SIZE_T_TYPE, Form::kInteger, 4},
    {"ssize_t", B_SSIZE_T_TYPE, Form::kInteger, 4},
    {"off_t", B_OFF_T_TYPE, Form::kInteger, 8},
    {"time_t", B_TIME_TYPE, Form::kInteger, 4},
    {"float", B_FLOAT_TYPE, Form::kReal, 4},
    {"double", B_DOUBLE_TYPE, Form::kReal, 8},
    {"string", B_STRING_TYPE, Form::kOther, 0},
    {"raw", B_RAW_TYPE, Form::kOther, 0},
    {"message", B_MESSAGE_TYPE, Form::kOther, 0},
    {"archive", B_MESSAGE_TYPE, Form::kOther, 0},
    {"point", B_POINT_TYPE, Form::kOther, 0},
    {"rect", B_RECT_TYPE, Form::kOther, 0},
    {"rgb_color", B_RGB_COLOR_TYPE, Form::kOther, 0},
};

}  // namespace

const RdefType* RdefType::Find(std::string_view name) {
    for (const RdefType& type : kTypes)
        if (name == type.name) return &type;
    return nullptr;
}

RdefValue RdefValue::Bool(bool value) {
    RdefValue result;
    result.SetNumber(B_BOOL_TYPE, static_cast<uint8>(value));
    return result;
}

RdefValue RdefValue::Integer(int64 value) {
    RdefValue result;
    result.integer = value;
    result.real = static_cast<double>(value);
    return result;
}

RdefValue RdefValue::Real(double value) {
    RdefValue result;
    result.real = value;
    return result;
}

RdefValue RdefValue::Text(const std::string& text) {
    return Raw(B_STRING_TYPE, {text.c_str(), text.size() + 1});
}

RdefValue RdefValue::Raw(type_code type, std::string_view bytes) {
    RdefValue result;
    result.type = type;
    result.data.resize(bytes.size());
    if (!bytes.empty()) std::memcpy(result.data.data(), bytes.data(), bytes.size());
    return result;
}

RdefValue RdefValue::Message(BMessage message) {
    RdefValue result;
    result.type = B_MESSAGE_TYPE;
    result.message = std::move(message);
    return result;
}

// Resource files are little-endian.
template <typename Number>
void RdefValue::SetNumber(type_code code, Number number) {
    type = code;
    data.resize(sizeof number);
    StoreNumber(data.data(), number, kHostIsBigEndian);
    integer.reset();
    real.reset();
}

bool RdefValue::ConvertTo(const RdefType& wanted) {
    switch (wanted.form) {
        case Form::kInteger:
            if (!integer) return type == wanted.type;
            SetNumber(wanted.type, *integer);
            // Little-endian: the low bytes come first.
            data.resize(wanted.width);
            return true;
        case Form::kReal:
            if (!real) return type == wanted.type;
            if (wanted.width == sizeof(float))
                SetNumber(wanted.type, static_cast<float>(*real));
            else
                SetNumber(wanted.type, *real);
            return true;
        case Form::kBool:
            if (integer) SetNumber(wanted.type, static_cast<uint8>(*integer != 0));
            return type == wanted.type;
        case Form::kOther:
            if (!Settle()) return false;
            if (wanted.type != B_RAW_TYPE) return type == wanted.type;
            type = B_RAW_TYPE;
            message.reset();
            return true;
    }
    return false;
}

bool RdefValue::StoreBigEndian() {
    return message && message->Flatten(&data, BMessage::ByteOrder::kBigEndian) == B_OK;
}

bool RdefValue::Settle() {
    if (message && data.empty())
        return message->Flatten(&data, BMessage::ByteOrder::kLittleEndian) == B_OK;
    if (integer) {
        if (*integer < std::numeric_limits<int32>::min() ||
            *integer > std::numeric_limits<uint32>::max())
            return false;
        SetNumber(B_INT32_TYPE, static_cast<int32>(*integer));
    } else if (real) {
        SetNumber(B_FLOAT_TYPE, static_cast<float>(*real));
    }
    return true;
}

status_t RdefValue::AddTo(BMessage* record, const std::string& name) const {
    if (message && type == B_MESSAGE_TYPE) return record->AddMessage(name.c_str(), &*message);
    std::vector<std::byte> item = data;
    if (kHostIsBigEndian) SwapItem(type, item.data(), item.size());
    const bool isFixed =
        type != B_STRING_TYPE && type != B_MIME_STRING_TYPE && type != B_MESSAGE_TYPE;
    return record->AddData(name.c_str(), type, item.data(), item.size(), isFixed);
}
