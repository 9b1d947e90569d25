#include "Calculation/Integrator.h"

#include "Calculation/LowOrderIntegrator.h"

std::unique_ptr<Integrator> MakeIntegrator(int32 /*order*/) {
    return std::make_unique<LowOrderIntegrator>();
}
