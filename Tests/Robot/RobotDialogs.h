// Answers at random whatever waits for an answer: open menus and lists of choices, questions, the
// toolkit's dialogs and file panels. On the window server's thread.
#pragma once

#include <string>

#include "Tests/Robot/Dice.h"
#include "Tests/Robot/Journal.h"
#include "Tests/Robot/OnScreen.h"

class QFileDialog;
class QMenu;

class RobotDialogs {
public:
    // `folder`: where files are opened and saved; no other is touched.
    RobotDialogs(Dice* dice, Journal* journal, std::string folder)
        : dice_(dice), journal_(journal), folder_(std::move(folder)) {}

    // What must be answered before anything else can be used. False if there is nothing.
    bool AnswerModal();
    // Something that is open beside the other windows. False if there is nothing.
    bool AnswerOne(const Windows& windows);
    // So that the program can go on to end.
    void AnswerToEnd();

    // Whether the robot wants it: mostly the program is to go on.
    [[nodiscard]] bool Wants(const QAction& item);

private:
    void Note(const std::string& what, const QWidget* where);
    void UseDialog(QWidget* dialog);
    void UsePopup(QWidget* popup);
    void UseMenu(QMenu* menu);
    void UsePanel(QFileDialog* panel);

    Dice* const dice_;
    Journal* const journal_;
    const std::string folder_;
};
