#include "Run/Sweep/SweepTeam.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <new>
#include <optional>
#include <system_error>
#include <utility>

#include "Run/Options.h"
#include "Run/RunEvents.h"
#include "Run/Sweep/SweepPlan.h"
#include "Run/Sweep/SweepRun.h"

int64 SweepTeam::CountRuns(const SweepPlan& plan, int64 first, int64 stride) {
    return std::max<int64>(0, plan.CountRuns() - first + stride - 1) / stride;
}

SweepTeam::SweepTeam(const Work& work, int64 first, int64 stride, RunEvents* events)
    : work_(work), stride_(stride), events_(events), next_(first) {
    const auto processors = static_cast<int32>(std::thread::hardware_concurrency());
    const int64 runs = CountRuns(work.plan, first, stride);
    const int64 threads =
        std::min<int64>(runs, work.options.threads.value_or(std::max(processors, 1)));
    try {
        // A record is read by one thread at a time.
        for (int64 i = 0; i < threads; i++)
            threads_.emplace_back([this, record = work.record] { DoRuns(record); });
    } catch (const std::system_error&) {
        if (threads_.empty()) throw;
    }
}

SweepTeam::~SweepTeam() {
    isStopped_ = true;
    for (std::thread& thread : threads_)
        thread.join();
}

void SweepTeam::DoRuns(const BMessage& record) {
    for (int64 run; (run = next_.fetch_add(stride_)) < work_.plan.CountRuns() && !isStopped_;) {
        try {
            SweepRun document(work_.options, work_.resources);
            if (const auto wrong = document.Prepare(record, work_.plan.EditsOf(run)))
                Done(run, SweepRun::NoColumns(work_.options, *wrong));
            else if (document.Run(isStopped_))
                Done(run, document.EndColumns());
        } catch (const std::bad_alloc&) {
            Done(run, SweepRun::NoColumns(work_.options, std::strerror(ENOMEM)));
        } catch (const std::system_error& error) {
            Done(run, SweepRun::NoColumns(work_.options, error.code().message()));
        }
    }
}

void SweepTeam::Done(int64 run, std::string columns) {
    {
        const std::lock_guard guard(mutex_);
        done_.push_back({run, std::move(columns)});
    }
    events_->Wake();
}

std::vector<SweepTeam::Line> SweepTeam::TakeDone() {
    const std::lock_guard guard(mutex_);
    return std::exchange(done_, {});
}
