// Fonts for a program without windows and without a display, so that a CanvasView can put texts
// over its picture. `main`'s thread makes one before the first text; not together with a
// WindowServer.
#pragma once

#include <memory>

class HeadlessGraphics {
public:
    explicit HeadlessGraphics(char* programName);
    ~HeadlessGraphics();
    HeadlessGraphics(const HeadlessGraphics&) = delete;
    HeadlessGraphics& operator=(const HeadlessGraphics&) = delete;

private:
    struct Fonts;
    std::unique_ptr<Fonts> fonts_;
};
