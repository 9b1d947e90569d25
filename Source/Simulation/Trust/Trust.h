// How far a run can be believed, in words. No state.
//
// Gravity keeps energy, momentum and angular momentum; what a run loses of them is an error for
// certain. The largest of the three drifts tells: up to kMostOfKept the run is as exact as its
// digits, up to kMostOfPicture good for a picture, and beyond that not to be believed. A run of low
// order that gives the turn of the fastest pair fewer than kLeastSteps steps is good for a picture
// at best. What mergers turn into heat and spin is booked apart and is no error.
//
// All that may be kept by a run that has gone astray. How many digits of the places are true only
// another, more exact run can tell.
#pragma once

#include <optional>
#include <string>

#include "Simulation/Document/Conservation.h"

class ProgramResources;

struct Evidence {
    Drift drift;
    int64 mergers = 0;
    int32 order = 0;  // as used
    double cutoff = 0.0;
    std::optional<double> shortestStep;  // s; of low orders: that of the closest passage
    // Largest difference to a more exact run, as a part of the distance from the centre of mass.
    std::optional<double> difference;
};

struct Trust {
    enum class Verdict {
        kUnknown,  // there is nothing to judge by
        kKept,
        kPicture,
        kNotTrue,
        kTrue,  // said only after another run
    };
    static constexpr double kMostOfKept = 1e-8;
    static constexpr double kMostOfPicture = 1e-3;
    static constexpr double kLeastSteps = 20.0;
    static constexpr int kMostDigits = 15;

    Verdict verdict = Verdict::kUnknown;
    int digits = 0;  // of kKept and kTrue
};

[[nodiscard]] Trust Judge(const Evidence& evidence);
// Steps in which the fastest pair turns by a radian; none for orders that choose theirs otherwise.
[[nodiscard]] std::optional<double> StepsPerRadian(int32 order, double cutoff);

// Empty for what is not known.
[[nodiscard]] std::string TrustWords(const Trust& trust, const ProgramResources& resources);
// What each figure is, line by line.
[[nodiscard]] std::string ExplainTrust(const Evidence& evidence, const ProgramResources& resources);
