#include "Tools/ResourceCompiler/RdefParser.h"

#include <limits>
#include <utility>

using Kind = RdefToken::Kind;

bool RdefParser::Parse(const std::string& path) {
    if (!tokens_.Open(path)) return false;
    while (!tokens_.Current().Is(Kind::kEnd)) {
        const bool isEnum = tokens_.Current().IsWord("enum");
        if (!isEnum && !tokens_.Current().IsWord("resource"))
            return tokens_.Fail("a statement begins with resource or enum");
        if (!tokens_.Advance() || !(isEnum ? ReadEnum() : ReadResource()) || !tokens_.Expect(';'))
            return false;
    }
    return true;
}

bool RdefParser::ReadEnum() {
    if (tokens_.Current().Is(Kind::kWord)) {
        names_.SetType(tokens_.Current().text);
        return tokens_.Advance();
    }
    int64 next = 0;
    bool more = true;
    if (!tokens_.Expect('{')) return false;
    while (more && !tokens_.Current().IsSymbol('}')) {
        if (!tokens_.Current().Is(Kind::kWord)) return tokens_.Fail("a name is missing");
        const std::string name = tokens_.Current().text;
        bool given = false;
        if (!tokens_.Advance() || !tokens_.Skip('=', &given)) return false;
        if (given && !numbers_.ReadInteger(&next)) return false;
        if (!numbers_.Define(name, next++))
            return tokens_.Fail("the name is there already: " + name);
        if (!tokens_.Skip(',', &more)) return false;
    }
    return tokens_.Expect('}');
}

bool RdefParser::ReadResource() {
    Id id;
    std::optional<type_code> type;
    RdefValue value;
    const int line = tokens_.Current().line;
    if (!ReadId(&id) || !ReadTypeCode(&type) || !values_.ReadValue(&value)) return false;
    const type_code code = type.value_or(value.type);
    const int32 number = id.number.value_or(value.defaultId);
    const std::string name = id.name.value_or(value.defaultName);
    if (name.size() >= std::numeric_limits<uint16>::max())
        return tokens_.Fail("the resource's name is too long");
    return writer_.Add(code, number, name, std::move(value.data)) ||
           tokens_.Fail("the resource of line " + std::to_string(line) + " with the number " +
                        std::to_string(number) + " is there already");
}

// ( ), (number), ("name"), (number, "name"); a number may be given a name.
bool RdefParser::ReadId(Id* id) {
    if (!tokens_.Current().IsSymbol('(') || tokens_.Following().Is(Kind::kTypeCode) ||
        values_.IsCast())
        return true;
    if (!tokens_.Advance()) return false;
    bool more = !tokens_.Current().IsSymbol(')');
    if (more && !tokens_.Current().Is(Kind::kText))
        if (!ReadIdNumber(id) || !tokens_.Skip(',', &more)) return false;
    if (more && !tokens_.TakeJoined(Kind::kText, &id->name.emplace())) return false;
    return tokens_.Expect(')');
}

bool RdefParser::ReadIdNumber(Id* id) {
    int64 number = 0;
    std::string name;
    if (tokens_.Current().Is(Kind::kWord) && tokens_.Following().IsSymbol('=')) {
        name = tokens_.Current().text;
        if (!tokens_.Advance() || !tokens_.Advance()) return false;
    }
    if (!numbers_.ReadInteger(&number)) return false;
    if (number < std::numeric_limits<int32>::min() || number > std::numeric_limits<int32>::max())
        return tokens_.Fail("a resource's number has 32 bits");
    id->number = static_cast<int32>(number);
    if (name.empty()) return true;
    if (!numbers_.Define(name, number)) return tokens_.Fail("the name is there already: " + name);
    names_.Add(name, *id->number);
    return true;
}

// #'CODE' or (#'CODE').
bool RdefParser::ReadTypeCode(std::optional<type_code>* type) {
    bool opened = false;
    if (tokens_.Following().Is(Kind::kTypeCode) && !tokens_.Skip('(', &opened)) return false;
    if (!tokens_.Current().Is(Kind::kTypeCode)) return true;
    *type = static_cast<type_code>(tokens_.Current().integer);
    return tokens_.Advance() && (!opened || tokens_.Expect(')'));
}
