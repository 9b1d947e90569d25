// Writes the systems of an epoch in the language of the examples, which ExampleParser reads back to
// the same bits: lengths in m, speeds in m/s, masses as GM. Identifiers are not written, and a
// system that shares its name with another one is nobody's reference. Under the lock of the epoch.
#pragma once

#include <map>
#include <string>

#include "Exchange/ExampleText.h"

class AbEpoch;
class MassSystem;
class ProgramResources;
class UnitTable;

class ExampleWriter {
public:
    explicit ExampleWriter(const ProgramResources& resources) : resources_(resources) {}

    [[nodiscard]] std::string Write(const AbEpoch& epoch);

private:
    void CountNames(const MassSystem& system);
    void WriteEpoch(const AbEpoch& epoch);
    void WriteSystem(const MassSystem& system, const AbEpoch& epoch);
    void WriteUnits(const MassSystem& system);
    void ShowIn(const char* quantity, const UnitTable& units, double factor, double* shown);
    void WriteLook(const MassSystem& system, const AbEpoch& epoch);
    void WriteColor(const char* word, rgb_color color, bool isOn);
    void Line(const std::string& statement);

    const ProgramResources& resources_;
    std::string text_;
    std::map<std::string, int> names_;  // how many systems have each
    ExampleUnits shownIn_;
    std::size_t depth_ = 0;
};
