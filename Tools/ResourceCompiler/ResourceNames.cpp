#include "Tools/ResourceCompiler/ResourceNames.h"

std::string ResourceNames::Header(const std::string& script) const {
    std::string text = "// Made from " + script + ", which has the texts of these numbers.\n" +
                       "#pragma once\n\n#include \"Platform/Support/SupportDefs.h\"\n\nenum " +
                       (type_.empty() ? "" : type_ + ' ') + ": int32 {\n";
    for (const auto& [name, number] : numbers_)
        text += "    " + name + " = " + std::to_string(number) + ",\n";
    return text + "};\n";
}
