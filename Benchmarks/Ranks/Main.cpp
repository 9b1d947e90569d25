// orvek-ranks-bench: how long messages between ranks take, of the sizes that they exchange for some
// numbers of bodies. For Documentation/Scaling.md; started by mpirun.
#include <mpi.h>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {

constexpr int kRounds = 300;
constexpr int kBodies[] = {1, 1000, 5000, 10'000, 100'000};

int Rank() {
    int rank = 0;
    MPI_Comm_rank(MPI_COMM_WORLD, &rank);
    return rank;
}

int CountRanks() {
    int count = 1;
    MPI_Comm_size(MPI_COMM_WORLD, &count);
    return count;
}

// The middle one of many times in microseconds, which other programs hardly disturb.
template <class Work>
double Measure(const Work& work) {
    std::vector<double> times;
    for (int round = 0; round < kRounds; round++) {
        MPI_Barrier(MPI_COMM_WORLD);
        const double begin = MPI_Wtime();
        work();
        times.push_back(1e6 * (MPI_Wtime() - begin));
    }
    const auto middle = times.begin() + kRounds / 2;
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}

// There and back.
void PingPong(std::vector<double>* numbers) {
    const int size = static_cast<int>(numbers->size());
    if (Rank() == 0) {
        MPI_Send(numbers->data(), size, MPI_DOUBLE, 1, 0, MPI_COMM_WORLD);
        MPI_Recv(numbers->data(), size, MPI_DOUBLE, 1, 0, MPI_COMM_WORLD, MPI_STATUS_IGNORE);
    } else if (Rank() == 1) {
        MPI_Recv(numbers->data(), size, MPI_DOUBLE, 0, 0, MPI_COMM_WORLD, MPI_STATUS_IGNORE);
        MPI_Send(numbers->data(), size, MPI_DOUBLE, 0, 0, MPI_COMM_WORLD);
    }
}

void MeasureBodies(int bodies) {
    const int ranks = CountRanks();
    const int part = 6 * bodies / ranks;
    std::vector<double> own(static_cast<std::size_t>(6 * bodies));
    std::vector<double> all(static_cast<std::size_t>(8 * bodies + ranks));
    const double oneWay = Measure([&] { PingPong(&own); }) / 2.0;
    const double tell =
        Measure([&] { MPI_Bcast(all.data(), 8 * bodies, MPI_DOUBLE, 0, MPI_COMM_WORLD); });
    const double exchange = Measure([&] {
        MPI_Alltoall(own.data(), part, MPI_DOUBLE, all.data(), part, MPI_DOUBLE, MPI_COMM_WORLD);
    });
    const double share = Measure([&] {
        MPI_Allgather(MPI_IN_PLACE, 0, MPI_DOUBLE, all.data(), part, MPI_DOUBLE, MPI_COMM_WORLD);
    });
    if (Rank() == 0)
        std::printf("%8d %10d %10.1f %10.1f %10.1f %10.1f\n", bodies, 48 * bodies, oneWay, tell,
                    exchange, share);
}

}  // namespace

int main(int argc, char** argv) {
    MPI_Init(&argc, &argv);
    if (Rank() == 0)
        std::printf("%d ranks, microseconds\n%8s %10s %10s %10s %10s %10s\n", CountRanks(),
                    "bodies", "bytes", "one way", "tell", "exchange", "share");
    for (const int bodies : kBodies)
        MeasureBodies(bodies);
    MPI_Finalize();
}
