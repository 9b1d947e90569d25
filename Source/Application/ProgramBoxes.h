// The windows that belong to no simulation and only tell something: boxes, one of each kind, and
// the guide. Owned by the application, on its thread.
#pragma once

#include <string>
#include <vector>

#include "Platform/Support/SupportDefs.h"

class BLooper;
class GuideWindow;
class InterfaceTexts;
class MessageWindow;

class ProgramBoxes {
public:
    // The owner gets the boxes' messages. Neither is owned.
    ProgramBoxes(BLooper* owner, const InterfaceTexts* texts) : owner_(owner), texts_(texts) {}

    // Shows it, or brings the one with the same id to the front.
    void Show(int32 id, int32 title, const std::string& text);
    // Quits the box, if it is one of these.
    void Closed(const void* window);
    void ShowGuide();
    void QuitAll();

private:
    BLooper* const owner_;
    const InterfaceTexts* const texts_;
    std::vector<MessageWindow*> boxes_;
    GuideWindow* guide_ = nullptr;  // null until it is asked for
};
