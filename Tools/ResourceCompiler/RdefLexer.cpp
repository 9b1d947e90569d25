#include "Tools/ResourceCompiler/RdefLexer.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace {

using Kind = RdefToken::Kind;

constexpr std::size_t kMaxIncludes = 32;

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

bool IsWordStart(char c) {
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
}

int DigitValue(char c) {
    if (IsDigit(c)) return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return 16;
}

}  // namespace

bool RdefLexer::ReadFile(const std::string& path, std::string* contents) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error)) return false;
    std::ifstream file(path, std::ios::binary);
    contents->assign(std::istreambuf_iterator<char>(file), {});
    return !file.fail();
}

bool RdefLexer::Open(const std::string& path) {
    std::string text;
    if (!ReadFile(path, &text)) return Fail("cannot read \"" + path + '"');
    if (scripts_.size() >= kMaxIncludes) return Fail("too many files include each other");
    scripts_.push_back({path, std::move(text)});
    return true;
}

bool RdefLexer::Fail(const std::string& reason) {
    error_ = reason;
    if (!scripts_.empty())
        error_ = Current().path + ':' + std::to_string(Current().line) + ": " + reason;
    return false;
}

std::string RdefLexer::Relative(const std::string& from, const std::string& path) {
    return (std::filesystem::path(from).parent_path() / path).native();
}

char RdefLexer::Peek(std::size_t ahead) const {
    const Script& script = scripts_.back();
    return script.at + ahead < script.text.size() ? script.text[script.at + ahead] : '\0';
}

char RdefLexer::Take() {
    const char c = Peek();
    if (Current().at < Current().text.size()) Current().at++;
    if (c == '\n') Current().line++;
    return c;
}

bool RdefLexer::SkipBlanks() {
    for (;;) {
        if (Peek() == '/' && Peek(1) == '/') {
            while (Peek() != '\n' && Peek() != '\0')
                Take();
        } else if (Peek() == '/' && Peek(1) == '*') {
            while (!(Peek() == '*' && Peek(1) == '/'))
                if (Take() == '\0') return Fail("a comment is not closed");
            Take();
            Take();
        } else if (std::string_view(" \t\r\n").find(Peek()) != std::string_view::npos) {
            Take();
        } else {
            return true;
        }
    }
}

bool RdefLexer::Next(RdefToken* token) {
    *token = RdefToken();
    for (;;) {
        if (!SkipBlanks()) return false;
        if (Peek() == '#') {
            token->path = Current().path;
            token->line = Current().line;
            if (!ReadHash(token)) return false;
            if (token->Is(Kind::kTypeCode)) return true;
            continue;
        }
        if (Current().at < Current().text.size()) break;
        if (scripts_.size() == 1) break;
        scripts_.pop_back();
    }
    token->path = Current().path;
    token->line = Current().line;
    if (Current().at == Current().text.size()) return true;
    const char c = Peek();
    if (IsDigit(c) || (c == '.' && IsDigit(Peek(1))) || c == '\'') return ReadNumber(token);
    if (c == '"') return ReadText(token);
    if (c == '$') return ReadBytes(token);
    if (IsWordStart(c)) {
        ReadWord(token);
        return true;
    }
    if (std::string_view("(){},;=+-*/%|^&~").find(c) == std::string_view::npos || c == '\0')
        return Fail(std::string("a stray character: ") + c);
    token->kind = Kind::kSymbol;
    token->text = Take();
    return true;
}

// A type code, or an #include, which gives no token.
bool RdefLexer::ReadHash(RdefToken* token) {
    Take();
    if (IsWordStart(Peek())) {
        RdefToken word;
        ReadWord(&word);
        return word.text == "include" ? Include() : Fail("unknown directive #" + word.text);
    }
    if (Peek() != '\'' && !IsDigit(Peek())) return Fail("a type code is missing after #");
    if (!ReadNumber(token)) return false;
    if (!token->Is(Kind::kInteger) || token->integer < 0 || token->integer > UINT32_MAX)
        return Fail("not a type code");
    token->kind = Kind::kTypeCode;
    return true;
}

bool RdefLexer::Include() {
    RdefToken name;
    if (!SkipBlanks()) return false;
    if (Peek() != '"') return Fail("#include needs a file name in quotation marks");
    return ReadText(&name) && Open(Relative(Current().path, name.text));
}

bool RdefLexer::ReadNumber(RdefToken* token) {
    token->kind = Kind::kInteger;
    if (Peek() == '\'') {
        if (!ReadCode(&token->integer)) return false;
        token->real = static_cast<double>(token->integer);
        return true;
    }
    std::string digits;
    const bool isDecimal = !(Peek() == '0' && (Peek(1) == 'x' || Peek(1) == 'b'));
    while (IsWordStart(Peek()) || IsDigit(Peek()) || Peek() == '.' ||
           (isDecimal && (Peek() == '-' || Peek() == '+') && !digits.empty() &&
            (digits.back() == 'e' || digits.back() == 'E')))
        digits += Take();
    const char* const begin = digits.data();
    const char* const end = begin + digits.size();
    if (isDecimal && digits.find_first_of(".eE") != std::string::npos) {
        token->kind = Kind::kReal;
        const auto read = std::from_chars(begin, end, token->real);
        return (read.ec == std::errc() && read.ptr == end) || Fail("not a number: " + digits);
    }
    int base = 10;
    std::size_t prefix = 0;
    if (!isDecimal) {
        base = digits[1] == 'x' ? 16 : 2;
        prefix = 2;
    } else if (digits[0] == '0') {
        base = 8;
    }
    uint64 value = 0;
    const auto read = std::from_chars(begin + prefix, end, value, base);
    token->integer = static_cast<int64>(value);
    token->real = static_cast<double>(value);
    return (read.ec == std::errc() && read.ptr == end) || Fail("not a number: " + digits);
}

bool RdefLexer::ReadCode(int64* code) {
    Take();
    uint32 value = 0;
    for (int i = 0; i < 4; i++) {
        const char c = Take();
        if (c == '\'' || c == '\n' || c == '\0') return Fail("a code has four characters");
        value = value << 8 | static_cast<uint8>(c);
    }
    *code = value;
    return Take() == '\'' || Fail("a code has four characters");
}

bool RdefLexer::ReadText(RdefToken* token) {
    token->kind = Kind::kText;
    Take();
    for (;;) {
        const char c = Take();
        if (c == '"') return true;
        if (c == '\n' || c == '\0') return Fail("a text is not closed on its line");
        if (c != '\\')
            token->text += c;
        else if (!ReadEscape(&token->text))
            return false;
    }
}

bool RdefLexer::ReadEscape(std::string* text) {
    constexpr std::string_view kNames = "bfnrtv";
    constexpr std::string_view kMeanings = "\b\f\n\r\t\v";
    if (Peek() == '\0' || Peek() == '\n') return Fail("a text is not closed on its line");
    if (Peek() == '0' && Peek(1) == 'x') Take();
    if (Peek() == 'x') {
        Take();
        return ReadDigits(2, 16, text);
    }
    if (IsDigit(Peek()) && IsDigit(Peek(1)) && IsDigit(Peek(2))) return ReadDigits(3, 8, text);
    const char c = Take();
    const std::size_t known = kNames.find(c);
    if (known != std::string_view::npos)
        *text += kMeanings[known];
    else
        *text += c == '0' ? '\0' : c;
    return true;
}

bool RdefLexer::ReadDigits(int count, int base, std::string* text) {
    int value = 0;
    for (int i = 0; i < count; i++) {
        const int digit = DigitValue(Take());
        if (digit >= base) return Fail("a digit is missing");
        value = value * base + digit;
    }
    if (value > UINT8_MAX) return Fail("more than a byte holds");
    *text += static_cast<char>(value);
    return true;
}

bool RdefLexer::ReadBytes(RdefToken* token) {
    token->kind = Kind::kBytes;
    Take();
    if (Take() != '"') return Fail("hexadecimal digits in quotation marks are missing after $");
    while (Peek() != '"')
        if (!ReadDigits(2, 16, &token->text)) return false;
    Take();
    return true;
}

void RdefLexer::ReadWord(RdefToken* token) {
    token->kind = Kind::kWord;
    while (IsWordStart(Peek()) || IsDigit(Peek()))
        token->text += Take();
}
