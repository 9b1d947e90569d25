// What the program reads from its own resources at start: texts, units, names of bodies and the
// document that every new simulation starts from. Owned by the program's main object; read-only
// after construction, when any thread may call.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "Model/Units/UnitTable.h"
#include "Platform/Application/BMessage.h"

class BResources;

class ProgramResources {
public:
    // From the running program's own file; everything is empty when it carries no resources.
    ProgramResources();
    explicit ProgramResources(const BResources& resources);

    // Shows the texts and the names of units that are there in place of the program's own. Names of
    // bodies and the template stay: what a document holds depends on no language. Before others
    // have the object.
    void Translate(const BResources& translation);

    // The text with this number; empty when there is none.
    [[nodiscard]] const std::string& InterfaceLabel(int32 id) const;
    // The index-th name for a new body; null when there are not so many or the index is negative.
    [[nodiscard]] const char* BodyName(int32 index) const;
    [[nodiscard]] int32 CountBodyNames() const { return static_cast<int32>(bodyNames_.size()); }

    [[nodiscard]] const UnitTable& MassUnits() const { return massUnits_; }
    // For positions and for radii.
    [[nodiscard]] const UnitTable& DistanceUnits() const { return distanceUnits_; }
    [[nodiscard]] const UnitTable& SpeedUnits() const { return speedUnits_; }
    [[nodiscard]] const UnitTable& TimeUnits() const { return timeUnits_; }

    // The record of the new-simulation template; empty when it is missing or damaged.
    [[nodiscard]] const BMessage& NewSimulation() const { return newSimulation_; }

private:
    void ReadBodyNames(const BResources& resources);
    void ReadLabels(const BResources& resources);
    void ReadTemplate(const BResources& resources);

    std::vector<std::string> bodyNames_;
    std::unordered_map<int32, std::string> labels_;
    UnitTable massUnits_;
    UnitTable distanceUnits_;
    UnitTable speedUnits_;
    UnitTable timeUnits_;
    BMessage newSimulation_;
};
