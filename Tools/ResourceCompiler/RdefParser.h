// Reads a resource script, one statement after the other, and collects its resources.
//
//     enum { NAME [= number], ... };
//     enum TYPE;
//     resource [([NAME =] number, "name")] [#'type'] value;
//
// A NAME stands for its number from there on. Those that a script gives to resources of its own are
// told to the program, as enumerators of the TYPE if there is one: the number of a text is said
// where the text is. The values and their types are those of the platform's resource scripts;
// user-defined types are not known. One cast is added: `(big_endian) message { ... }` stores the
// record, with all that are nested in it, in that byte order. Used by one thread, for one script.
#pragma once

#include <optional>
#include <string>

#include "Tools/ResourceCompiler/RdefNumberParser.h"
#include "Tools/ResourceCompiler/RdefTokens.h"
#include "Tools/ResourceCompiler/RdefValueParser.h"
#include "Tools/ResourceCompiler/ResourceNames.h"
#include "Tools/ResourceCompiler/ResourceWriter.h"

class RdefParser {
public:
    explicit RdefParser(ResourceWriter* writer) : writer_(*writer) {}

    // False on a fault: Error() tells file, line and reason.
    [[nodiscard]] bool Parse(const std::string& path);
    [[nodiscard]] const std::string& Error() const { return tokens_.Error(); }
    [[nodiscard]] const ResourceNames& Names() const { return names_; }

private:
    struct Id {
        std::optional<int32> number;
        std::optional<std::string> name;
    };

    bool ReadEnum();
    bool ReadResource();
    bool ReadId(Id* id);
    bool ReadIdNumber(Id* id);
    bool ReadTypeCode(std::optional<type_code>* type);

    ResourceWriter& writer_;
    ResourceNames names_;
    RdefTokens tokens_;
    RdefNumberParser numbers_{&tokens_};
    RdefValueParser values_{&tokens_, &numbers_};
};
