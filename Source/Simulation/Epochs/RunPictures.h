// Small pictures of the trails of kept runs, for the list of epochs. Each is drawn once, from
// above, from the newest samples of the heaviest bodies; a few at a time, so that nobody waits.
// Owned by the epoch window and used on its thread.
#pragma once

#include <memory>
#include <unordered_map>

#include "Platform/Support/SupportDefs.h"
#include "Simulation/History/RunHistory.h"

class AbEpoch;
class BBitmap;
class Epoch;

class RunPictures {
public:
    using Picture = std::shared_ptr<const BBitmap>;

    // Null: there are none. Not owned.
    void SetHistory(const RunHistory* history) { history_ = history; }

    // A round of asking begins: what is not asked for until the next one is forgotten.
    void BeginRound();
    // Of the run in that epoch: null where none is kept, and where it is not drawn yet. The caller
    // holds the model's read lock.
    [[nodiscard]] Picture PictureOf(const AbEpoch& epoch);
    // One that keeps its room, without anything in it.
    [[nodiscard]] static Picture Blank();
    // Rows are to have room for them.
    [[nodiscard]] bool AreThere() const { return history_ != nullptr; }
    // Some were not drawn in this round.
    [[nodiscard]] bool IsIncomplete() const { return isIncomplete_; }

private:
    struct Entry {
        std::weak_ptr<const void> life;  // of the epoch
        double end = 0.0;                // s, of the run then
        int64 round = 0;
        Picture picture;
    };

    [[nodiscard]] Picture Draw(const Epoch& epoch, const RunHistory::Span& span) const;

    const RunHistory* history_ = nullptr;
    std::unordered_map<const AbEpoch*, Entry> entries_;
    int64 round_ = 0;
    int32 drawn_ = 0;  // in this round
    bool isIncomplete_ = false;
};
