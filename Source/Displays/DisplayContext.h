// What a display needs of the program that it is part of: texts, units, and copies of the menus
// that all windows have. None is owned; all must outlive the displays. A plain value.
#pragma once

class BBitmap;
class InterfaceTexts;
class MenuArchives;
class UnitTable;

struct DisplayContext {
    const InterfaceTexts* texts;
    const UnitTable* distanceUnits;
    const UnitTable* timeUnits;
    const MenuArchives* menus;
    const BBitmap* icon = nullptr;  // of the application's menu; null: the menu has its name
};
