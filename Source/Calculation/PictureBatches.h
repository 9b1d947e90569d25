// Turns the calculator's batches into what displays are handed at a pace: batches that end with a
// picture. Where less than twenty reports lie between two pictures, a picture's time would be off
// by the length of a step; so the batch is cut there, and ends with where the bodies are between
// two reports, on a cubic through their places and velocities. That is for the picture only: nobody
// else is told of it. Calculation thread.
#pragma once

#include <cstddef>
#include <vector>

#include "Calculation/PictureTimes.h"

class Body;
class ReportBatch;
struct StopFlags;

class PictureBatches {
public:
    // As ReportConsumer::ReadData takes it.
    struct Piece {
        int32 reports;
        double* times;
        double* positions;
        double* velocities;
        bool isShown;
    };

    [[nodiscard]] PictureTimes& Times() { return times_; }
    [[nodiscard]] const PictureTimes& Times() const { return times_; }

    // A run starts, or goes on. Under the model lock.
    void Begin(double time, const std::vector<Body*>& bodies);

    // A batch of so many reports is there, to be handed over in pieces: one at least. While it is
    // cut its last report is overwritten; consumers that need it take it first.
    void Take(ReportBatch* batch, int32 reports);
    [[nodiscard]] bool HasNext() const { return hasNext_; }
    // Waits until the next piece is due, unless the run is paused meanwhile.
    void Await(const StopFlags& stop);
    // Of a run that stops the last piece ends with the last report.
    [[nodiscard]] Piece Next(const StopFlags& stop);

private:
    struct State {
        double time = 0.0;
        std::vector<double> positions, velocities;
        bool isThere = false;
    };

    [[nodiscard]] bool IsToBeCut() const;
    void Keep(int32 report, State* into) const;
    [[nodiscard]] Piece Whole(bool isStopping);
    [[nodiscard]] Piece Cut(bool isEnding);
    [[nodiscard]] Piece Rest();
    [[nodiscard]] Piece From(int32 report, bool isShown) const;
    void Interpolate(double time) const;

    PictureTimes times_;
    ReportBatch* batch_ = nullptr;
    int32 reports_ = 0;
    std::size_t stride_ = 0;  // of a report, in doubles
    int32 inPicture_ = 0;     // reports since the last picture
    int32 next_ = 0;          // the first report that was not handed over
    bool hasNext_ = false;
    bool isCut_ = false;
    State before_;  // the last two reports
    State after_;
    bool isAfterShown_ = true;
};
