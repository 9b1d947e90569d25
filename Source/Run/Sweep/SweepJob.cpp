#include "Run/Sweep/SweepJob.h"

#include <charconv>
#include <cstddef>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Calculation/Ranks.h"
#include "Platform/Application/BMessage.h"
#include "Run/RunEvents.h"
#include "Run/RunnerOutput.h"

namespace {

constexpr const char* kDocument = "Document";
constexpr const char* kFirst = "First";
constexpr int kPatience = 200;  // ms

std::string TextOf(const SweepTeam::Line& line) {
    return std::to_string(line.run) + '\n' + line.columns;
}

// Nothing: there is nothing to do.
std::optional<BMessage> HearJob(Ranks* ranks) {
    int64 size = 0;
    ranks->Hear(&size, sizeof size);
    if (size == 0) return std::nullopt;
    std::vector<std::byte> bytes(static_cast<std::size_t>(size));
    ranks->Hear(bytes.data(), bytes.size());
    BMessage job;
    if (job.Unflatten(bytes.data(), bytes.size()) != B_OK) return std::nullopt;
    return job;
}

}  // namespace

void SweepJob::Tell(Ranks* ranks, const SweepPlan& plan, const BMessage* record, int64 first) {
    std::vector<std::byte> bytes;
    BMessage job;
    if (record != nullptr && job.AddMessage(kDocument, record) == B_OK &&
        job.AddInt64(kFirst, first) == B_OK && plan.AddTo(&job) == B_OK)
        static_cast<void>(job.Flatten(&bytes));
    const auto size = static_cast<int64>(bytes.size());
    ranks->Tell(&size, sizeof size);
    if (size > 0) ranks->Tell(bytes.data(), bytes.size());
}

int SweepJob::Do(Ranks* ranks, const Options& options, const ProgramResources& resources) {
    RunEvents events;  // before the threads of the team
    const std::optional<BMessage> job = HearJob(ranks);
    SweepPlan plan;
    BMessage record;
    int64 first = 0;
    if (!job || job->FindMessage(kDocument, &record) != B_OK ||
        job->FindInt64(kFirst, &first) != B_OK || plan.FindIn(*job) != B_OK)
        return RunnerOutput::kDone;
    first += ranks->Own();
    int64 left = SweepTeam::CountRuns(plan, first, ranks->Count());
    SweepTeam team({options, resources, plan, record}, first, ranks->Count(), &events);
    while (left > 0) {
        // Number 0 is sent the same signals, and ends all.
        static_cast<void>(events.Wait(kPatience));
        for (const SweepTeam::Line& line : team.TakeDone()) {
            ranks->Send(TextOf(line));
            left--;
        }
    }
    return RunnerOutput::kDone;
}

std::optional<SweepTeam::Line> SweepJob::Take(Ranks* ranks) {
    const std::optional<std::string> text = ranks->Receive();
    if (!text) return std::nullopt;
    SweepTeam::Line line{};
    const auto read = std::from_chars(text->data(), text->data() + text->size(), line.run);
    line.columns = std::string(read.ptr + 1, text->data() + text->size());
    return line;
}
