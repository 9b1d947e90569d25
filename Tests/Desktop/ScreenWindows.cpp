#include "Tests/Desktop/ScreenWindows.h"

#include <X11/Xlib.h>
#include <poll.h>

#include <algorithm>
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

constexpr long kProtocolVersion = 5;

// The side of the one who drags a file, by the protocol for that (XDND).
struct Dragger {
    Display* server;
    Window own;
    Window target;

    [[nodiscard]] Atom Named(const char* name) const { return XInternAtom(server, name, False); }

    void Tell(const char* what, std::initializer_list<unsigned long> words) const {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = target;
        event.xclient.message_type = Named(what);
        event.xclient.format = 32;
        event.xclient.data.l[0] = static_cast<long>(own);
        std::copy(words.begin(), words.end(), event.xclient.data.l + 1);
        XSendEvent(server, target, False, NoEventMask, &event);
    }

    void Give(const XSelectionRequestEvent& to, const std::string& list) const {
        XChangeProperty(server, to.requestor, to.property, to.target, 8, PropModeReplace,
                        reinterpret_cast<const unsigned char*>(list.data()),
                        static_cast<int>(list.size()));
        XEvent event{};
        event.xselection = {SelectionNotify, 0,         False,       nullptr, to.requestor,
                            to.selection,    to.target, to.property, to.time};
        XSendEvent(server, to.requestor, False, NoEventMask, &event);
    }

    // The next event; none when it does not come.
    bool Await(XEvent* event, std::chrono::milliseconds patience) const {
        pollfd connection{ConnectionNumber(server), POLLIN, 0};
        while (XPending(server) == 0)
            if (poll(&connection, 1, static_cast<int>(patience.count())) != 1) return false;
        XNextEvent(server, event);
        return true;
    }
};

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

bool ScreenWindows::Drop(const std::string& display, const std::string& window,
                         const std::string& path, std::chrono::milliseconds patience) {
    const QPoint at = Frame(display, window).center();
    const Server server = Connect(display);
    if (server == nullptr) return false;
    const Window root = DefaultRootWindow(server.get());
    const Dragger dragger{
        server.get(), XCreateSimpleWindow(server.get(), root, 0, 0, 1, 1, 0, 0, 0), Number(window)};
    XSetSelectionOwner(server.get(), dragger.Named("XdndSelection"), dragger.own, CurrentTime);
    const auto place = static_cast<unsigned long>((at.x() << 16) | at.y());
    dragger.Tell("XdndEnter", {kProtocolVersion << 24, dragger.Named("text/uri-list")});
    dragger.Tell("XdndPosition", {0, place, CurrentTime, dragger.Named("XdndActionCopy")});
    bool isTaken = false;
    for (XEvent event{}; !isTaken && dragger.Await(&event, patience);) {
        if (event.type == SelectionRequest)
            dragger.Give(event.xselectionrequest, "file://" + path + "\r\n");
        if (event.type != ClientMessage) continue;
        if ((event.xclient.data.l[1] & 1) == 0) break;  // it is not welcome
        isTaken = event.xclient.message_type == dragger.Named("XdndFinished");
        if (!isTaken) dragger.Tell("XdndDrop", {0, CurrentTime});
    }
    return isTaken;
}
