// orvek-run-mpi: orvek-run, its work shared by the ranks that mpirun starts.
#include <csignal>

#include "Platform/Kernel/EndSignals.h"
#include "Run/Ranks/MpiRanks.h"
#include "Run/RunProgram.h"
#include "Simulation/Document/ProgramResources.h"

int main(int argc, char** argv) {
    // MPI has threads of its own, which must not take the signals either. Number 0 waits for them,
    // and cannot end a run in order unless the others stay as long.
    const EndSignals signals({SIGINT, SIGTERM});
    MpiRanks ranks(&argc, &argv);
    const ProgramResources resources;
    return RunProgram({argv + 1, argv + argc}, resources, ORVEK_VERSION, &ranks);
}
