// What must hold of the open documents whatever the robot did: undoing everything and redoing it
// leads back to the same documents, what is saved can be read again, what was typed is in the
// model, and reports of kept runs come back to the bit. Works on the robot's thread, with no lock
// held. Failures are those of the test.
#pragma once

#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "Platform/Kernel/OS.h"
#include "Tests/Robot/Dice.h"
#include "Tests/Robot/Journal.h"
#include "Tests/Robot/RobotHands.h"

class AbEpoch;
class BMessage;
class EpochPortal;
class Robot;
class RunHistory;
class SimApp;
class Simulation;

class RobotChecks {
public:
    // None is owned. `folder`: for saved documents.
    RobotChecks(Robot* robot, SimApp* application, Dice* dice, Journal* journal, RobotHands* hands,
                std::string folder)
        : robot_(robot),
          application_(application),
          dice_(dice),
          journal_(journal),
          hands_(hands),
          folder_(std::move(folder)) {}

    // Waits until all windows have done what they were told.
    void Settle() const;
    // The history of one document, and whether it can be saved; or of all.
    void CheckOne();
    void CheckAll();
    // Types something into one of the simulations, ends it somehow, and looks for it.
    void CheckTyping();

private:
    // One start of a history: the window, the document in it, and how many steps are done.
    using Start = std::tuple<thread_id, const AbEpoch*, int>;
    struct Document {
        Simulation* window;
        EpochPortal* portal;
        const RunHistory* history;
    };

    [[nodiscard]] std::vector<Document> Documents() const;
    void Check(const Document& document);
    void CheckHistory(const Document& document);
    // What is kept of its runs: no more than may be, and a report of it to the bit.
    void CheckKept(const Document& document);
    void CheckSaving(const Document& document);
    void Send(const Document& document, const BMessage& message) const;
    void Pause(const Document& document) const;

    Robot* const robot_;
    SimApp* const application_;
    Dice* const dice_;
    Journal* const journal_;
    RobotHands* const hands_;
    const std::string folder_;
    std::map<Start, std::string> starts_;
};
