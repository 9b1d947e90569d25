// Bodies as comma-separated values. The first line names a quantity and its unit in each column:
// "name, gm [km3/s2], radius [km], x [km], ..., vx [km/s], ...", in any order; "mass" stands for
// "gm", in units of mass. A column "t" of times may come with a run: of several moments the first
// is read. Lines that begin with a number sign are remarks. Astronomical units are today's.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Exchange/BodyReader.h"

class CsvBodies {
public:
    explicit CsvBodies(const ProgramResources& resources) : resources_(resources) {}

    [[nodiscard]] std::optional<ImportFault> Read(std::string_view text, ReadBodies* result);

private:
    struct Quantity;
    static const Quantity kQuantities[];
    using Wrong = std::optional<std::string>;

    struct Column {
        const Quantity* quantity;
        double factor;
    };

    Wrong ReadHeader(std::string_view line, ReadBodies* result);
    Wrong ReadColumn(std::string_view heading, ReadBodies* result);
    Wrong FindUnit(const Quantity& quantity, std::string_view unit, double* factor) const;
    Wrong FindMissing() const;
    // `isFirst`: of the first moment, and so a body.
    Wrong ReadRow(std::string_view line, ExampleSystem* body, bool* isFirst);
    void ShowIn(const Column& column, ExampleUnits* units) const;
    [[nodiscard]] bool Has(std::string_view name) const;
    [[nodiscard]] std::string Problem(int32 text, std::string_view what = {},
                                      std::string_view more = {}) const;
    [[nodiscard]] std::string AtColumn(std::size_t index, const std::string& reason) const;

    const ProgramResources& resources_;
    std::vector<Column> columns_;
    std::optional<double> firstTime_;
};
