#include "Tools/ResourceCompiler/RdefTokens.h"

#include <utility>

namespace {

constexpr int kMaxDepth = 256;

}  // namespace

bool RdefTokens::Nesting::IsPossible() const {
    return tokens_.depth_ <= kMaxDepth || tokens_.Fail("values are nested too deeply");
}

bool RdefTokens::Open(const std::string& path) {
    if (lexer_.Open(path)) return Read(&current_) && Read(&following_);
    error_ = lexer_.Error();
    return false;
}

bool RdefTokens::Read(RdefToken* token) {
    if (lexer_.Next(token)) return true;
    error_ = lexer_.Error();
    return false;
}

bool RdefTokens::Advance() {
    current_ = std::move(following_);
    return Read(&following_);
}

bool RdefTokens::Expect(char symbol) {
    if (!current_.IsSymbol(symbol)) return Fail(std::string("missing: ") + symbol);
    return Advance();
}

bool RdefTokens::Skip(char symbol, bool* skipped) {
    *skipped = current_.IsSymbol(symbol);
    return !*skipped || Advance();
}

bool RdefTokens::TakeJoined(Kind kind, std::string* joined) {
    joined->clear();
    if (!current_.Is(kind))
        return Fail(kind == Kind::kText ? "a text in quotation marks is missing"
                                        : "bytes are missing");
    while (current_.Is(kind)) {
        *joined += current_.text;
        if (!Advance()) return false;
    }
    return true;
}

bool RdefTokens::Fail(const std::string& reason) {
    error_ = current_.path + ':' + std::to_string(current_.line) + ": " + reason;
    return false;
}
