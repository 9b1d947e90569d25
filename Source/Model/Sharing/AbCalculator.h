// What the model needs of a document's calculator, which lives a floor above: that it writes its
// state into a record (Archive, under the write lock), and its settings that commands change.
#pragma once

#include "Model/Sharing/Pace.h"
#include "Platform/Support/BArchivable.h"

class AbCalculator : public BArchivable {
public:
    // More updates per second no pacing can keep: they are neither entered nor read.
    static constexpr int32 kMaxUpdatesPerSecond = 1'000'000;

    AbCalculator() = default;
    explicit AbCalculator(BMessage* archive) : BArchivable(archive) {}

    virtual int32 SegmentLength() const = 0;
    virtual void SetSegmentLength(int32 length) = 0;
    virtual int32 UpdatesPerSecond() const = 0;
    virtual void SetUpdatesPerSecond(int32 updates) = 0;
    // Of the batches that a display is given, the one in so many that it need show.
    virtual int32 BatchesPerUpdate() const { return 1; }
    // It changes the model whenever it can have the model's lock, and hands over later what it has
    // changed. With that lock it is so; without, it was a moment ago.
    virtual bool IsRunning() const { return false; }

    virtual Pace GetPace() const { return {}; }
    virtual void SetPace(Pace /*pace*/) {}
    // Of the run that goes on, or the last one: what the pace comes to. Infinity: as fast as
    // possible; 0: that of Auto is not known yet.
    virtual double SecondsPerSecond() const { return 0.0; }
    // The machine cannot follow.
    virtual bool IsBehindPace() const { return false; }
};
