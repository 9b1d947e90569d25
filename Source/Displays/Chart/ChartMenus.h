// The menu bar of a chart. Made by the display's Init; used with the display's lock.
#pragma once

#include <vector>

#include "Displays/Projection/DisplayMenus.h"

class BMessage;
struct ChartFields;

class ChartMenus : public DisplayMenus {
public:
    // What the display is asked for; with the number of a quantity, a body's identifier, or the
    // number of a Crossing.
    static constexpr uint32 kShow = FourCC("chsh");
    static constexpr uint32 kBody = FourCC("chbd");
    static constexpr uint32 kAbout = FourCC("chab");
    static constexpr uint32 kAgainst = FourCC("chag");
    static constexpr uint32 kPoints = FourCC("chpt");
    static constexpr const char* kValue = "Value";  // int64
    static constexpr uint32 kLogAcross = FourCC("chlx");
    static constexpr uint32 kLogUp = FourCC("chly");
    static constexpr uint32 kLight = FourCC("chli");
    static constexpr uint32 kSaveSvg = FourCC("chsv");
    static constexpr uint32 kSaveCsv = FourCC("chcs");

    ChartMenus(Display* display, const DisplayContext& context);

    // Puts what is chosen with a message of this menu into the fields of a chart that shows these
    // bodies; false for any other message.
    static bool Take(const BMessage& message, const std::vector<int64>& bodies,
                     ChartFields* fields);
    // Marks what is chosen.
    void ShowFields(const ChartFields& fields);
    void ShowBodies(const BodyLabels& labels, const ChartFields& fields);

private:
    void AddOwnMenu();
    BMenu* AddChoices(BMenu* menu, int32 title);
    void AddChoice(BMenu* menu, const char* label, uint32 what, int64 value);
    void AddQuantities();
    static void Mark(const BMenu& menu, const std::vector<int64>& values);

    Display* const display_;
    const DisplayContext& context_;
    BMenu* show_ = nullptr;
    BMenu* bodies_ = nullptr;
    BMenu* about_ = nullptr;
    BMenu* against_ = nullptr;
    BMenu* points_ = nullptr;
    BMenuItem* logAcross_ = nullptr;
    BMenuItem* logUp_ = nullptr;
    BMenuItem* light_ = nullptr;
};
