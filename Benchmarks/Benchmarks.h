// The topics of the benchmark program, one file each. A topic measures and adds its rows.
#pragma once

class BenchTable;

void BenchForces(BenchTable* table);
void BenchCalculator(BenchTable* table);
void BenchHistory(BenchTable* table);
void BenchSeries(BenchTable* table);
// Takes minutes.
void BenchAccuracy(BenchTable* table);
void BenchDrift(BenchTable* table);
void BenchRuns(BenchTable* table);
// Only where the build has ranks (ORVEK_RUN_MPI).
void BenchRanks(BenchTable* table);
void BenchDocuments(BenchTable* table);
// Only where the build knows the prototype (ORVEK_PROTOTYPE).
void BenchPrototype(BenchTable* table);
// Only where there are windows (ORVEK_GUI).
void BenchDisplays(BenchTable* table);
void BenchSpace(BenchTable* table);
void BenchCharts(BenchTable* table);
