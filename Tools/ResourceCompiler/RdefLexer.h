// Splits resource scripts into tokens. Follows #include into other files, whose names are relative
// to the folder of the script that includes them. Used by one thread, for one script.
#pragma once

#include <string>
#include <vector>

#include "Tools/ResourceCompiler/RdefToken.h"

class RdefLexer {
public:
    // False when the file cannot be read.
    [[nodiscard]] bool Open(const std::string& path);
    // The next token, kEnd after the last; false on a fault in the text.
    [[nodiscard]] bool Next(RdefToken* token);

    // What is wrong: "FILE:LINE: REASON".
    [[nodiscard]] const std::string& Error() const { return error_; }

    // A path as the script `from` means it.
    [[nodiscard]] static std::string Relative(const std::string& from, const std::string& path);

    // The whole file, or false.
    [[nodiscard]] static bool ReadFile(const std::string& path, std::string* contents);

private:
    struct Script {
        std::string path;
        std::string text;
        std::size_t at = 0;
        int line = 1;
    };

    bool Fail(const std::string& reason);
    [[nodiscard]] Script& Current() { return scripts_.back(); }
    [[nodiscard]] char Peek(std::size_t ahead = 0) const;
    char Take();
    bool SkipBlanks();
    bool Include();
    bool ReadHash(RdefToken* token);
    bool ReadNumber(RdefToken* token);
    bool ReadCode(int64* code);
    bool ReadText(RdefToken* token);
    bool ReadEscape(std::string* text);
    bool ReadBytes(RdefToken* token);
    bool ReadDigits(int count, int base, std::string* text);
    void ReadWord(RdefToken* token);

    std::vector<Script> scripts_;  // each included by the one before
    std::string error_;
};
