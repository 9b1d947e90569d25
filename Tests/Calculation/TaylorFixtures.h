// Calculators, systems and views of archives for the tests of TaylorCalculator.
#pragma once

#include <memory>
#include <vector>

#include "Calculation/TaylorCalculator.h"
#include "Platform/Application/BMessage.h"
#include "Tests/Calculation/PairWalk.h"
#include "Tests/Calculation/TestSystem.h"

// Parked; posts its collisions to nobody.
std::unique_ptr<TaylorCalculator> MakeCalculator(TestSystem* system, int32 threads = 1);

// A heavy body with others on roughly circular orbits about it at many distances, and massless ones
// among them.
PairWalk Planets(int32 count, int32 massive);

BMessage ArchiveOf(const TaylorCalculator& calculator);
std::vector<double> Doubles(const BMessage& archive, const char* field);
int32 Iteration(const BMessage& archive);
