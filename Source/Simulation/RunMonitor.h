// What there is to tell of a run while it goes on: how fast it is, and how well it keeps the
// energy. Owned by the simulation's window and used on its thread; measures on that thread, seldom
// enough to take no more than a small part of it.
#pragma once

#include <optional>

#include "Simulation/Document/Conservation.h"
#include "Simulation/RunMeter.h"
#include "Simulation/Trust/Trust.h"

class RunMonitor {
public:
    // Of a moment; rates are those since the moment before.
    struct Figures {
        double stepsPerSecond = 0.0;
        double timePerSecond = 0.0;        // s of the simulation per second
        std::optional<Evidence> evidence;  // none where it is not measured
    };

    // Systems with more bodies are not measured: that goes over all pairs of them.
    static constexpr std::size_t kMaxMeasuredBodies = 2000;

    RunMonitor(EpochPortal* portal, Calculator* calculator)
        : portal_(portal), calculator_(calculator), meter_(portal, calculator) {}

    [[nodiscard]] ReportConsumer* Consumer() { return &meter_; }
    // A run is about to start. Takes the portal's read lock.
    void Begin();
    // Bodies have merged in it; the calculator rests.
    void Add(const MergeResult& merged);
    // `now` in microseconds.
    [[nodiscard]] Figures Measure(int64 now);
    // The run is over: only the energy is left to tell. Takes the portal's read lock.
    [[nodiscard]] Figures End();

private:
    void MeasureEnergy(int64 now);
    void Judge(const SystemState& state);

    EpochPortal* const portal_;
    Calculator* const calculator_;
    RunMeter meter_;
    Conserved start_;
    MergerTotals mergers_;
    bool isMeasured_ = false;  // the energy of this run
    bool isAwaited_ = false;   // a state to measure
    std::optional<Evidence> evidence_;
    int64 lastSteps_ = 0;
    double lastTime_ = 0.0;
    int64 lastMoment_ = 0;
    int64 nextEnergy_ = 0;
};
