// Reads the values of a resource script. Refers to the tokens and to the parser of numbers; owned
// by the parser of the script.
#pragma once

#include <string>
#include <vector>

#include "Tools/ResourceCompiler/RdefNumberParser.h"
#include "Tools/ResourceCompiler/RdefTokens.h"
#include "Tools/ResourceCompiler/RdefValue.h"

class RdefValueParser {
public:
    RdefValueParser(RdefTokens* tokens, RdefNumberParser* numbers)
        : tokens_(*tokens), numbers_(*numbers) {}

    // Every function: false after a fault, which the tokens tell.
    [[nodiscard]] bool ReadValue(RdefValue* value);
    // The current token begins a cast.
    [[nodiscard]] bool IsCast() const;

private:
    // A value whose numbers have no type yet.
    bool ReadUntyped(RdefValue* value);
    bool ReadCast(RdefValue* value);
    bool ReadWordValue(RdefValue* value);

    bool ReadArray(RdefValue* value);
    bool ReadImport(std::string* bytes);
    bool ReadWhat(uint32* what);
    bool ReadMessage(RdefValue* value);
    bool ReadArchive(RdefValue* value);
    bool ReadFields(BMessage* message);
    bool ReadField(BMessage* message);
    bool ReadNumbers(std::size_t least, std::size_t most, std::vector<double>* numbers);
    bool ReadFloats(type_code type, std::size_t count, RdefValue* value);
    bool ReadColor(RdefValue* value);
    bool ReadAppValue(RdefValue* value, bool* known);
    bool ReadVersion(RdefValue* value);
    bool ReadVersionPart(uint32* numbers, std::string* shortText, std::string* longText);

    RdefTokens& tokens_;
    RdefNumberParser& numbers_;
};
