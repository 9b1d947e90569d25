#include "Displays/Chart/ChartReader.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <utility>

#include "Platform/Kernel/OS.h"
#include "Simulation/History/RunCheckpoint.h"
#include "Simulation/History/RunHistory.h"

namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();
// Samples between two looks at the clock.
constexpr std::size_t kChunk = 512;
// Where the slope is known, a cubic is drawn in so many pieces.
constexpr int kPieces = 4;
constexpr int kHalvings = 50;

double Along(Crossing crossing, const ThreeVector& way) {
    return crossing == Crossing::kX ? way.x : crossing == Crossing::kY ? way.y : way.z;
}

RelativeState StateOf(const Sample& sample) {
    return {sample.position, sample.velocity};
}

ChartSeries::Point PointAt(const ChartLine& line, const Sample& sample, double gm) {
    const RelativeState state = StateOf(sample);
    const double y = ValueOf(line.quantity, state, gm);
    if (!line.against) return {sample.time, sample.time, y};
    const double x = ValueOf(*line.against, state, gm);
    return {sample.time, x, std::isnan(x) ? kNone : y};
}

// Of the cubic through two values with these slopes.
double Cubic(double a, double slopeA, double b, double slopeB, double length, double part) {
    const double rest = 1.0 - part;
    return rest * rest * (a * (1.0 + 2.0 * part) + slopeA * length * part) +
           part * part * (b * (1.0 + 2.0 * rest) - slopeB * length * rest);
}

// Values are taken at samples, where they are exact; what lies between follows from their slopes.
void AddPieces(const ChartLine& line, const Sample& a, const Sample& b, ChartSeries* into) {
    if (!HasSlope(line.quantity) || (line.against && !HasSlope(*line.against))) return;
    const double length = b.time - a.time;
    const auto between = [&](Quantity quantity, double part) {
        return Cubic(ValueOf(quantity, StateOf(a), 0.0), SlopeOf(quantity, StateOf(a)),
                     ValueOf(quantity, StateOf(b), 0.0), SlopeOf(quantity, StateOf(b)), length,
                     part);
    };
    for (int i = 1; i < kPieces; i++) {
        const double part = static_cast<double>(i) / kPieces;
        const double time = a.time + part * length;
        into->Add({time, line.against ? between(*line.against, part) : time,
                   between(line.quantity, part)});
    }
}

void AddCrossing(const ChartLine& line, const Sample& a, const Sample& b, double gm,
                 ChartSeries* into) {
    if (!(Along(line.crossing, a.position) < 0.0 && Along(line.crossing, b.position) >= 0.0))
        return;
    double before = a.time;
    double after = b.time;
    for (int i = 0; i < kHalvings; i++) {
        const double middle = std::midpoint(before, after);
        const bool isPast = Along(line.crossing, Between(a, b, middle).position) >= 0.0;
        (isPast ? after : before) = middle;
    }
    into->Add(PointAt(line, Between(a, b, after), gm));
}

double ErrorOf(Quantity quantity, const Drift& drift) {
    const std::optional<double>& error = quantity == Quantity::kEnergyError ? drift.energy
                                         : quantity == Quantity::kMomentumError
                                             ? drift.momentum
                                             : drift.angularMomentum;
    return error ? std::abs(*error) : kNone;
}

}  // namespace

std::vector<Sample> RelativePath(const std::vector<Sample>& body, const std::vector<Sample>& about,
                                 double after) {
    const auto breaks = [after](const Sample& sample) {
        return sample.time > after && !sample.isJoined;
    };
    std::vector<Sample> path;
    path.reserve(body.size());
    bool isBroken = false;
    std::size_t next = 0;
    for (const Sample& sample : body) {
        isBroken = isBroken || breaks(sample);
        // A body that merged, or was put elsewhere, has two samples at that time: the later counts.
        while (next < about.size() && about[next].time <= sample.time)
            isBroken = breaks(about[next++]) || isBroken;
        const bool isOverThen = next == about.size() && !sample.isJoined && !path.empty();
        if (next == 0 || sample.time <= after || isOverThen) continue;
        Sample at = about[next - 1];
        if (at.time != sample.time) {
            if (next == about.size() || !about[next].isJoined) {
                isBroken = true;
                continue;
            }
            at = Between(at, about[next], sample.time);
        }
        path.push_back(
            {sample.time, sample.position - at.position, sample.velocity - at.velocity, !isBroken});
        isBroken = false;
    }
    return path;
}

bool ChartReader::IsContinued(const std::vector<ChartLine>& lines,
                              const std::vector<ChartRun>& runs) const {
    if (lines != lines_ || runs_.empty() || runs.size() < runs_.size()) return false;
    for (std::size_t i = 0; i < runs_.size(); i++) {
        const bool mayGrow = i + 1 == runs_.size();
        if (runs[i].epoch != runs_[i].epoch || runs[i].start != runs_[i].start ||
            runs[i].isBackwards != runs_[i].isBackwards)
            return false;
        if (mayGrow ? runs[i].end < runs_[i].end : runs[i].end != runs_[i].end) return false;
    }
    return true;
}

void ChartReader::Start(const std::vector<ChartLine>& lines, std::vector<ChartRun> runs) {
    material_.reset();
    if (IsContinued(lines, runs)) {
        for (Progress& progress : progress_)
            progress.run = std::min(progress.run, runs_.size() - 1);
    } else {
        lines_ = lines;
        series_.assign(lines.size(), {});
        progress_.assign(lines.size(), {});
    }
    runs_ = std::move(runs);
}

bool ChartReader::Work(bigtime_t most) {
    const bigtime_t until = system_time() + most;
    for (std::size_t line = 0; line < lines_.size(); line++)
        while (WorkOn(line))
            if (system_time() >= until) return false;
    return true;
}

bool ChartReader::WorkOn(std::size_t line) {
    Progress& progress = progress_[line];
    if (history_ == nullptr || progress.run >= runs_.size()) return false;
    const ChartRun& run = runs_[progress.run];
    if (progress.epoch != run.epoch) {
        progress = {progress.run, run.epoch, {}, run.start, {}, 0};
        if (series_[line].Count() > 0) series_[line].Add({run.start, run.start, kNone});
    }
    if (!material_) material_ = Fetch(lines_[line], progress);
    Add(lines_[line], &*material_, &progress, &series_[line]);
    if (material_->next < std::max(material_->path.size(), material_->states.size())) return true;
    material_.reset();
    progress.run++;
    return true;
}

ChartReader::Material ChartReader::Fetch(const ChartLine& line, const Progress& progress) const {
    const ChartRun& run = runs_[progress.run];
    Material material;
    if (!IsOfBody(line.quantity)) {
        material.states = history_->ExactStates(run.epoch);
        if (run.isBackwards) std::reverse(material.states.begin(), material.states.end());
        std::erase_if(material.states, [&](const auto& state) {
            return state->state.time > run.end ||
                   (progress.start && state->state.time <= progress.reached);
        });
        return material;
    }
    const auto samples = [&](int64 body) {
        return history_->Samples(run.epoch, body, progress.last ? progress.reached : run.start,
                                 run.end);
    };
    if (line.body == line.about) return material;
    const double ever = -std::numeric_limits<double>::infinity();
    const double after = progress.last ? progress.reached : ever;
    // What lies between samples matters least of the heavier one.
    const auto gmOf = [&](int64 body) { return run.MassesOf(body, body).back().gm; };
    const bool isLighter = gmOf(line.body) <= gmOf(line.about);
    material.path = isLighter ? RelativePath(samples(line.body), samples(line.about), after)
                              : RelativePath(samples(line.about), samples(line.body), after);
    for (Sample& sample : material.path) {
        if (isLighter) break;
        sample.position *= -1.0;
        sample.velocity *= -1.0;
    }
    std::erase_if(material.path, [&](const Sample& sample) {
        return sample.time < run.start || sample.time > run.end;
    });
    material.masses = run.MassesOf(line.body, line.about);
    return material;
}

void ChartReader::Add(const ChartLine& line, Material* from, Progress* progress,
                      ChartSeries* into) {
    if (!from->states.empty()) return AddState(line, *from->states[from->next++], progress, into);
    const std::size_t end = std::min(from->next + kChunk, from->path.size());
    for (; from->next < end; from->next++) {
        const Sample& sample = from->path[from->next];
        while (from->mass + 1 < from->masses.size() &&
               from->masses[from->mass + 1].time <= sample.time)
            from->mass++;
        const double gm = from->masses[from->mass].gm;
        const bool isJoined = progress->last && sample.isJoined;
        if (line.crossing != Crossing::kNone) {
            if (isJoined) AddCrossing(line, *progress->last, sample, gm, into);
        } else {
            if (isJoined) AddPieces(line, *progress->last, sample, into);
            if (!isJoined && into->Count() > 0) into->Add({sample.time, sample.time, kNone});
            into->Add(PointAt(line, sample, gm));
        }
        progress->last = sample;
        progress->reached = sample.time;
    }
}

// What bodies that merge or are edited change is no error: it is counted anew from there.
void ChartReader::AddState(const ChartLine& line, const RunCheckpoint& state, Progress* progress,
                           ChartSeries* into) {
    const double time = state.state.time;
    const std::size_t bodies = state.state.CountBodies();
    const bool isFirst = !progress->start;
    if (line.quantity == Quantity::kBodies) {
        if (!isFirst && bodies != progress->bodies)
            into->Add({time, time, static_cast<double>(progress->bodies)});
        into->Add({time, time, static_cast<double>(bodies)});
        if (isFirst) progress->start.emplace();
    } else {
        const Conserved now = MeasureConserved(state.state);
        if (isFirst || state.isStart || bodies != progress->bodies) {
            if (!isFirst) into->Add({time, time, kNone});
            progress->start = now;
        }
        into->Add({time, time, ErrorOf(line.quantity, MeasureDrift(*progress->start, now))});
    }
    progress->bodies = bodies;
    progress->reached = time;
}
