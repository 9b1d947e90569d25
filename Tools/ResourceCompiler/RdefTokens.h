// The tokens of a resource script, with a look at the next one but one. Used by one thread.
#pragma once

#include <string>

#include "Tools/ResourceCompiler/RdefLexer.h"

class RdefTokens {
public:
    using Kind = RdefToken::Kind;

    // A value within a value, for as long as it lives: parsers call themselves for each level.
    class Nesting {
    public:
        explicit Nesting(RdefTokens* tokens) : tokens_(*tokens) { tokens_.depth_++; }
        ~Nesting() { tokens_.depth_--; }
        Nesting(const Nesting&) = delete;
        Nesting& operator=(const Nesting&) = delete;

        // False after the fault of too many levels.
        [[nodiscard]] bool IsPossible() const;

    private:
        RdefTokens& tokens_;
    };

    // Every function that returns bool: false after a fault, which Error() tells.
    [[nodiscard]] bool Open(const std::string& path);
    [[nodiscard]] const RdefToken& Current() const { return current_; }
    [[nodiscard]] const RdefToken& Following() const { return following_; }
    [[nodiscard]] bool Advance();
    [[nodiscard]] bool Expect(char symbol);
    // Moves on if the current token is this one.
    [[nodiscard]] bool Skip(char symbol, bool* skipped);

    // One or more texts or byte strings in a row, as one.
    [[nodiscard]] bool TakeJoined(Kind kind, std::string* joined);

    // A fault at the current token.
    bool Fail(const std::string& reason);
    [[nodiscard]] const std::string& Error() const { return error_; }

private:
    bool Read(RdefToken* token);

    RdefLexer lexer_;
    RdefToken current_;
    RdefToken following_;
    std::string error_;
    int depth_ = 0;
};
