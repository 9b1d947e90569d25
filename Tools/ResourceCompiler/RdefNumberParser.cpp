#include "Tools/ResourceCompiler/RdefNumberParser.h"

#include <iterator>
#include <string_view>

namespace {

using Kind = RdefToken::Kind;

// Weakest first.
constexpr std::string_view kOperators[] = {"|", "^", "&", "+-", "*/%"};
constexpr int kOperatorLevels = std::size(kOperators);

bool Apply(char sign, int64* left, int64 right) {
    // Unsigned, because an overflow there has a meaning.
    const auto a = static_cast<uint64>(*left);
    const auto b = static_cast<uint64>(right);
    switch (sign) {
        case '|':
            *left |= right;
            return true;
        case '^':
            *left ^= right;
            return true;
        case '&':
            *left &= right;
            return true;
        case '+':
            *left = static_cast<int64>(a + b);
            return true;
        case '-':
            *left = static_cast<int64>(a - b);
            return true;
        case '*':
            *left = static_cast<int64>(a * b);
            return true;
        default:
            if (right == 0 || (right == -1 && *left == INT64_MIN)) return false;
            *left = sign == '/' ? *left / right : *left % right;
            return true;
    }
}

}  // namespace

RdefNumberParser::RdefNumberParser(RdefTokens* tokens)
    : tokens_(*tokens),
      constants_{{"B_SINGLE_LAUNCH", 0},
                 {"B_MULTIPLE_LAUNCH", 1},
                 {"B_EXCLUSIVE_LAUNCH", 2},
                 {"B_BACKGROUND_APP", 4},
                 {"B_ARGV_ONLY", 8}} {}

bool RdefNumberParser::ReadNumber(RdefValue* value) {
    const RdefToken& first = tokens_.Current();
    if (first.Is(Kind::kReal) || (first.IsSymbol('-') && tokens_.Following().Is(Kind::kReal))) {
        double real = 0.0;
        if (!ReadReal(&real)) return false;
        *value = RdefValue::Real(real);
        return true;
    }
    int64 integer = 0;
    if (!ReadInteger(&integer)) return false;
    *value = RdefValue::Integer(integer);
    return true;
}

bool RdefNumberParser::ReadReal(double* value) {
    bool negative = false;
    if (!tokens_.Skip('-', &negative)) return false;
    *value = negative ? -tokens_.Current().real : tokens_.Current().real;
    return tokens_.Advance();
}

bool RdefNumberParser::ReadBinary(int level, int64* value) {
    if (level == kOperatorLevels) return ReadUnary(value);
    if (!ReadBinary(level + 1, value)) return false;
    for (;;) {
        const RdefToken& sign = tokens_.Current();
        if (!sign.Is(Kind::kSymbol) ||
            kOperators[level].find(sign.text[0]) == std::string_view::npos)
            return true;
        const char symbol = sign.text[0];
        int64 right = 0;
        if (!tokens_.Advance() || !ReadBinary(level + 1, &right)) return false;
        if (!Apply(symbol, value, right)) return tokens_.Fail("a division that has no result");
    }
}

bool RdefNumberParser::ReadUnary(int64* value) {
    const RdefTokens::Nesting nesting(&tokens_);
    if (!nesting.IsPossible()) return false;
    const RdefToken& first = tokens_.Current();
    if (first.IsSymbol('-') || first.IsSymbol('~')) {
        const bool isMinus = first.IsSymbol('-');
        if (!tokens_.Advance() || !ReadUnary(value)) return false;
        *value = isMinus ? static_cast<int64>(-static_cast<uint64>(*value)) : ~*value;
        return true;
    }
    if (first.IsSymbol('(')) return tokens_.Advance() && ReadInteger(value) && tokens_.Expect(')');
    if (first.Is(Kind::kInteger)) {
        *value = first.integer;
        return tokens_.Advance();
    }
    if (!first.Is(Kind::kWord)) return tokens_.Fail("a value is missing");
    const auto constant = constants_.find(first.text);
    if (constant == constants_.end()) return tokens_.Fail("unknown: " + first.text);
    *value = constant->second;
    return tokens_.Advance();
}
