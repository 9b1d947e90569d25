// What a screen reader is told of programs, over a bus of a test's own: it asks as one does, and
// knows nothing of the programs' inside. Programs must be started after it. Used by one thread.
#pragma once

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <QRect>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "Tests/Desktop/DesktopSession.h"

class ScreenReader {
public:
    // Something in a program that can be spoken of.
    struct Thing {
        std::string role;
        std::string name;
        std::string window;  // the name of the window that it is in
        std::string text;    // what stands in a line that can be edited
        // Of such lines, labels and pop-up menus.
        std::string description;
        QRect frame;  // on the screen
    };

    // The bus's program; empty when it is installed.
    [[nodiscard]] static std::string MissingProgram();

    // Tells the programs of that session where to find it.
    explicit ScreenReader(DesktopSession* session);
    ~ScreenReader();
    ScreenReader(const ScreenReader&) = delete;
    ScreenReader& operator=(const ScreenReader&) = delete;

    [[nodiscard]] bool IsReady() const { return isReady_; }

    // All that is there now, in the order of the tree.
    [[nodiscard]] std::vector<Thing> Look();
    // The first thing of that role and name, or of a name that begins like that; waits for it to
    // come. One without a role if it does not.
    [[nodiscard]] Thing Find(const std::string& role, const std::string& name);
    [[nodiscard]] bool WaitFor(const std::function<bool()>& isRight);

private:
    class Registry;
    struct Place;

    [[nodiscard]] QVariant Ask(const Place& place, const QString& of, const QString& method,
                               const QList<QVariant>& arguments = {}) const;
    [[nodiscard]] std::string Property(const Place& place, const QString& name) const;
    [[nodiscard]] std::vector<Place> ChildrenOf(const Place& place) const;
    [[nodiscard]] QRect FrameOf(const Place& place) const;
    void Add(const Place& place, const std::string& window, std::vector<Thing>* things) const;

    std::unique_ptr<ChildProcess> bus_;
    std::unique_ptr<QCoreApplication> loop_;
    std::unique_ptr<Registry> registry_;
    QDBusConnection connection_{QString()};
    bool isReady_ = false;
};
