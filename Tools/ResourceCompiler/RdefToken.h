// The smallest pieces of a resource script. A plain value.
#pragma once

#include <string>

#include "Platform/Support/SupportDefs.h"

struct RdefToken {
    enum class Kind { kEnd, kWord, kInteger, kReal, kText, kBytes, kTypeCode, kSymbol };

    Kind kind = Kind::kEnd;
    // The word, the symbol, the text without its terminating 0, or the bytes.
    std::string text;
    int64 integer = 0;  // of kInteger and kTypeCode
    double real = 0.0;  // of kReal and kInteger
    // Where it stands.
    std::string path;
    int line = 0;

    [[nodiscard]] bool Is(Kind wanted) const { return kind == wanted; }
    [[nodiscard]] bool IsSymbol(char symbol) const {
        return kind == Kind::kSymbol && text[0] == symbol;
    }
    [[nodiscard]] bool IsWord(const char* word) const {
        return kind == Kind::kWord && text == word;
    }
};
