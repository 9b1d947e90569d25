// The windows that belong to no simulation: boxes, one of each kind, the guide and the gallery.
// Owned by the application, on its thread.
#pragma once

#include <string>
#include <vector>

#include "Platform/Support/SupportDefs.h"

class BLooper;
class GalleryWindow;
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
    // Nothing without examples.
    void ShowGallery();
    void QuitAll();

private:
    BLooper* const owner_;
    const InterfaceTexts* const texts_;
    std::vector<MessageWindow*> boxes_;
    // Null until they are asked for.
    GuideWindow* guide_ = nullptr;
    GalleryWindow* gallery_ = nullptr;
};
