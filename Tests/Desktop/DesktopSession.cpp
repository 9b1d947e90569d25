#include "Tests/Desktop/DesktopSession.h"

#include <sys/stat.h>

#include <QtEndian>
#include <fstream>
#include <iterator>
#include <regex>
#include <thread>

#include "Tests/Desktop/ScreenWindows.h"

namespace fs = std::filesystem;

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kLook{15};
constexpr mode_t kOnlyOwner = 0700;

std::string Contents(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

std::string Text(int number) {
    return std::to_string(number);
}

}  // namespace

std::string DesktopSession::MissingProgram() {
    for (const char* const program : {"Xvfb", "openbox", "xdotool"})
        if (ChildProcess({"sh", "-c", std::string("command -v ") + program}, {}).Wait(kPatience) !=
            ChildProcess::Ending{0, 0})
            return program;
    return {};
}

DesktopSession::DesktopSession(int width, int height) {
    std::string name = (fs::temp_directory_path() / "orvek-desktop-XXXXXX").string();
    folder_ = mkdtemp(name.data());
    for (const char* const folder : {"screen", "config", "data", "state", "cache", "runtime"}) {
        fs::create_directory(folder_ / folder);
        chmod((folder_ / folder).c_str(), kOnlyOwner);
    }
    const auto in = [this](const char* folder) { return (folder_ / folder).string(); };
    variables_ = {{"HOME", folder_.string()},
                  {"XDG_CONFIG_HOME", in("config")},
                  {"XDG_DATA_HOME", in("data")},
                  {"XDG_STATE_HOME", in("state")},
                  {"XDG_CACHE_HOME", in("cache")},
                  {"XDG_RUNTIME_DIR", in("runtime")},
                  {"XDG_CURRENT_DESKTOP", std::nullopt},
                  {"WAYLAND_DISPLAY", std::nullopt},
                  {"SESSION_MANAGER", std::nullopt},
                  {"QT_QPA_PLATFORM", "xcb"},
                  {"QT_QPA_PLATFORMTHEME", std::nullopt},
                  {"QT_SCALE_FACTOR", std::nullopt},
                  {"LC_ALL", "C.UTF-8"}};
    isReady_ = StartScreen(width, height) && StartWindowManager();
}

DesktopSession::~DesktopSession() {
    manager_.reset();
    screen_.reset();
    std::error_code error;
    fs::remove_all(folder_, error);
}

// It says its number when it is ready. Without repeated keys: on a slow machine one that is pressed
// for long is one.
bool DesktopSession::StartScreen(int width, int height) {
    const fs::path file = folder_ / "display";
    const std::string size = Text(width) + 'x' + Text(height) + "x24";
    const std::string command = "exec Xvfb -r -displayfd 3 -screen 0 " + size + " -fbdir " +
                                (folder_ / "screen").string() + " -nolisten tcp -noreset 3> " +
                                file.string();
    screen_ = std::make_unique<ChildProcess>(std::vector<std::string>{"sh", "-c", command},
                                             variables_, (folder_ / "screen.log").string());
    std::string number;
    const bool isThere = WaitFor([&] { return (number = Contents(file)).ends_with('\n'); });
    variables_["DISPLAY"] = ':' + number.substr(0, number.find('\n'));
    return isThere;
}

// It says that it is ready by running a command.
bool DesktopSession::StartWindowManager() {
    const fs::path ready = folder_ / "ready";
    manager_ = std::make_unique<ChildProcess>(
        std::vector<std::string>{"openbox", "--sm-disable", "--startup", "touch " + ready.string()},
        variables_, (folder_ / "manager.log").string());
    return WaitFor([&] { return fs::exists(ready); });
}

std::string DesktopSession::Display() const {
    const auto display = variables_.find("DISPLAY");
    return display == variables_.end() ? std::string() : display->second.value_or(std::string());
}

// --- Programs ---

std::unique_ptr<ChildProcess> DesktopSession::Start(const std::vector<std::string>& arguments) {
    return std::make_unique<ChildProcess>(arguments, variables_,
                                          (folder_ / "program.log").string());
}

std::string DesktopSession::Output() const {
    return Contents(folder_ / "program.log");
}

void DesktopSession::Hand(const std::vector<std::string>& arguments) const {
    std::vector<std::string> command{"xdotool"};
    command.insert(command.end(), arguments.begin(), arguments.end());
    static_cast<void>(ChildProcess(command, variables_).Wait(kPatience));
}

// --- Windows ---

std::vector<DesktopSession::Window> DesktopSession::WindowsTitled(const std::string& title) const {
    const std::regex wanted(title, std::regex::extended);
    std::vector<Window> windows = ScreenWindows::Seen(Display());
    std::erase_if(windows,
                  [&](const Window& window) { return !std::regex_search(Title(window), wanted); });
    return windows;
}

DesktopSession::Window DesktopSession::WaitForWindow(const std::string& title) const {
    std::vector<Window> windows;
    static_cast<void>(WaitFor([&] { return !(windows = WindowsTitled(title)).empty(); }));
    return windows.empty() ? Window() : windows.front();
}

bool DesktopSession::WaitForNoWindow(const std::string& title) const {
    return WaitFor([&] { return WindowsTitled(title).empty(); });
}

std::string DesktopSession::Title(const Window& window) const {
    return ScreenWindows::Title(Display(), window);
}

QRect DesktopSession::Frame(const Window& window) const {
    return ScreenWindows::Frame(Display(), window);
}

void DesktopSession::Activate(const Window& window) const {
    Hand({"windowactivate", "--sync", window});
}

void DesktopSession::Resize(const Window& window, QSize size) const {
    Hand({"windowsize", window, Text(size.width()), Text(size.height())});
}

void DesktopSession::Close(const Window& window) const {
    Press(window, "alt+F4");
}

bool DesktopSession::Drop(const std::string& path, const Window& window) const {
    return ScreenWindows::Drop(Display(), window, path, kPatience);
}

// --- Keyboard and mouse ---

void DesktopSession::Press(const Window& window, const std::string& keys) const {
    Activate(window);
    Press(keys);
}

void DesktopSession::Press(const std::string& keys, int times) const {
    if (times > 0) Hand({"key", "--clearmodifiers", "--repeat", Text(times), keys});
}

void DesktopSession::Type(const std::string& text) const {
    Hand({"type", "--delay", "10", "--", text});
}

void DesktopSession::MoveMouse(const Window& window, QPoint to) const {
    Hand({"mousemove", "--window", window, Text(to.x()), Text(to.y())});
}

void DesktopSession::Click(QPoint at) const {
    Hand({"mousemove", Text(at.x()), Text(at.y())});
    Hand({"click", "1"});
}

void DesktopSession::DoubleClick(const Window& window, QPoint at) const {
    MoveMouse(window, at);
    Hand({"click", "--repeat", "2", "--delay", "60", "1"});
}

void DesktopSession::Drag(const Window& window, QPoint from, QPoint to) const {
    MoveMouse(window, from);
    Hand({"mousedown", "1"});
    // A program that waits for a drag to begin sees it move on the way.
    MoveMouse(window, (from + to) / 2);
    MoveMouse(window, to);
    Hand({"mouseup", "1"});
}

void DesktopSession::TurnWheel(const Window& window, QPoint at, int notches) const {
    MoveMouse(window, at);
    Hand({"click", "--repeat", Text(std::abs(notches)), "--delay", "20", notches > 0 ? "4" : "5"});
}

// --- What is seen ---

// The screen's file in memory: a header of big-endian numbers, a colour table, the pixels.
QImage DesktopSession::Screen() const {
    constexpr std::size_t kHeader = 100;
    constexpr std::size_t kColorSize = 12;
    const std::string bytes = Contents(folder_ / "screen" / "Xvfb_screen0");
    if (bytes.size() < kHeader) return {};
    const auto field = [&bytes](std::size_t i) {
        return std::size_t{qFromBigEndian<quint32>(bytes.data() + sizeof(quint32) * i)};
    };
    const std::size_t pixels = field(0) + kColorSize * field(19);
    const std::size_t width = field(4), height = field(5), bytesPerLine = field(12);
    if (bytes.size() < pixels + bytesPerLine * height) return {};
    return QImage(reinterpret_cast<const uchar*>(bytes.data()) + pixels, static_cast<int>(width),
                  static_cast<int>(height), static_cast<qsizetype>(bytesPerLine),
                  QImage::Format_RGB32)
        .copy();
}

QImage DesktopSession::Picture(const Window& window) const {
    return Screen().copy(Frame(window));
}

bool DesktopSession::WaitForPicture(const Window& window,
                                    const std::function<bool(const QImage&)>& isRight) const {
    return WaitFor([&] { return isRight(Picture(window)); });
}

bool DesktopSession::WaitFor(const std::function<bool()>& isRight) {
    const auto end = Clock::now() + kPatience;
    while (!isRight()) {
        if (Clock::now() > end) return false;
        std::this_thread::sleep_for(kLook);
    }
    return true;
}
