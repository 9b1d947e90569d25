#include "Platform/Application/MessageText.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <utility>

#include "Platform/Support/ByteOrder.h"
#include "Platform/Support/PrintableText.h"

namespace {

using Bytes = MessageFields::Bytes;

constexpr std::size_t kIndentWidth = 4;
// Deeper levels are not indented further, or the text of a long chain would be mostly blanks.
constexpr std::size_t kMaxIndentLevels = 24;
constexpr std::size_t kMaxHexBytes = 256;

void PutHex(std::string& text, std::byte value) {
    constexpr char kDigits[] = "0123456789abcdef";
    text += kDigits[std::to_integer<unsigned>(value >> 4)];
    text += kDigits[std::to_integer<unsigned>(value & std::byte{15})];
}

bool IsPrintable(char c) {
    return c >= ' ' && c <= '~';
}

// 'ARCV', or a number if the code is not made of letters.
void PutCode(std::string& text, uint32 code) {
    std::byte bytes[sizeof code];
    StoreNumber(bytes, code, !kHostIsBigEndian);
    const std::string_view letters(reinterpret_cast<const char*>(bytes), sizeof code);
    if (std::ranges::all_of(letters, IsPrintable) &&
        letters.find_first_of("'\\") == std::string::npos) {
        text.append("'").append(letters).append("'");
        return;
    }
    text += "0x";
    for (const std::byte value : bytes)
        PutHex(text, value);
}

void PutQuoted(std::string& text, std::string_view value) {
    std::string quoted;
    for (const char c : value) {
        if (c == '"' || c == '\\') quoted += '\\';
        quoted += c;
    }
    text += '"' + Printable(quoted) + '"';
}

void PutString(std::string& text, Bytes item) {
    const auto* letters = reinterpret_cast<const char*>(item.data());
    PutQuoted(text, {letters, strnlen(letters, item.size())});
}

void PutRaw(std::string& text, Bytes item) {
    text += "$\"";
    for (const std::byte value : item.first(std::min(item.size(), kMaxHexBytes)))
        PutHex(text, value);
    text += '"';
    if (item.size() > kMaxHexBytes) text += " ... (" + std::to_string(item.size()) + " bytes)";
}

// The shortest digits that give the same number again; numbers in a row are separated by commas.
template <typename T>
void PutNumbers(std::string& text, Bytes item) {
    for (std::size_t at = 0; at < item.size(); at += sizeof(T)) {
        const auto value = LoadNumber<T>(item.data() + at, false);
        char digits[32];
        const auto result = std::to_chars(std::begin(digits), std::end(digits), value);
        if (at > 0) text += ", ";
        text.append(digits, result.ptr);
    }
}

void PutBool(std::string& text, Bytes item) {
    text += item[0] == std::byte{0} ? "false" : "true";
}

struct Format {
    type_code type;
    const char* name;
    std::size_t size;  // of an item; 0: any
    void (*put)(std::string& text, Bytes item);
};

constexpr Format kFormats[] = {
    {B_BOOL_TYPE, "bool", 1, PutBool},
    {B_INT8_TYPE, "int8", 1, PutNumbers<int8>},
    {B_UINT8_TYPE, "uint8", 1, PutNumbers<uint8>},
    {B_INT16_TYPE, "int16", 2, PutNumbers<int16>},
    {B_UINT16_TYPE, "uint16", 2, PutNumbers<uint16>},
    {B_INT32_TYPE, "int32", 4, PutNumbers<int32>},
    {B_UINT32_TYPE, "uint32", 4, PutNumbers<uint32>},
    {B_INT64_TYPE, "int64", 8, PutNumbers<int64>},
    {B_UINT64_TYPE, "uint64", 8, PutNumbers<uint64>},
    {B_FLOAT_TYPE, "float", 4, PutNumbers<float>},
    {B_DOUBLE_TYPE, "double", 8, PutNumbers<double>},
    {B_STRING_TYPE, "string", 0, PutString},
    {B_MIME_STRING_TYPE, "mime", 0, PutString},
    {B_POINT_TYPE, "point", 8, PutNumbers<float>},
    {B_RECT_TYPE, "rect", 16, PutNumbers<float>},
    {B_RGB_COLOR_TYPE, "color", 4, PutNumbers<uint8>},
    {B_RGB_32_BIT_TYPE, "color32", 4, PutNumbers<uint8>},
    {B_MESSAGE_TYPE, "message", 0, PutRaw},
    {B_POINTER_TYPE, "pointer", 0, PutRaw},
    {B_REF_TYPE, "ref", 0, PutRaw},
    {B_MESSENGER_TYPE, "messenger", 0, PutRaw},
    {B_RAW_TYPE, "raw", 0, PutRaw},
};

const Format* FormatOf(type_code type) {
    const auto* found = std::ranges::find(kFormats, type, &Format::type);
    return found == std::end(kFormats) ? nullptr : found;
}

}  // namespace

MessageText::MessageText(const BMessage& message) {
    text_ = "message ";
    Enter(Record(std::shared_ptr<void>(), &message));
    while (!open_.empty())
        Continue();
}

void MessageText::Continue() {
    const Record record = open_.back().record;
    const std::vector<Field>& fields = record->fields_.All();
    for (Open& open = open_.back(); open.field < fields.size(); open.field++, open.item = 0) {
        const Field& field = fields[open.field];
        while (open.item < field.count) {
            PrintItem(open, field);
            const int32 item = open.item++;
            if (field.type != B_MESSAGE_TYPE) {
                text_ += '\n';
                continue;
            }
            Record nested;
            if (record->NestedRecord(field, item, record->nesting_ + 1, &nested) == B_OK) {
                Enter(std::move(nested));
                return;
            }
            PutRaw(text_, record->fields_.Item(field, item));
            text_ += '\n';
        }
    }
    open_.pop_back();
    Indent(open_.size());
    text_ += "}\n";
}

// Up to the value of a nested record, which Enter prints.
void MessageText::PrintItem(const Open& open, const Field& field) {
    const MessageFields& fields = open.record->fields_;
    const Format* format = FormatOf(field.type);
    Indent(open_.size());
    if (format != nullptr)
        text_ += format->name;
    else
        PutCode(text_, field.type);
    text_ += ' ';
    PutQuoted(text_, fields.Name(field));
    if (field.count > 1) text_ += '[' + std::to_string(open.item) + ']';
    text_ += " = ";
    if (field.type == B_MESSAGE_TYPE) return;
    const Bytes item = fields.Item(field, open.item);
    const bool fits = format != nullptr && (format->size == 0 || format->size == item.size());
    (fits ? format->put : PutRaw)(text_, item);
}

void MessageText::Enter(Record record) {
    PutCode(text_, record->what);
    text_ += " {\n";
    open_.push_back({std::move(record)});
}

void MessageText::Indent(std::size_t levels) {
    text_.append(std::min(levels, kMaxIndentLevels) * kIndentWidth, ' ');
}
