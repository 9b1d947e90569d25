#include "Calculation/Integrator.h"

#include "Calculation/LowOrderIntegrator.h"
#include "Calculation/Series/SeriesIntegrator.h"

std::unique_ptr<Integrator> MakeIntegrator(int32 order) {
    auto series = std::make_unique<SeriesIntegrator>();
    if (series->OrderFor(order)) return series;
    return std::make_unique<LowOrderIntegrator>();
}
