// Decides which reports of one body are kept, such that the cubics between those that are stay
// within kTolerance of the local radius of curvature of those that are not. What it keeps follows
// from the reports alone. Owned by a run that is being kept, used on the calculation thread.
//
// It is asked at every so many reports ("looks"). Most it lets pass with one comparison: the
// velocity is still what the last one that it noted, with its acceleration, foretells. It notes a
// few on the way to the next sample, evenly spread, and when the cubic from the last sample to the
// newest would miss one of them, the one before the newest becomes a sample.
#pragma once

#include <array>

#include "Platform/Support/SupportDefs.h"
#include "Simulation/History/Sample.h"

class SampleChooser {
public:
    // Of v^2/a, which is the radius of curvature of a body that is not speeding up, and less than
    // it of one that is; but where a body almost stands, of the way to the farther sample.
    static constexpr double kTolerance = 1e-4;

    // The path begins here, with a sample.
    void Start(const Sample& first);

    // Nothing is to be done at this look. Inline: it is all that most looks cost.
    [[nodiscard]] bool IsQuiet(double time, const double* velocity) {
        if (--untilNote_ <= 0) return false;
        const double t = time - last_.time;
        const double x = velocity[0] - last_.velocity.x - acceleration_.x * t;
        const double y = velocity[1] - last_.velocity.y - acceleration_.y * t;
        const double z = velocity[2] - last_.velocity.z - acceleration_.z * t;
        return x * x + y * y + z * z <= mostSurprise_;
    }
    // Of a look that is not quiet. True: `kept` is the next sample, at this moment or one before.
    [[nodiscard]] bool Look(const Sample& now, Sample* kept);

private:
    static constexpr int32 kMaxNotes = 12;

    struct Note {
        Sample at;
        double reach = 0.0;  // v^2/a, m
    };

    void Take(const Sample& now);
    [[nodiscard]] bool Fits(const Sample& end) const;
    void HalveNotes();

    int32 untilNote_ = 1;         // looks
    int32 spacing_ = 1;           // looks between two notes
    Sample last_;                 // the newest note, or the last sample
    ThreeVector acceleration_;    // m/s2, on the way to it
    double mostSurprise_ = -1.0;  // m2/s2
    Sample base_;                 // the last sample
    int32 count_ = 0;
    std::array<Note, kMaxNotes> notes_;
};
