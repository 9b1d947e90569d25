// The menus that every window of a simulation has copies of, as records to make them from: built
// once at start, read-only afterwards, when any thread may call.
#pragma once

#include <memory>
#include <vector>

#include "Interface Widgets/ExampleMenu.h"
#include "Platform/Application/BMessage.h"

class BMenu;
class InterfaceTexts;
class UnitTable;

// Null when it is no menu's record.
[[nodiscard]] std::unique_ptr<BMenu> MakeMenu(const BMessage& archive);

class MenuArchives {
public:
    // To a simulation: ask how far a run is to go.
    static constexpr uint32 kRequestRun = FourCC("rqrn");

    MenuArchives(const InterfaceTexts& texts, const UnitTable& mass, const UnitTable& distance,
                 const UnitTable& speed, const UnitTable& time,
                 const std::vector<Example>& examples = {});

    // A BMenu whose items are for the application; "Open..." has a null pointer "Simulation".
    [[nodiscard]] const BMessage& AppMenuArchive() const { return appMenu_; }
    // A BMenu whose items are for the owner of the simulation.
    [[nodiscard]] const BMessage& SimMenuArchive() const { return simMenu_; }
    // AbbreviatedMenuFields around a UnitMenu.
    [[nodiscard]] const BMessage& MassUnitMenuArchive() const { return massUnits_; }
    [[nodiscard]] const BMessage& DistanceUnitMenuArchive() const { return distanceUnits_; }
    [[nodiscard]] const BMessage& SpeedUnitMenuArchive() const { return speedUnits_; }
    [[nodiscard]] const BMessage& TimeUnitMenuArchive() const { return timeUnits_; }

    [[nodiscard]] static BMessage MakeUnitMenuFieldArchive(const UnitTable& table);

private:
    [[nodiscard]] static BMessage MakeAppMenuArchive(const InterfaceTexts& texts,
                                                     const std::vector<Example>& examples);
    [[nodiscard]] static BMessage MakeSimMenuArchive(const InterfaceTexts& texts);

    BMessage appMenu_;
    BMessage simMenu_;
    BMessage massUnits_;
    BMessage distanceUnits_;
    BMessage speedUnits_;
    BMessage timeUnits_;
};
