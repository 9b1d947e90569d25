#include "Simulation/Trust/BackgroundJob.h"

#include <cmath>
#include <utility>

void BackgroundJob::Start(Work work) {
    Cancel();
    isWanted_ = true;
    isDone_ = false;
    part_ = 0.0;
    thread_ = std::thread([this, work = std::move(work)] {
        work([this](double part) { return Note(part); });
        isDone_ = true;
        changed_();
    });
}

bool BackgroundJob::Note(double part) {
    if (std::floor(100 * part) != std::floor(100 * part_.exchange(part))) changed_();
    return isWanted_;
}

void BackgroundJob::Cancel() {
    isWanted_ = false;
    if (thread_.joinable()) thread_.join();
    isDone_ = false;
}

bool BackgroundJob::TakeDone() {
    if (!isDone_) return false;
    thread_.join();
    isDone_ = false;
    return true;
}
