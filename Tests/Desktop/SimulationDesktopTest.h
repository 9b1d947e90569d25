// For tests that work with the program's simulations as a user does who leaves the mouse alone, and
// that look into the documents which he saves.
#pragma once

#include <map>
#include <memory>
#include <string>

#include "Body.h"
#include "DesktopTest.h"
#include "SimulationDocument.h"

class SimulationDesktopTest : public DesktopTest {
protected:
    // What has the keyboard in turn, as the Tab key goes through a simulation's window.
    enum Field : int {
        kEdit,
        kNewBody,
        kName,
        kTrailDisc,
        kMass,
        kMassUnit,
        kRadius,
        kRadiusUnit,
        kRelativeTo,
        kPositionUnit,
        kX,
        kY,
        kZ,
        kVelocityUnit,
        kVx,
        kVy,
        kVz,
        kGo,
        kTime,
        kTimeUnit,
        kNow,
        kUponGo,
        kSlider,
        kCutoff,
        kOrder,
        kFields,
    };
    enum class Answer { kSave, kDontSave, kCancel, kEscape };

    void StartProgram(const std::vector<std::string>& arguments);
    // Starts the program with a copy of that example, and sees its window.
    Window OpenExample(const std::string& example);
    // The window of the document, edited or not; empty if it does not come.
    [[nodiscard]] Window WaitForSimulation(const std::string& path) const;

    // From where the keyboard was left in that window; it begins at the first field.
    void GoTo(const Window& window, Field field);
    // Goes there, types, and presses Enter.
    void Enter(const Window& window, Field field, const std::string& text);
    // Presses Go, sees the window follow the run, and presses Pause.
    void RunAWhile(const Window& window);

    // Whether the title gets the mark of unsaved changes, or loses it.
    [[nodiscard]] bool IsMarked(const Window& window, bool isEdited) const;
    // Presses the key of Save, and waits for the file.
    void Save(const Window& window, const std::string& path) const;
    // The question whether to save is answered with keys; `forGood`: not to be asked again.
    [[nodiscard]] bool IsAsked(const std::string& path) const;
    void GiveAnswer(const std::string& path, Answer answer, bool forGood = false) const;

    // A file that cannot be read counts as a failure, and is an empty document.
    [[nodiscard]] static std::unique_ptr<SimulationDocument> Read(const std::string& path);
    // Of the focus epoch; null and a failure when there is none.
    [[nodiscard]] static const Body* BodyNamed(SimulationDocument* document,
                                               const std::string& name);
    [[nodiscard]] static std::string Bytes(const std::string& path);

private:
    std::map<Window, int> at_;  // the fields that have the keyboard
};
