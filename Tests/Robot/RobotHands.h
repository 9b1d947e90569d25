// Hands on keyboard and mouse that do something at random to the program's windows: the real
// widgets. On the window server's thread; the caller has it done by Post, so that it comes to the
// program as a user's input does.
#pragma once

#include <functional>
#include <string>

#include "Tests/Robot/Dice.h"
#include "Tests/Robot/Journal.h"
#include "Tests/Robot/OnScreen.h"
#include "Tests/Robot/RobotDialogs.h"

class QLineEdit;

class RobotHands {
public:
    // How a user is done with what he has typed.
    enum class Finish { kEnter, kTab, kEscape, kNothing };

    // None is owned.
    RobotHands(Dice* dice, Journal* journal, RobotDialogs* dialogs)
        : dice_(dice), journal_(journal), dialogs_(dialogs) {}

    // Has it done among the events of the user, and returns at once. Any thread.
    static void Post(std::function<void()> action);

    void DoSomething();
    // Types over what is in the line of that name. False if there is no such line that takes text.
    bool Type(QWidget* window, const std::string& name, const std::string& text, Finish finish);

private:
    // What is used comes to the front and gets the keyboard.
    void Begin(const std::string& what, QWidget* where);
    // One that can be used; null if there is none.
    template <typename Widget>
    Widget* AnyOf(const Windows& windows);
    QPoint PlaceIn(const QWidget& widget);
    void Drag(QWidget* widget);

    bool UseMenu(const Windows& windows);
    bool PressButton(const Windows& windows);
    bool UseEntry(const Windows& windows);
    bool UseChoice(const Windows& windows);
    bool UseSlider(const Windows& windows);
    bool UseList(const Windows& windows);
    bool UseSky(const Windows& windows);
    // Takes hold of bodies, turns, measures and gives up in the same pictures.
    bool UseHands(const Windows& windows);
    void Gesture(QWidget* picture);
    bool UseTimeLine(const Windows& windows);
    bool UseWindow(const Windows& windows);
    void Close(QWidget* window);
    bool PressKey();
    void Fill(QLineEdit* line, const std::string& text, Finish finish);

    Dice* const dice_;
    Journal* const journal_;
    RobotDialogs* const dialogs_;
};
