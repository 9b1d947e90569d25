// What the windows of a simulation need of the program that they are part of: texts, units, and
// copies of the menus that all windows have. None is owned; all must outlive the windows. A plain
// value.
#pragma once

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
