// A desktop of a test's own: a screen in memory on a free display number, a window manager, a home
// folder, and hands on keyboard and mouse. Programs started here see nothing of the user's desktop
// or settings. All of it ends, and is removed, with this object. Used by one thread.
//
// Windows are named by what WaitForWindow gives. Points count from the left-top corner of a
// window's content, in the screen's own pixels.
#pragma once

#include <QImage>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Tests/Platform/ChildProcess.h"

class DesktopSession {
public:
    // A window's number; empty: no window.
    using Window = std::string;

    // How long to wait for what should happen soon.
    static constexpr std::chrono::seconds kPatience{30};

    // The first program that is not installed and must be; empty when all are there.
    [[nodiscard]] static std::string MissingProgram();

    explicit DesktopSession(int width = 1280, int height = 1024);
    ~DesktopSession();
    DesktopSession(const DesktopSession&) = delete;
    DesktopSession& operator=(const DesktopSession&) = delete;

    // Screen and window manager are there.
    [[nodiscard]] bool IsReady() const { return isReady_; }

    // --- Programs ---
    // A place for documents and whatever else; it is the home folder, too.
    [[nodiscard]] std::filesystem::path Folder() const { return folder_; }
    // Of programs that are started from now on.
    void SetVariable(const std::string& name, const std::string& value) {
        variables_[name] = value;
    }
    // What it writes can be asked for with Output().
    std::unique_ptr<ChildProcess> Start(const std::vector<std::string>& arguments);
    // Of all programs together.
    [[nodiscard]] std::string Output() const;

    // --- Windows ---
    // The window that is seen, or will be, whose title matches; empty when it does not come.
    // `title`: an extended regular expression.
    [[nodiscard]] Window WaitForWindow(const std::string& title) const;
    // All that are seen now.
    [[nodiscard]] std::vector<Window> WindowsTitled(const std::string& title) const;
    [[nodiscard]] bool WaitForNoWindow(const std::string& title) const;
    [[nodiscard]] std::string Title(const Window& window) const;
    // Its content, on the screen.
    [[nodiscard]] QRect Frame(const Window& window) const;
    // Brings it to the front and gives it the keyboard.
    void Activate(const Window& window) const;
    void Resize(const Window& window, QSize size) const;
    // As the window manager does it for the user.
    void Close(const Window& window) const;
    // As file managers do it; false if the window does not take the file.
    [[nodiscard]] bool Drop(const std::string& path, const Window& window) const;

    // --- Keyboard and mouse ---
    // Brings the window to the front first. Keys: "ctrl+g", "Escape", "shift+Tab".
    void Press(const Window& window, const std::string& keys) const;
    // For what has the keyboard already: a menu that is open, the window that came last.
    void Press(const std::string& keys, int times = 1) const;
    void Type(const std::string& text) const;
    void MoveMouse(const Window& window, QPoint to) const;
    // On the screen.
    void Click(QPoint at) const;
    void DoubleClick(const Window& window, QPoint at) const;
    void Drag(const Window& window, QPoint from, QPoint to) const;
    // Away from the user is positive.
    void TurnWheel(const Window& window, QPoint at, int notches) const;

    // --- What is seen ---
    [[nodiscard]] QImage Screen() const;
    // What the screen shows where the window's content is.
    [[nodiscard]] QImage Picture(const Window& window) const;
    // Waits until the window looks as it should.
    [[nodiscard]] bool WaitForPicture(const Window& window,
                                      const std::function<bool(const QImage&)>& isRight) const;
    // The same for anything else that nobody tells of.
    [[nodiscard]] static bool WaitFor(const std::function<bool()>& isRight);

private:
    [[nodiscard]] bool StartScreen(int width, int height);
    [[nodiscard]] bool StartWindowManager();
    // The screen's name.
    [[nodiscard]] std::string Display() const;
    // Has the hands do it, and waits until they have.
    void Hand(const std::vector<std::string>& arguments) const;

    std::filesystem::path folder_;
    ChildProcess::Environment variables_;
    std::unique_ptr<ChildProcess> screen_;
    std::unique_ptr<ChildProcess> manager_;
    bool isReady_ = false;
};
