#include "Tools/ResourceCompiler/RdefValueParser.h"

#include <array>
#include <cstring>
#include <string_view>

#include "Platform/Support/ByteOrder.h"
#include "Platform/Support/TypeConstants.h"

namespace {

using Kind = RdefToken::Kind;

// What may follow the keyword of a resource that describes the program.
struct AppResource {
    const char* word;
    type_code type;
    int32 id;
    const char* name;
};

constexpr AppResource kAppResources[] = {
    {"app_signature", B_MIME_STRING_TYPE, 1, "BEOS:APP_SIG"},
    {"app_flags", FourCC("APPF"), 1, "BEOS:APP_FLAGS"},
    {"app_version", FourCC("APPV"), 1, "BEOS:APP_VERSION"},
    {"file_types", B_MESSAGE_TYPE, 1, "BEOS:FILE_TYPES"},
    {"large_icon", FourCC("ICON"), 101, "BEOS:L:STD_ICON"},
    {"mini_icon", FourCC("MICN"), 101, "BEOS:M:STD_ICON"},
    {"vector_icon", FourCC("VICN"), 101, "BEOS:ICON"},
};

constexpr char kBigEndian[] = "big_endian";

template <typename Number>
void AppendNumber(std::string* bytes, Number number) {
    std::byte stored[sizeof number];
    StoreNumber(stored, number, kHostIsBigEndian);
    bytes->append(reinterpret_cast<const char*>(stored), sizeof stored);
}

}  // namespace

bool RdefValueParser::ReadValue(RdefValue* value) {
    return ReadUntyped(value) &&
           (value->Settle() || tokens_.Fail("the value cannot be stored without another type"));
}

bool RdefValueParser::IsCast() const {
    const RdefToken& word = tokens_.Following();
    return tokens_.Current().IsSymbol('(') && word.Is(Kind::kWord) &&
           (word.IsWord(kBigEndian) || RdefType::Find(word.text) != nullptr);
}

bool RdefValueParser::ReadUntyped(RdefValue* value) {
    *value = RdefValue();
    const RdefTokens::Nesting nesting(&tokens_);
    if (!nesting.IsPossible()) return false;
    if (IsCast()) return ReadCast(value);
    std::string joined;
    switch (tokens_.Current().kind) {
        case Kind::kText:
            if (!tokens_.TakeJoined(Kind::kText, &joined)) return false;
            *value = RdefValue::Text(joined);
            return true;
        case Kind::kBytes:
            if (!tokens_.TakeJoined(Kind::kBytes, &joined)) return false;
            *value = RdefValue::Raw(B_RAW_TYPE, joined);
            return true;
        case Kind::kWord:
            return ReadWordValue(value);
        default:
            return numbers_.ReadNumber(value);
    }
}

bool RdefValueParser::ReadCast(RdefValue* value) {
    if (!tokens_.Advance()) return false;
    const std::string word = tokens_.Current().text;
    if (!tokens_.Advance() || !tokens_.Expect(')') || !ReadUntyped(value)) return false;
    const bool done =
        word == kBigEndian ? value->StoreBigEndian() : value->ConvertTo(*RdefType::Find(word));
    return done || tokens_.Fail("the value cannot become " + word);
}

bool RdefValueParser::ReadWordValue(RdefValue* value) {
    const RdefToken& word = tokens_.Current();
    if (word.IsWord("true") || word.IsWord("false")) {
        *value = RdefValue::Bool(word.IsWord("true"));
        return tokens_.Advance();
    }
    if (word.IsWord("array")) return ReadArray(value);
    if (word.IsWord("import")) {
        std::string bytes;
        if (!ReadImport(&bytes)) return false;
        *value = RdefValue::Raw(B_RAW_TYPE, bytes);
        return true;
    }
    if (word.IsWord("message")) return ReadMessage(value);
    if (word.IsWord("archive")) return ReadArchive(value);
    if (word.IsWord("point")) return ReadFloats(B_POINT_TYPE, 2, value);
    if (word.IsWord("rect")) return ReadFloats(B_RECT_TYPE, 4, value);
    if (word.IsWord("rgb_color")) return ReadColor(value);
    bool known = false;
    if (!ReadAppValue(value, &known)) return false;
    return known || numbers_.ReadNumber(value);
}

// --- Arrays and imports ---

bool RdefValueParser::ReadArray(RdefValue* value) {
    *value = RdefValue::Raw(B_RAW_TYPE, {});
    if (!tokens_.Advance()) return false;
    if (tokens_.Current().IsWord("import")) {
        std::string bytes;
        if (!ReadImport(&bytes)) return false;
        *value = RdefValue::Raw(B_RAW_TYPE, bytes);
        return true;
    }
    if (!tokens_.Current().IsSymbol('{')) return true;
    if (!tokens_.Advance()) return false;
    bool more = true;
    while (more && !tokens_.Current().IsSymbol('}')) {
        RdefValue element;
        if (!ReadValue(&element)) return false;
        value->data.insert(value->data.end(), element.data.begin(), element.data.end());
        if (!tokens_.Skip(',', &more)) return false;
    }
    return tokens_.Expect('}');
}

bool RdefValueParser::ReadImport(std::string* bytes) {
    if (!tokens_.Advance()) return false;
    const RdefToken& name = tokens_.Current();
    if (!name.Is(Kind::kText)) return tokens_.Fail("import needs a file name in quotation marks");
    const std::string path = RdefLexer::Relative(name.path, name.text);
    if (!RdefLexer::ReadFile(path, bytes)) return tokens_.Fail("cannot read \"" + path + '"');
    return tokens_.Advance();
}

// --- Records ---

bool RdefValueParser::ReadWhat(uint32* what) {
    int64 value = 0;
    const bool isCode = tokens_.Current().Is(Kind::kTypeCode);
    if (isCode) value = tokens_.Current().integer;
    if (isCode ? !tokens_.Advance() : !numbers_.ReadInteger(&value)) return false;
    *what = static_cast<uint32>(value);
    return true;
}

bool RdefValueParser::ReadMessage(RdefValue* value) {
    BMessage message;
    bool opened = false;
    if (!tokens_.Advance() || !tokens_.Skip('(', &opened)) return false;
    if (opened && (!ReadWhat(&message.what) || !tokens_.Expect(')'))) return false;
    if (tokens_.Current().IsSymbol('{') && !ReadFields(&message)) return false;
    *value = RdefValue::Message(std::move(message));
    return true;
}

bool RdefValueParser::ReadArchive(RdefValue* value) {
    BMessage message;
    std::string addOn;
    bool opened = false;
    if (!tokens_.Advance() || !tokens_.Skip('(', &opened)) return false;
    if (opened) {
        bool more = false;
        if (tokens_.Current().Is(Kind::kText) && !tokens_.TakeJoined(Kind::kText, &addOn))
            return false;
        if (!tokens_.Skip(',', &more) || (more && !ReadWhat(&message.what)) || !tokens_.Expect(')'))
            return false;
    }
    const std::string className = tokens_.Current().text;
    if (!tokens_.Current().Is(Kind::kWord)) return tokens_.Fail("a class name is missing");
    if (!tokens_.Advance() || !ReadFields(&message)) return false;
    if (message.AddString("class", className) != B_OK ||
        (!addOn.empty() && message.AddString("add_on", addOn) != B_OK))
        return tokens_.Fail("a field of an archive may not be called class or add_on");
    *value = RdefValue::Message(std::move(message));
    return true;
}

bool RdefValueParser::ReadFields(BMessage* message) {
    if (!tokens_.Expect('{')) return false;
    bool more = true;
    while (more && !tokens_.Current().IsSymbol('}'))
        if (!ReadField(message) || !tokens_.Skip(',', &more)) return false;
    return tokens_.Expect('}');
}

// [#'CODE'] [type] "name" = value. The type converts, the code only relabels.
bool RdefValueParser::ReadField(BMessage* message) {
    type_code code = 0;
    if (tokens_.Current().Is(Kind::kTypeCode)) {
        code = static_cast<type_code>(tokens_.Current().integer);
        if (!tokens_.Advance()) return false;
    }
    const RdefType* type = nullptr;
    if (tokens_.Current().Is(Kind::kWord)) {
        type = RdefType::Find(tokens_.Current().text);
        if (type == nullptr) return tokens_.Fail("unknown type " + tokens_.Current().text);
        if (!tokens_.Advance()) return false;
    }
    std::string name;
    RdefValue value;
    if (!tokens_.TakeJoined(Kind::kText, &name) || !tokens_.Expect('=') || !ReadUntyped(&value))
        return false;
    if ((type != nullptr && !value.ConvertTo(*type)) || !value.Settle())
        return tokens_.Fail("field \"" + name + "\" cannot have this value");
    // The way to write a record that has no fields.
    if (name.empty() && value.data.empty()) return true;
    if (code != 0) value.type = code;
    return value.AddTo(message, name) == B_OK ||
           tokens_.Fail("field \"" + name + "\" is empty or has items of another type");
}

// --- Points, rectangles, colours ---

bool RdefValueParser::ReadNumbers(std::size_t least, std::size_t most,
                                  std::vector<double>* numbers) {
    if (!tokens_.Advance() || !tokens_.Expect('{')) return false;
    bool more = true;
    while (more && numbers->size() < most) {
        RdefValue number;
        if (!numbers_.ReadNumber(&number)) return false;
        numbers->push_back(*number.real);
        if (!tokens_.Skip(',', &more)) return false;
    }
    if (numbers->size() < least) return tokens_.Fail("too few numbers");
    return tokens_.Expect('}');
}

bool RdefValueParser::ReadFloats(type_code type, std::size_t count, RdefValue* value) {
    std::vector<double> numbers;
    if (!ReadNumbers(count, count, &numbers)) return false;
    std::string bytes;
    for (const double number : numbers)
        AppendNumber(&bytes, static_cast<float>(number));
    *value = RdefValue::Raw(type, bytes);
    return true;
}

bool RdefValueParser::ReadColor(RdefValue* value) {
    constexpr double kOpaque = 255.0;
    std::vector<double> numbers;
    if (!ReadNumbers(3, 4, &numbers)) return false;
    numbers.resize(4, numbers.size() < 4 ? kOpaque : numbers.back());
    std::string bytes;
    for (const double number : numbers) {
        if (number < 0.0 || number > UINT8_MAX) return tokens_.Fail("a colour is 0 to 255");
        bytes += static_cast<char>(static_cast<uint8>(number));
    }
    *value = RdefValue::Raw(B_RGB_COLOR_TYPE, bytes);
    return true;
}

// --- What describes the program ---

bool RdefValueParser::ReadAppValue(RdefValue* value, bool* known) {
    for (const AppResource& resource : kAppResources) {
        if (!tokens_.Current().IsWord(resource.word)) continue;
        *known = true;
        if (!tokens_.Advance()) return false;
        const bool isVersion = resource.type == FourCC("APPV");
        if (isVersion ? !ReadVersion(value) : !ReadValue(value)) return false;
        value->type = resource.type;
        value->defaultId = resource.id;
        value->defaultName = resource.name;
        return true;
    }
    return true;
}

// { major = 1, middle = 0, minor = 0, variety = 0, internal = 0, short_info = "", long_info = "" },
// everything optional.
bool RdefValueParser::ReadVersion(RdefValue* value) {
    constexpr std::size_t kShortSize = 64;
    constexpr std::size_t kLongSize = 256;
    uint32 numbers[5] = {};
    std::string shortText;
    std::string longText;
    bool more = true;
    if (!tokens_.Expect('{')) return false;
    while (more && !tokens_.Current().IsSymbol('}'))
        if (!ReadVersionPart(numbers, &shortText, &longText) || !tokens_.Skip(',', &more))
            return false;
    if (!tokens_.Expect('}')) return false;
    if (shortText.size() >= kShortSize || longText.size() >= kLongSize)
        return tokens_.Fail("the version's text is too long");
    shortText.resize(kShortSize);
    longText.resize(kLongSize);
    std::string bytes;
    for (const uint32 number : numbers)
        AppendNumber(&bytes, number);
    *value = RdefValue::Raw(FourCC("APPV"), bytes + shortText + longText);
    return true;
}

bool RdefValueParser::ReadVersionPart(uint32* numbers, std::string* shortText,
                                      std::string* longText) {
    constexpr const char* kParts[] = {"major", "middle", "minor", "variety", "internal"};
    const RdefToken part = tokens_.Current();
    if (!tokens_.Advance() || !tokens_.Expect('=')) return false;
    if (part.IsWord("short_info")) return tokens_.TakeJoined(Kind::kText, shortText);
    if (part.IsWord("long_info")) return tokens_.TakeJoined(Kind::kText, longText);
    for (std::size_t i = 0; i < std::size(kParts); i++) {
        if (!part.IsWord(kParts[i])) continue;
        int64 number = 0;
        if (!numbers_.ReadInteger(&number)) return false;
        numbers[i] = static_cast<uint32>(number);
        return true;
    }
    return tokens_.Fail("a version has no " + part.text);
}
