// Reading bodies from texts of any kind, and building systems of them.
#include "Exchange/BodyReader.h"
#include "Exchange/ExampleModel.h"
#include "Exchange/ExampleWriter.h"
#include "Model/Epochs/Epoch.h"
#include "Tests/Fuzz/FuzzKit.h"
#include "Tests/Fuzz/ManyStars.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    ReadBodies bodies;
    if (const auto fault = BodyReader(fuzz::Resources()).Read(fuzz::TextOf(data, size), &bodies)) {
        fuzz::Check(!fault->reason.empty(), "a fault is told");
        return 0;
    }
    for (const std::size_t i : bodies.massless)
        fuzz::Check(i < bodies.text.systems.size(), "who has no mass is there");
    bodies.SetMissingMasses(0.0);
    if (CountStars(bodies.text.systems) > kManyStars) return 0;
    ExampleModel model(fuzz::Resources());
    const std::unique_ptr<Epoch> epoch = model.Build(bodies.text);
    fuzz::Check(epoch != nullptr || !model.Reason().empty(), "a fault is told");
    if (epoch == nullptr) return 0;
    // What is not finite cannot be read back.
    const std::string text = ExampleWriter(fuzz::Resources()).Write(*epoch);
    if (text.find("inf") != std::string::npos || text.find("nan") != std::string::npos) return 0;
    const auto fault = BodyReader(fuzz::Resources()).Read(text, &bodies);
    fuzz::Check(!fault, "what is written is read");
    return 0;
}
