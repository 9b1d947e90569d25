// example-builder TEXT DOCUMENT: builds a document of the program from the text of an example.
// Exit codes: 0 done, 1 could not (the reason is on standard error), 2 wrong use.

#include <cstdio>
#include <fstream>
#include <iterator>

#include "Exchange/ExampleModel.h"
#include "Exchange/ExampleParser.h"
#include "Model/Epochs/Epoch.h"
#include "Simulation/Document/ProgramResources.h"
#include "Tools/ExampleBuilder/ExampleDocument.h"

namespace {

bool Fail(const std::string& reason) {
    std::fprintf(stderr, "example-builder: %s\n", reason.c_str());
    return false;
}

bool FailAt(const std::string& path, int line, const std::string& reason) {
    return Fail(path + ':' + std::to_string(line) + ": " + reason);
}

bool ReadText(const std::string& path, std::string* text) {
    std::ifstream file(path, std::ios::binary);
    if (!file) return false;
    text->assign(std::istreambuf_iterator<char>(file), {});
    return !file.bad();
}

bool BuildExample(const std::string& source, const std::string& target) {
    std::string words;
    if (!ReadText(source, &words)) return Fail(source + ": cannot be read");

    const ProgramResources resources;
    ExampleParser parser(resources);
    ExampleText text;
    if (!parser.Parse(words, &text)) return FailAt(source, parser.Line(), parser.Reason());
    ExampleModel model(resources);
    const std::unique_ptr<Epoch> epoch = model.Build(text);
    if (epoch == nullptr) return FailAt(source, model.Line(), model.Reason());

    const DocumentError error = WriteExample(target, text, *epoch, model.Chosen());
    return !error.Failed() || Fail(target + ": " + error.Reason(resources));
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::fputs("usage: example-builder TEXT DOCUMENT\n", stderr);
        return 2;
    }
    return BuildExample(argv[1], argv[2]) ? 0 : 1;
}
