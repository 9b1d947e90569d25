// What the windows of a simulation need of the program that they are part of: texts, units, and
// copies of the menus that all windows have. None is owned; all must outlive the windows. A plain
// value.
#pragma once

#include "Interface Widgets/InterfaceTexts.h"
#include "Simulation/Document/ProgramResources.h"

class BBitmap;
class InterfaceTexts;
class MenuArchives;
class UnitTable;

struct DisplayContext {
    const InterfaceTexts* texts;
    const UnitTable* massUnits;
    const UnitTable* distanceUnits;  // of positions and radii
    const UnitTable* speedUnits;
    const UnitTable* timeUnits;
    const MenuArchives* menus;
    const BBitmap* icon = nullptr;      // of the application's menu; null: the menu has its name
    const BBitmap* fineIcon = nullptr;  // the same with more pixels
};

// The texts of the program's resources, as widgets ask for them. The resources must outlive it.
class ResourceTexts final : public InterfaceTexts {
public:
    explicit ResourceTexts(const ProgramResources* resources) : resources_(resources) {}

    [[nodiscard]] const std::string& Label(int32 id) const override {
        return resources_->InterfaceLabel(id);
    }

private:
    const ProgramResources* const resources_;
};
