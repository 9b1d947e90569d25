// Goes through the history of one document, step by step back to its start and forward again: at
// every depth the document must be as it was there before. One difference is the program's rule:
// what was edited during a run is redone in a copy, since the run's epoch is a record by then.
// After it the walk is repeated, and must lead over the same states.
#pragma once

#include <functional>
#include <string>
#include <vector>

class AbEpoch;
class EpochPortal;

class HistoryWalk {
public:
    using Step = std::function<void()>;

    // `undo`, `redo`: have the document do one step and return when it is done.
    HistoryWalk(EpochPortal* portal, Step undo, Step redo);

    // What differs, and where; empty when nothing does.
    [[nodiscard]] std::string Walk();
    // The document at the start of its history, and how many steps are done there: some, when the
    // oldest have been forgotten.
    [[nodiscard]] const std::string& Start() const { return states_.back().text; }
    [[nodiscard]] int StepsAtStart() const { return stepsAtStart_; }
    // The first epoch at the start: by it a document is known again.
    [[nodiscard]] const AbEpoch* FirstEpoch() const { return firstEpoch_; }

private:
    struct State {
        std::string text;
        int epochs;
    };

    std::string LookAhead();
    void GoBack();
    std::string GoForward();
    [[nodiscard]] State Now() const;
    // The step that led from one state to the other went into a copy only the second time.
    [[nodiscard]] bool IsCopied(const AbEpoch* record, const State& from, const State& to) const;

    EpochPortal* const portal_;
    const Step undo_;
    const Step redo_;
    // From where the walk begins back to the start.
    std::vector<State> states_;
    int stepsAtStart_ = 0;
    const AbEpoch* firstEpoch_ = nullptr;
    bool hasCopied_ = false;
};
