// orvek-bench [topic...]: measures and prints "what | required | measured | ok"; exit status 1 when
// a requirement is missed.
#include <cstdio>
#include <cstring>

#include "Benchmarks/BenchTable.h"
#include "Benchmarks/Benchmarks.h"

namespace {

struct Topic {
    const char* name;
    void (*run)(BenchTable* table);
    bool isLong = false;  // minutes: only who names it wants it
};

constexpr Topic kTopics[] = {
    {"forces", BenchForces},       {"calculator", BenchCalculator},
    {"series", BenchSeries},       {"history", BenchHistory},
    {"runs", BenchRuns},           {"documents", BenchDocuments},
    {"drift", BenchDrift, true},   {"accuracy", BenchAccuracy, true},
#ifdef ORVEK_RUN_MPI
    {"ranks", BenchRanks},
#endif
#ifdef ORVEK_PROTOTYPE
    {"prototype", BenchPrototype},
#endif
#ifdef ORVEK_GUI
    {"displays", BenchDisplays},   {"space", BenchSpace},
    {"charts", BenchCharts},
#endif
};

bool Wanted(const Topic& topic, int argc, char** argv) {
    for (int i = 1; i < argc; i++)
        if (std::strcmp(argv[i], topic.name) == 0) return true;
    return argc == 1 && !topic.isLong;
}

}  // namespace

int main(int argc, char** argv) {
    BenchTable table;
    for (const Topic& topic : kTopics)
        if (Wanted(topic, argc, argv)) topic.run(&table);
    if (table.CountRows() == 0) {
        std::fprintf(stderr, "usage: orvek-bench [topic...]\ntopics:");
        for (const Topic& topic : kTopics)
            std::fprintf(stderr, " %s", topic.name);
        std::fprintf(stderr, "\n");
        return 2;
    }
    return table.AllMet() ? 0 : 1;
}
