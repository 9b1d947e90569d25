// Reads the numbers of a resource script: real numbers, and expressions of whole numbers and named
// constants. Refers to the tokens; owned by the parser of the script.
#pragma once

#include <map>
#include <string>

#include "Tools/ResourceCompiler/RdefTokens.h"
#include "Tools/ResourceCompiler/RdefValue.h"

class RdefNumberParser {
public:
    explicit RdefNumberParser(RdefTokens* tokens);

    // Every function that returns bool: false after a fault, which the tokens tell.
    // A real number or a whole-number expression, without a type yet.
    [[nodiscard]] bool ReadNumber(RdefValue* value);
    [[nodiscard]] bool ReadInteger(int64* value) { return ReadBinary(0, value); }

    // False: the name stands for another number.
    [[nodiscard]] bool Define(const std::string& name, int64 value) {
        return constants_.try_emplace(name, value).first->second == value;
    }

private:
    bool ReadReal(double* value);
    // Operators of this level and of those that bind more strongly.
    bool ReadBinary(int level, int64* value);
    bool ReadUnary(int64* value);

    RdefTokens& tokens_;
    std::map<std::string, int64> constants_;
};
