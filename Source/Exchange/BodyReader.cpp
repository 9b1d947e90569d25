#include "Exchange/BodyReader.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>

#include "Exchange/CsvBodies.h"
#include "Exchange/EphemerisTables.h"
#include "Exchange/ExampleParser.h"
#include "Exchange/TextLines.h"
#include "Platform/Support/Utf8.h"
#include "Resources/Exchange.h"
#include "Simulation/Document/BodyColors.h"
#include "Simulation/Document/ProgramResources.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

// Values are told from the language, which has commas between quotation marks alone.
bool IsTable(std::string_view text) {
    for (TextLines lines(text); lines.Next();) {
        const std::string_view line = lines.Line();
        if (line.empty() || line[0] == '#') continue;
        bool isQuoted = false;
        for (const char c : line) {
            if (c == '"') isQuoted = !isQuoted;
            if (c == '#' && !isQuoted) return false;
            if (c == ',' && !isQuoted) return true;
        }
        return false;
    }
    return false;
}

void Colour(std::vector<ExampleSystem>* systems) {
    for (std::size_t i = 0; i < systems->size(); i++)
        (*systems)[i].trail = (*systems)[i].disc = BodyColors::At(static_cast<int64>(i));
}

}  // namespace

void ReadBodies::SetMissingMasses(double mass) {
    for (const std::size_t i : massless)
        text.systems[i].mass = mass;
    massless.clear();
}

std::optional<ImportFault> BodyReader::Read(std::string_view text, ReadBodies* result) const {
    constexpr std::string_view kByteOrderMark = "\xef\xbb\xbf";
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    if (auto fault = FindForeignText(text)) return fault;
    *result = {};
    const bool isEphemeris = EphemerisTables::Are(text);
    if (!isEphemeris && !IsTable(text)) return ReadLanguage(text, result);
    auto fault = isEphemeris ? EphemerisTables(resources_).Read(text, result)
                             : CsvBodies(resources_).Read(text, result);
    Colour(&result->text.systems);
    return fault;
}

std::optional<ImportFault> BodyReader::ReadFile(const std::string& path, ReadBodies* result) const {
    std::error_code error;
    if (std::filesystem::is_directory(path, error)) return ImportFault{0, std::strerror(EISDIR)};
    std::ifstream file(path, std::ios::binary);
    if (!file) return ImportFault{0, std::strerror(errno)};
    constexpr std::size_t kMaxSize = kMaxMegabytes << 20;
    std::string text(kMaxSize + 1, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (file.bad()) return ImportFault{0, std::strerror(EIO)};
    text.resize(static_cast<std::size_t>(file.gcount()));
    if (text.size() > kMaxSize)
        return ImportFault{0, FillIn(resources_.InterfaceLabel(kTextFileTooLarge),
                                     {std::to_string(kMaxMegabytes)})};
    return Read(text, result);
}

std::optional<ImportFault> BodyReader::FindForeignText(std::string_view text) const {
    int line = 1;
    bool isPlain = false;  // a line ends with a line feed alone
    bool hasReturn = false;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t length = text[i] == '\0' ? 0 : Utf8Length(text.substr(i));
        if (length == 0) return ImportFault{line, resources_.InterfaceLabel(kTextNotUtf8)};
        if (text[i] == '\n' || text[i] == '\r') {
            const bool isReturn = text[i] == '\r';
            const bool isPair = isReturn && text.substr(i, 2) == "\r\n";
            (isReturn ? hasReturn : isPlain) = true;
            if ((isReturn && !isPair) || (hasReturn && isPlain))
                return ImportFault{line, resources_.InterfaceLabel(kTextMixedLineEnds)};
            if (isPair) i++;
            line++;
        }
        i += length;
    }
    return std::nullopt;
}

std::optional<ImportFault> BodyReader::ReadLanguage(std::string_view text,
                                                    ReadBodies* result) const {
    ExampleParser parser(resources_);
    parser.SetNeedsEpoch(false);
    if (parser.Parse(text, &result->text)) return std::nullopt;
    return ImportFault{parser.Line(), parser.Reason()};
}
