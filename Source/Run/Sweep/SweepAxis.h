// One direction of a sweep: fields of the document, and the values that they take, one set of them
// after the other. As text, in the words of --edit. A plain value.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

class ProgramResources;

struct SweepAxis {
    using Values = std::vector<std::string>;  // one for each field

    std::vector<std::string> fields;
    std::vector<Values> rows;

    // These make an axis; the answer is empty, or says what is wrong.
    //
    // "FIELD=FROM..TO UNIT x COUNT": so many values from one to the other, both included, at equal
    // distances, or at equal ratios with " log" behind it.
    [[nodiscard]] static std::optional<std::string> FromRange(std::string_view text,
                                                              const ProgramResources& resources,
                                                              SweepAxis* axis);
    // A file of comma-separated values: the fields above the columns of their values.
    [[nodiscard]] static std::optional<std::string> FromFile(const std::string& path,
                                                             const ProgramResources& resources,
                                                             SweepAxis* axis);
};
