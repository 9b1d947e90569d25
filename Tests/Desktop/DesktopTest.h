// For tests that use the real program as a user does, mostly one who leaves the mouse alone, and
// that look into the documents which he saves: a desktop, the program on it. Skips where what a
// desktop needs is not installed.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "Model/Systems/Body.h"
#include "Simulation/Document/RecoveryFolder.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Tests/Desktop/DesktopSession.h"

class DesktopTest : public testing::Test {
protected:
    using Window = DesktopSession::Window;

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
        kOnContact,
        kPace,
        kPaceKnob,
        kAutoPace,
        kFields,
    };
    enum class Answer { kSave, kDontSave, kCancel, kEscape };

    void SetUp() override;
    // Leaves what the program said and the screen's last picture, where a test has failed.
    void TearDown() override;

    // --- The program and its windows ---
    // A copy of an example ("planets") in the desktop's folder; its path.
    [[nodiscard]] std::string CopyExample(const std::string& name) const;
    void StartProgram(const std::vector<std::string>& arguments);
    // True if the program ends by itself, and well.
    [[nodiscard]] bool EndsWell();
    // Starts the program with a copy of that example, which `path_` names from then on, and sees
    // its window.
    Window OpenExample(const std::string& example);
    // The window of the document, edited or not; empty if it does not come.
    [[nodiscard]] Window WaitForSimulation(const std::string& path) const;
    [[nodiscard]] bool Comes(const std::string& title) const;
    // What the program writes to its outputs holds this, or soon will.
    [[nodiscard]] bool Says(const std::string& text) const;

    // From where the keyboard was left in that window; it begins at the first field.
    void GoTo(const Window& window, Field field);
    // Goes there, types, and presses Enter.
    void Enter(const Window& window, Field field, const std::string& text);
    // Presses Go, sees the window follow the run, does this, and presses Pause.
    void RunAWhile(
        const Window& window, const std::function<void()>& meanwhile = [] {}) const;

    // --- Saving and closing ---
    // Whether the title gets the mark of unsaved changes, or loses it.
    [[nodiscard]] bool IsMarked(const Window& window, bool isEdited) const;
    // Presses the key of Save, and waits for the file of `path_`.
    void Save(const Window& window) const;
    // The question whether to save is answered with keys; `forGood`: not to be asked again.
    void GiveAnswer(Answer answer, bool forGood = false) const;

    // --- Documents ---
    // A file that cannot be read counts as a failure, and is empty.
    [[nodiscard]] static BMessage Record(const std::string& path);
    [[nodiscard]] static std::unique_ptr<SimulationDocument> Read(const std::string& path);
    // Of the focus epoch; null and a failure when there is none.
    [[nodiscard]] static const Body* BodyNamed(SimulationDocument* document,
                                               const std::string& name);
    [[nodiscard]] static std::string Bytes(const std::string& path);
    [[nodiscard]] std::vector<RecoveryCopy> Copies() const;

    // Without a value where the test is skipped.
    std::optional<DesktopSession> desktop_;
    std::unique_ptr<ChildProcess> program_;
    std::string path_;

private:
    std::map<Window, int> at_;  // the fields that have the keyboard
};
