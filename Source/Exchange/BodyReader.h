// Reads bodies from a text of a user's: the language of the examples, comma-separated values
// (CsvBodies.h) or tables of an ephemeris service (EphemerisTables.h). All or nothing. No state
// between two texts; any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "Exchange/BodyImport.h"
#include "Exchange/ExampleText.h"

// What was read.
struct ReadBodies {
    ExampleText text;
    // The Julian date (TDB) of the bodies' states, if the text says it.
    std::optional<double> date;
    // A mass was given in kilograms or grams.
    bool usesKilograms = false;
    // Those of which no mass is known, in the order of the text, as indices of its systems.
    std::vector<std::size_t> massless;

    // The same GM, m3/s2, for all of which none is known.
    void SetMissingMasses(double mass);
};

class BodyReader {
public:
    static constexpr std::size_t kMaxMegabytes = 64;

    explicit BodyReader(const ProgramResources& resources) : resources_(resources) {}

    [[nodiscard]] std::optional<ImportFault> Read(std::string_view text, ReadBodies* result) const;
    // The reason of a file that cannot be opened is the system's.
    [[nodiscard]] std::optional<ImportFault> ReadFile(const std::string& path,
                                                      ReadBodies* result) const;

private:
    // Not UTF-8, a NUL byte, or line ends of two kinds.
    [[nodiscard]] std::optional<ImportFault> FindForeignText(std::string_view text) const;
    [[nodiscard]] std::optional<ImportFault> ReadLanguage(std::string_view text,
                                                          ReadBodies* result) const;

    const ProgramResources& resources_;
};
