#include "FileDrop.h"

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <poll.h>

#include <chrono>
#include <cstdlib>
#include <optional>

namespace {

constexpr long kProtocolVersion = 5;
constexpr int kFormat = 32;

using Clock = std::chrono::steady_clock;

// The side of the one who drags, for one drop.
class Dragger {
public:
    Dragger(const std::string& display, Window target, std::string path,
            std::chrono::seconds patience)
        : server_(XOpenDisplay(display.c_str())),
          target_(target),
          path_(std::move(path)),
          patience_(patience) {}
    ~Dragger() {
        if (server_ != nullptr) XCloseDisplay(server_);
    }
    Dragger(const Dragger&) = delete;
    Dragger& operator=(const Dragger&) = delete;

    bool Drop(QPoint at) {
        if (server_ == nullptr) return false;
        const Window root = DefaultRootWindow(server_);
        int x = 0;
        int y = 0;
        Window child = None;
        XTranslateCoordinates(server_, target_, root, at.x(), at.y(), &x, &y, &child);
        own_ = XCreateSimpleWindow(server_, root, 0, 0, 1, 1, 0, 0, 0);
        XSetSelectionOwner(server_, Named("XdndSelection"), own_, CurrentTime);
        Tell("XdndEnter", kProtocolVersion << 24, static_cast<long>(Named("text/uri-list")));
        Tell("XdndPosition", 0, (static_cast<long>(x) << 16) | y, CurrentTime,
             static_cast<long>(Named("XdndActionCopy")));
        const auto isWelcome = Answer("XdndStatus");
        if (!isWelcome || !*isWelcome) return false;
        Tell("XdndDrop", 0, CurrentTime);
        return Answer("XdndFinished").value_or(false);
    }

private:
    [[nodiscard]] Atom Named(const char* name) const { return XInternAtom(server_, name, False); }

    void Tell(const char* what, long first, long second = 0, long third = 0, long fourth = 0) {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = target_;
        event.xclient.message_type = Named(what);
        event.xclient.format = kFormat;
        const long data[] = {static_cast<long>(own_), first, second, third, fourth};
        std::copy(std::begin(data), std::end(data), event.xclient.data.l);
        XSendEvent(server_, target_, False, NoEventMask, &event);
    }

    // Waits for that message, gives the file to who asks for it meanwhile, and returns whether the
    // message agrees; none if it does not come.
    std::optional<bool> Answer(const char* what) {
        const Atom wanted = Named(what);
        const auto end = Clock::now() + patience_;
        for (;;) {
            XEvent event{};
            while (XPending(server_) > 0) {
                XNextEvent(server_, &event);
                if (event.type == SelectionRequest) Give(event.xselectionrequest);
                if (event.type == ClientMessage && event.xclient.message_type == wanted)
                    return (event.xclient.data.l[1] & 1) != 0;
            }
            pollfd connection{ConnectionNumber(server_), POLLIN, 0};
            const auto left =
                std::chrono::duration_cast<std::chrono::milliseconds>(end - Clock::now());
            if (left.count() <= 0 || poll(&connection, 1, static_cast<int>(left.count())) != 1)
                return std::nullopt;
        }
    }

    void Give(const XSelectionRequestEvent& request) {
        const std::string list = "file://" + path_ + "\r\n";
        XChangeProperty(server_, request.requestor, request.property, request.target, 8,
                        PropModeReplace, reinterpret_cast<const unsigned char*>(list.data()),
                        static_cast<int>(list.size()));
        XEvent event{};
        event.xselection.type = SelectionNotify;
        event.xselection.requestor = request.requestor;
        event.xselection.selection = request.selection;
        event.xselection.target = request.target;
        event.xselection.property = request.property;
        event.xselection.time = request.time;
        XSendEvent(server_, request.requestor, False, NoEventMask, &event);
    }

    Display* const server_;
    const Window target_;
    const std::string path_;
    const std::chrono::seconds patience_;
    Window own_ = None;
};

}  // namespace

bool DropFile(const std::string& display, const std::string& window, QPoint at,
              const std::string& path, std::chrono::seconds patience) {
    return Dragger(display, std::strtoul(window.c_str(), nullptr, 10), path, patience).Drop(at);
}
