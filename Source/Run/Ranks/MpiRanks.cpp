#include "Run/Ranks/MpiRanks.h"

#include <mpi.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <thread>

namespace {

// Of fewer pairs an evaluation takes less than some exchanges do.
constexpr int64 kMinPairs = 40'000;
constexpr int kTextTag = 1;
constexpr int kNumbersTag = 2;
// Looks for a call before sleeping between them: about a millisecond, longer than what number 0
// does alone between two steps.
constexpr int32 kEagerLooks = 4000;
constexpr std::chrono::microseconds kSleep{50};

// Their processors, or this rank's share where several ranks have the same.
int32 CountThreads() {
    MPI_Comm machine = MPI_COMM_NULL;
    MPI_Comm_split_type(MPI_COMM_WORLD, MPI_COMM_TYPE_SHARED, 0, MPI_INFO_NULL, &machine);
    int ranks = 1;
    MPI_Comm_size(machine, &ranks);
    MPI_Comm_free(&machine);
    const auto allowed = static_cast<int32>(std::thread::hardware_concurrency());
    const auto online = static_cast<int32>(sysconf(_SC_NPROCESSORS_ONLN));
    return std::max(1, std::min(allowed, online / ranks));
}

// Visits one piece after the other: where it begins, and how much it is.
template <typename Visit>
void ForEachPiece(int64 count, int64 most, const Visit& visit) {
    for (int64 at = 0; at < count; at += most)
        visit(at, static_cast<int>(std::min(most, count - at)));
}

}  // namespace

void MpiRanks::Layout::Set(const RankParts& parts) {
    counts.clear();
    begins.clear();
    for (std::size_t rank = 0; rank + 1 < parts.size(); rank++) {
        counts.push_back(static_cast<int>(parts[rank + 1] - parts[rank]));
        begins.push_back(static_cast<int>(parts[rank]));
    }
}

// The thread of the calculation calls, and so does the main thread; never both at a time.
MpiRanks::MpiRanks(int* argc, char*** argv, int64 most) : most_(most) {
    int given = MPI_THREAD_SINGLE;
    MPI_Init_thread(argc, argv, MPI_THREAD_SERIALIZED, &given);
    if (given < MPI_THREAD_SERIALIZED) MPI_Abort(MPI_COMM_WORLD, 1);
    MPI_Comm_size(MPI_COMM_WORLD, &count_);
    MPI_Comm_rank(MPI_COMM_WORLD, &own_);
    threads_ = CountThreads();
}

MpiRanks::~MpiRanks() {
    MPI_Finalize();
}

int64 MpiRanks::LeastPairs() const {
    return kMinPairs;
}

void MpiRanks::Tell(const void* data, std::size_t size) {
    Broadcast(const_cast<void*>(data), size, 0);
}

void MpiRanks::Hear(void* data, std::size_t size) {
    Broadcast(data, size, 0);
}

void MpiRanks::Broadcast(void* data, std::size_t size, int32 from) const {
    char* const bytes = static_cast<char*>(data);
    ForEachPiece(static_cast<int64>(size), most_, [&](int64 at, int count) {
        MPI_Bcast(bytes + at, count, MPI_BYTE, from, MPI_COMM_WORLD);
    });
}

// A task, which is short.
void MpiRanks::Call(const void* data, std::size_t size) {
    MPI_Request request = MPI_REQUEST_NULL;
    MPI_Ibcast(const_cast<void*>(data), static_cast<int>(size), MPI_BYTE, 0, MPI_COMM_WORLD,
               &request);
    MPI_Wait(&request, MPI_STATUS_IGNORE);
}

// MPI itself would keep a processor busy as long as number 0 rests.
void MpiRanks::AwaitCall(void* data, std::size_t size) {
    MPI_Request request = MPI_REQUEST_NULL;
    MPI_Ibcast(data, static_cast<int>(size), MPI_BYTE, 0, MPI_COMM_WORLD, &request);
    int isDone = 0;
    for (int32 look = 0; isDone == 0; look++) {
        MPI_Test(&request, &isDone, MPI_STATUS_IGNORE);
        if (isDone == 0 && look > kEagerLooks) std::this_thread::sleep_for(kSleep);
    }
}

void MpiRanks::Share(double* numbers, const RankParts& parts) {
    if (parts.back() > most_) {
        for (std::size_t rank = 0; rank + 1 < parts.size(); rank++)
            Broadcast(numbers + parts[rank],
                      static_cast<std::size_t>(parts[rank + 1] - parts[rank]) * sizeof(double),
                      static_cast<int32>(rank));
        return;
    }
    layout_.Set(parts);
    MPI_Allgatherv(MPI_IN_PLACE, 0, MPI_DOUBLE, numbers, layout_.counts.data(),
                   layout_.begins.data(), MPI_DOUBLE, MPI_COMM_WORLD);
}

void MpiRanks::Gather(double* numbers, const RankParts& parts) {
    if (parts.back() > most_) return GatherInPieces(numbers, parts);
    layout_.Set(parts);
    if (IsFirst())
        MPI_Gatherv(MPI_IN_PLACE, 0, MPI_DOUBLE, numbers, layout_.counts.data(),
                    layout_.begins.data(), MPI_DOUBLE, 0, MPI_COMM_WORLD);
    else
        MPI_Gatherv(numbers + parts[Index()], layout_.counts[Index()], MPI_DOUBLE, nullptr, nullptr,
                    nullptr, MPI_DOUBLE, 0, MPI_COMM_WORLD);
}

void MpiRanks::GatherInPieces(double* numbers, const RankParts& parts) const {
    const auto forEachOf = [&](int32 rank, const auto& visit) {
        const auto at = static_cast<std::size_t>(rank);
        ForEachPiece(parts[at + 1] - parts[at], most_,
                     [&](int64 begin, int count) { visit(numbers + parts[at] + begin, count); });
    };
    if (!IsFirst())
        return forEachOf(own_, [](const double* from, int count) {
            MPI_Send(from, count, MPI_DOUBLE, 0, kNumbersTag, MPI_COMM_WORLD);
        });
    for (int32 rank = 1; rank < count_; rank++)
        forEachOf(rank, [rank](double* to, int count) {
            MPI_Recv(to, count, MPI_DOUBLE, rank, kNumbersTag, MPI_COMM_WORLD, MPI_STATUS_IGNORE);
        });
}

// No rank knows how much the others exchange among themselves; so any of them may be long.
void MpiRanks::Exchange(const double* from, const RankParts& fromParts, double* to,
                        const RankParts& toParts) {
    std::vector<MPI_Request> requests;
    for (int32 rank = 0; rank < count_; rank++) {
        if (rank == own_) continue;
        const auto at = static_cast<std::size_t>(rank);
        ForEachPiece(toParts[at + 1] - toParts[at], most_, [&](int64 begin, int count) {
            MPI_Irecv(to + toParts[at] + begin, count, MPI_DOUBLE, rank, kNumbersTag,
                      MPI_COMM_WORLD, &requests.emplace_back());
        });
        ForEachPiece(fromParts[at + 1] - fromParts[at], most_, [&](int64 begin, int count) {
            MPI_Isend(from + fromParts[at] + begin, count, MPI_DOUBLE, rank, kNumbersTag,
                      MPI_COMM_WORLD, &requests.emplace_back());
        });
    }
    std::copy(from + fromParts[Index()], from + fromParts[Index() + 1], to + toParts[Index()]);
    MPI_Waitall(static_cast<int>(requests.size()), requests.data(), MPI_STATUSES_IGNORE);
}

void MpiRanks::Send(std::string_view text) {
    MPI_Send(text.data(), static_cast<int>(text.size()), MPI_CHAR, 0, kTextTag, MPI_COMM_WORLD);
}

std::optional<std::string> MpiRanks::Receive() {
    int isThere = 0;
    MPI_Status status;
    MPI_Iprobe(MPI_ANY_SOURCE, kTextTag, MPI_COMM_WORLD, &isThere, &status);
    if (isThere == 0) return std::nullopt;
    int size = 0;
    MPI_Get_count(&status, MPI_CHAR, &size);
    std::string text(static_cast<std::size_t>(size), '\0');
    MPI_Recv(text.data(), size, MPI_CHAR, status.MPI_SOURCE, kTextTag, MPI_COMM_WORLD,
             MPI_STATUS_IGNORE);
    return text;
}

void MpiRanks::Abort(int status) {
    MPI_Abort(MPI_COMM_WORLD, status);
}
