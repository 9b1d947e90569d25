// Asks for a file, and writes a display's picture into it. Owned by the display and used with its
// lock.
#pragma once

#include <memory>
#include <string>

#include "Platform/Support/SupportDefs.h"

class BFilePanel;
class BMessage;
class CanvasView;
class InterfaceTexts;
class Display;

class PictureSaver {
public:
    // Comes to the display with the choice.
    static constexpr uint32 kNamed = FourCC("svpn");

    // Neither is owned.
    PictureSaver(Display* display, const InterfaceTexts* texts);
    ~PictureSaver();

    // Proposes the display's title as the name.
    void Request();
    // Errors in file handling are silent.
    void Save(const BMessage& choice, const CanvasView& view) const;

private:
    Display* const display_;
    const InterfaceTexts* const texts_;
    std::unique_ptr<BFilePanel> panel_;
};
