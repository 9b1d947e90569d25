// The menu bar of a projection display. Made by the display's Init; used with the display's lock.
#pragma once

#include <vector>

#include "Displays/Projection/BodyLabels.h"
#include "Platform/Support/SupportDefs.h"

class BMenu;
class BMenuBar;
class BMenuItem;
class CompareMenu;
class EpochPortal;
class FrameMenu;
class LookMenu;
class MeasureMenu;
class TrailMenu;
class Display;
struct DisplayContext;

// What the display is asked for by its menus.
inline constexpr uint32 kRequestScale = FourCC("rqsc");
inline constexpr uint32 kRequestAxis = FourCC("rqax");
inline constexpr uint32 kErase = FourCC("eras");
inline constexpr uint32 kFit = FourCC("fit ");
inline constexpr uint32 kFollow = FourCC("folw");  // with int64 "System"
inline constexpr uint32 kToggleNames = FourCC("tnam");
inline constexpr uint32 kToggleScaleBar = FourCC("tbar");
inline constexpr uint32 kToggleTime = FourCC("ttim");
inline constexpr uint32 kToggleMarks = FourCC("tmrk");
inline constexpr uint32 kThrowIn = FourCC("thin");  // a new body, in the middle of the picture
inline constexpr uint32 kSavePicture = FourCC("svpi");
inline constexpr const char* kFollowedSystem = "System";

// What is shown over the picture.
struct DisplayOptions {
    bool names = false;
    bool scaleBar = true;
    bool time = true;
    bool marks = true;  // of small bodies
};

class DisplayMenus {
public:
    // The application's menu, the file's, the simulation's, the display's and the view's.
    DisplayMenus(Display* display, const DisplayContext& context);

    // Those of the window that these menus have, too.
    static void RemoveShortcuts(Display* display);
    // For the display's window, which takes it over.
    [[nodiscard]] BMenuBar* Bar() const { return bar_; }
    void SetGoLabel(const char* label);
    // Whether there is a moment of the past to branch at and to come back from.
    void ShowMoment(bool isPast);
    // After these changes of the model. Takes its read lock.
    void Redisplay(int32 changes, EpochPortal* portal);
    void ShowOptions(const DisplayOptions& options);
    [[nodiscard]] FrameMenu& Frame() const { return *frame_; }
    [[nodiscard]] TrailMenu& Trail() const { return *trail_; }
    [[nodiscard]] CompareMenu& Compare() const { return *compare_; }
    // What can be followed, and what is: kNoSystemID for nothing.
    void ShowSystems(const BodyLabels& labels, int64 followed);
    // Of the same systems another one is followed. The items stay: one may just have been chosen.
    void ShowFollowed(const BodyLabels& labels, int64 followed);

protected:
    // The menus that displays of all kinds have: the application's, the file's, the simulation's.
    struct Common {};
    DisplayMenus(Display* display, const DisplayContext& context, Common);

    BMenuItem* AddItem(BMenu* menu, int32 label, uint32 what, int32 key = 0);
    void AddFollowMenu(BMenu* menu);
    void AddLookMenu(BMenu* menu);
    // What hands do and measure without a mouse.
    void AddHandItems(BMenu* menu);

private:
    void AddAppMenu();
    void AddFileMenu();
    void AddSimulationMenu();
    void AddDisplayMenu();
    void AddViewMenu();
    void AddSystem(const char* name, int64 id, int64 followed);

    Display* const display_;
    const DisplayContext& context_;
    BMenuBar* const bar_;
    BMenuItem* go_ = nullptr;
    BMenuItem* runBackwards_ = nullptr;
    BMenuItem* branch_ = nullptr;
    BMenuItem* backToNow_ = nullptr;
    BMenu* follow_ = nullptr;
    LookMenu* look_ = nullptr;
    MeasureMenu* measure_ = nullptr;
    BMenuItem* names_ = nullptr;
    BMenuItem* scaleBar_ = nullptr;
    BMenuItem* time_ = nullptr;
    BMenuItem* marks_ = nullptr;
    FrameMenu* frame_ = nullptr;
    TrailMenu* trail_ = nullptr;
    CompareMenu* compare_ = nullptr;
};
