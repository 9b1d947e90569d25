// What a projection display shows of the model: the moment, its time, and the names of the bodies.
// Used with the display's lock; what reads epochs also with the model's read lock.
#pragma once

#include <memory>
#include <vector>

#include "Displays/Projection/BodyLabels.h"
#include "Simulation/History/Moment.h"

class ShownMoment;

class ShownModel {
public:
    // Not owned.
    explicit ShownModel(EpochPortal* portal) : portal_(portal) {}

    // Whose moment is shown; null: always now. Not owned.
    void SetSource(ShownMoment* source) { source_ = source; }
    [[nodiscard]] ShownMoment* Source() const { return source_; }
    // The source has another moment than the one that the picture was last drawn for.
    [[nodiscard]] bool IsStale() const;

    // The source's moment is the one that is shown from now on.
    void TakeMoment();
    [[nodiscard]] const Moment& GetMoment() const { return moment_; }
    [[nodiscard]] bool IsPast() const { return moment_.IsPast(); }
    // What is shown is a run that goes on.
    [[nodiscard]] bool IsRunning() const;
    [[nodiscard]] EpochPortal Portal() const { return moment_.PortalFrom(*portal_); }
    [[nodiscard]] const AbEpoch& Epoch() const;
    // Whether the picture is still of another moment; it is to be drawn at once.
    [[nodiscard]] bool TakeWhetherMoved();
    // Whether the focus has gone to an epoch that the one before it did not lead to.
    [[nodiscard]] bool TakeWhetherRestored();

    // True if they are not what they were.
    [[nodiscard]] bool TakeLabels(const std::vector<Body*>& bodies);
    [[nodiscard]] const BodyLabels& Labels() const { return labels_; }

    // The epoch's; during a run the time is that of what was handed over.
    void TakeTime(bool isRunning);
    void SetTime(double time) { time_ = time; }
    [[nodiscard]] double Time() const { return time_; }
    [[nodiscard]] double TimeUval() const { return timeUval_; }

private:
    EpochPortal* const portal_;
    ShownMoment* source_ = nullptr;
    Moment moment_;
    std::shared_ptr<const void> drawn_;  // its epoch, up to which the trails are drawn; null: now
    const AbEpoch* focus_ = nullptr;     // at the last look; only compared
    BodyLabels labels_;
    double time_ = 0.0;  // s
    double timeUval_ = 1.0;
};
