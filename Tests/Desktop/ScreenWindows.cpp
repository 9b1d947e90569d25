#include "ScreenWindows.h"

#include <X11/Xlib.h>

#include <cstdlib>
#include <cstring>
#include <memory>

namespace {

// The connection to the server, for one question.
struct Closer {
    void operator()(Display* display) const { XCloseDisplay(display); }
};
using Server = std::unique_ptr<Display, Closer>;

Server Connect(const std::string& display) {
    // The window may go at any moment.
    XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    return Server(XOpenDisplay(display.c_str()));
}

Window Number(const std::string& window) {
    return static_cast<Window>(std::strtoul(window.c_str(), nullptr, 10));
}

// The bytes of a property; it is a list of windows or a text.
std::string Property(const Server& server, Window window, const char* name) {
    constexpr long kLongest = 1 << 16;
    Atom type = None;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char* data = nullptr;
    const Atom property = XInternAtom(server.get(), name, False);
    if (XGetWindowProperty(server.get(), window, property, 0, kLongest, False, AnyPropertyType,
                           &type, &format, &count, &left, &data) != Success ||
        data == nullptr)
        return {};
    std::string bytes(reinterpret_cast<const char*>(data),
                      count * (format == 8 ? 1 : sizeof(long)));
    XFree(data);
    return bytes;
}

}  // namespace

std::vector<std::string> ScreenWindows::Seen(const std::string& display) {
    std::vector<std::string> seen;
    const Server server = Connect(display);
    if (server == nullptr) return seen;
    const std::string list = Property(server, DefaultRootWindow(server.get()), "_NET_CLIENT_LIST");
    for (std::size_t at = 0; at < list.size(); at += sizeof(Window)) {
        Window window = None;
        std::memcpy(&window, list.data() + at, sizeof window);
        XWindowAttributes look{};
        if (XGetWindowAttributes(server.get(), window, &look) != 0 && look.map_state == IsViewable)
            seen.push_back(std::to_string(window));
    }
    return seen;
}

std::string ScreenWindows::Title(const std::string& display, const std::string& window) {
    const Server server = Connect(display);
    return server == nullptr ? "" : Property(server, Number(window), "_NET_WM_NAME");
}

QRect ScreenWindows::Frame(const std::string& display, const std::string& window) {
    const Server server = Connect(display);
    XWindowAttributes look{};
    int x = 0;
    int y = 0;
    Window child = None;
    const bool isThere =
        server != nullptr && XGetWindowAttributes(server.get(), Number(window), &look) != 0 &&
        XTranslateCoordinates(server.get(), Number(window), look.root, 0, 0, &x, &y, &child) != 0;
    return isThere ? QRect(x, y, look.width, look.height) : QRect();
}
