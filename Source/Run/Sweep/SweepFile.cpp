#include "Run/Sweep/SweepFile.h"

#include <cerrno>
#include <fstream>
#include <utility>

#include "Run/CsvText.h"
#include "Run/Sweep/SweepPlan.h"

SweepFile::SweepFile(const SweepPlan& plan, std::string head, std::string mark)
    : plan_(plan), head_(std::move(head)), mark_(std::move(mark)) {}

int SweepFile::Open(const std::string& path) {
    if (const int error = file_.Open(path); error != 0) return error;
    if (file_.Size().value_or(0) > 0) return TakeLines(path);
    file_.Write(head_ + '\n');
    return file_.Flush();
}

// A last line without its end was being written when its program was killed.
int SweepFile::TakeLines(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return errno;
    obstacle_ = kTextOtherSweep;
    int64 size = 0;
    std::string line;
    while (std::getline(in, line) && !in.eof()) {
        const bool isOurs = size == 0 ? line == head_ : IsLineOf(next_, line);
        if (!isOurs) return 0;
        if (size > 0) next_++;
        size += static_cast<int64>(line.size()) + 1;
    }
    const std::string begin = size == 0                   ? head_
                              : next_ < plan_.CountRuns() ? BeginOf(next_)
                                                          : std::string();
    const bool isBegun =
        begin.starts_with(line) || (!begin.empty() && size > 0 && line.starts_with(begin));
    if (!isBegun) return 0;
    obstacle_.reset();
    if (size == 0) file_.Write(head_ + '\n');
    file_.Keep(size);
    return size == 0 ? file_.Flush() : 0;
}

std::string SweepFile::BeginOf(int64 run) const {
    std::string begin;
    AppendCsv(&begin, run + 1);
    return begin + ',' + plan_.ValueColumns(run);
}

bool SweepFile::IsLineOf(int64 run, std::string_view line) const {
    return run < plan_.CountRuns() && line.starts_with(BeginOf(run)) && line.ends_with(mark_);
}

int SweepFile::Write(int64 run, std::string columns) {
    waiting_[run] = std::move(columns);
    for (auto next = waiting_.find(next_); next != waiting_.end(); next = waiting_.find(next_)) {
        file_.Write(BeginOf(next_) + next->second + mark_ + '\n');
        waiting_.erase(next);
        next_++;
    }
    return file_.Flush();
}
