#include "ScreenWindows.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace {

// The window may go at any moment.
int IgnoreError(Display* /*display*/, XErrorEvent* /*error*/) {
    return 0;
}

// The connection to the server, for one question.
class Server {
public:
    explicit Server(const std::string& display) {
        XSetErrorHandler(IgnoreError);
        display_ = XOpenDisplay(display.c_str());
    }
    ~Server() {
        if (display_ != nullptr) XCloseDisplay(display_);
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    [[nodiscard]] Display* Get() const { return display_; }
    [[nodiscard]] Atom Named(const char* name) const { return XInternAtom(display_, name, False); }

    // Calls `take` with the property's data and the number of its elements.
    template <typename Take>
    void Read(Window window, Atom property, Atom type, Take take) const {
        constexpr long kLongest = 1 << 16;
        Atom actualType = None;
        int format = 0;
        unsigned long count = 0;
        unsigned long left = 0;
        unsigned char* data = nullptr;
        if (XGetWindowProperty(display_, window, property, 0, kLongest, False, type, &actualType,
                               &format, &count, &left, &data) != Success ||
            data == nullptr)
            return;
        if (actualType == type) take(data, count);
        XFree(data);
    }

private:
    Display* display_;
};

bool IsSeen(const Server& server, Window window) {
    XWindowAttributes look{};
    return XGetWindowAttributes(server.Get(), window, &look) != 0 && look.map_state == IsViewable;
}

bool IsMenu(const Server& server, Window window) {
    bool isMenu = false;
    const Atom types[] = {server.Named("_NET_WM_WINDOW_TYPE_DROPDOWN_MENU"),
                          server.Named("_NET_WM_WINDOW_TYPE_POPUP_MENU")};
    server.Read(window, server.Named("_NET_WM_WINDOW_TYPE"), XA_ATOM,
                [&](const unsigned char* data, unsigned long count) {
                    const auto* const own = reinterpret_cast<const Atom*>(data);
                    isMenu = std::find_first_of(own, own + count, std::begin(types),
                                                std::end(types)) != own + count;
                });
    return isMenu;
}

Window Number(const std::string& window) {
    return static_cast<Window>(std::strtoul(window.c_str(), nullptr, 10));
}

}  // namespace

std::vector<std::string> ScreenWindows::Seen(const std::string& display) {
    std::vector<std::string> seen;
    const Server server(display);
    if (server.Get() == nullptr) return seen;
    server.Read(DefaultRootWindow(server.Get()), server.Named("_NET_CLIENT_LIST"), XA_WINDOW,
                [&](const unsigned char* data, unsigned long count) {
                    const auto* const windows = reinterpret_cast<const Window*>(data);
                    for (unsigned long i = 0; i < count; i++)
                        if (IsSeen(server, windows[i])) seen.push_back(std::to_string(windows[i]));
                });
    return seen;
}

int ScreenWindows::CountMenus(const std::string& display) {
    const Server server(display);
    if (server.Get() == nullptr) return 0;
    Window root = None;
    Window parent = None;
    Window* children = nullptr;
    unsigned int count = 0;
    if (XQueryTree(server.Get(), DefaultRootWindow(server.Get()), &root, &parent, &children,
                   &count) == 0)
        return 0;
    const auto menus = std::count_if(children, children + count, [&server](Window window) {
        return IsSeen(server, window) && IsMenu(server, window);
    });
    XFree(children);
    return static_cast<int>(menus);
}

std::string ScreenWindows::Title(const std::string& display, const std::string& window) {
    std::string title;
    const Server server(display);
    if (server.Get() == nullptr) return title;
    server.Read(Number(window), server.Named("_NET_WM_NAME"), server.Named("UTF8_STRING"),
                [&](const unsigned char* data, unsigned long count) {
                    title.assign(reinterpret_cast<const char*>(data), count);
                });
    return title;
}

QRect ScreenWindows::Frame(const std::string& display, const std::string& window) {
    const Server server(display);
    if (server.Get() == nullptr) return {};
    const Window number = Number(window);
    XWindowAttributes size{};
    int x = 0;
    int y = 0;
    Window child = None;
    const bool isThere =
        XGetWindowAttributes(server.Get(), number, &size) != 0 &&
        XTranslateCoordinates(server.Get(), number, size.root, 0, 0, &x, &y, &child) != 0;
    return isThere ? QRect(x, y, size.width, size.height) : QRect();
}
