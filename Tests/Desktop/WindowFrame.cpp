#include "WindowFrame.h"

#include <X11/Xlib.h>

#include <cstdlib>

// The window may go at any moment.
static int IgnoreError(Display* /*display*/, XErrorEvent* /*error*/) {
    return 0;
}

QRect WindowFrame(const std::string& display, const std::string& window) {
    XSetErrorHandler(IgnoreError);
    Display* const server = XOpenDisplay(display.c_str());
    if (server == nullptr) return {};
    const auto id = static_cast<Window>(std::strtoul(window.c_str(), nullptr, 10));
    XWindowAttributes size{};
    int x = 0;
    int y = 0;
    Window child = None;
    const bool isThere = XGetWindowAttributes(server, id, &size) != 0 &&
                         XTranslateCoordinates(server, id, size.root, 0, 0, &x, &y, &child) != 0;
    XCloseDisplay(server);
    return isThere ? QRect(x, y, size.width, size.height) : QRect();
}
