// Reading the texts of examples, and building documents of them.
#include "Exchange/ExampleModel.h"
#include "Exchange/ExampleParser.h"
#include "Model/Epochs/Epoch.h"
#include "Tests/Fuzz/FuzzKit.h"
#include "Tests/Fuzz/ManyStars.h"
#include "Tools/ExampleBuilder/ExampleDocument.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    // Where nothing can be written: the last thing that building an example does.
    constexpr const char* kNowhere = "/dev/null/example.orvek";
    ExampleParser parser(fuzz::Resources());
    ExampleText text;
    if (!parser.Parse(fuzz::TextOf(data, size), &text)) {
        fuzz::Check(!parser.Reason().empty(), "a fault is told");
        return 0;
    }
    if (CountStars(text.systems) > kManyStars) return 0;
    ExampleModel model(fuzz::Resources());
    const std::unique_ptr<Epoch> epoch = model.Build(text);
    fuzz::Check(epoch != nullptr || !model.Reason().empty(), "a fault is told");
    if (epoch != nullptr) static_cast<void>(WriteExample(kNowhere, text, *epoch, model.Chosen()));
    return 0;
}
