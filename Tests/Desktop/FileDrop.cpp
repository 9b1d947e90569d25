#include "FileDrop.h"

#include <X11/Xlib.h>
#include <poll.h>

#include <algorithm>
#include <cstdlib>

namespace {

constexpr long kProtocolVersion = 5;

// The side of the one who drags.
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

bool DropFile(const std::string& display, const std::string& window, QPoint at,
              const std::string& path, std::chrono::milliseconds patience) {
    Display* const server = XOpenDisplay(display.c_str());
    if (server == nullptr) return false;
    const Window root = DefaultRootWindow(server);
    const Dragger dragger{server, XCreateSimpleWindow(server, root, 0, 0, 1, 1, 0, 0, 0),
                          std::strtoul(window.c_str(), nullptr, 10)};
    XSetSelectionOwner(server, dragger.Named("XdndSelection"), dragger.own, CurrentTime);
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
    XCloseDisplay(server);
    return isTaken;
}
