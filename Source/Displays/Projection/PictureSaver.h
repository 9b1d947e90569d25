// Asks for a file, and writes what a display shows into it: its picture, or something else. Owned
// by the display and used with its lock.
#pragma once

#include <cstddef>
#include <memory>
#include <span>
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

    // The message that comes with the choice, and the numbers of texts: the panel's title, and how
    // the names of such files end.
    struct Kind {
        uint32 named;
        int32 title;
        int32 suffix;
    };

    // Neither is owned. Without a kind: of PNG files.
    PictureSaver(Display* display, const InterfaceTexts* texts);
    PictureSaver(Display* display, const InterfaceTexts* texts, const Kind& kind);
    ~PictureSaver();

    // Proposes the display's title as the name.
    void Request();
    // Errors in file handling are silent.
    void Save(const BMessage& choice, const CanvasView& view) const;
    void Save(const BMessage& choice, std::span<const std::byte> bytes) const;

private:
    Display* const display_;
    const InterfaceTexts* const texts_;
    const Kind kind_;
    std::unique_ptr<BFilePanel> panel_;
};
