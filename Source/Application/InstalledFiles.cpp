#include "Application/InstalledFiles.h"

#include <algorithm>
#include <climits>
#include <filesystem>
#include <utility>

#include "Application/Prefs/Preferences.h"
#include "Platform/Application/BMessage.h"
#include "Simulation/Document/SimulationFile.h"

namespace {

namespace fs = std::filesystem;

constexpr const char* kFirstExample = "/planets.orvek";  // the solar system

constexpr const char* kDescription =
    "Description";  // of an example: its title, then what there is to see
constexpr const char* kSource = "Source";

constexpr const char* kDocuments = "share/doc/orvek";
constexpr const char* kData = "share/orvek";

// Relative to the program's folder: as installed, and as built.
fs::path FindBeside(const fs::path& name, const char* installedIn = kDocuments) {
    char program[PATH_MAX];
    if (getappdir(program, sizeof program) != B_OK) return {};
    const fs::path above = fs::path(program).parent_path();
    std::error_code error;
    fs::path installed = above / installedIn / name;
    fs::path built = above / name;
    const bool isBuilt = !fs::exists(installed, error) && fs::exists(built, error);
    return isBuilt ? built : installed;
}

bool ReadExample(const fs::path& path, Example* example) {
    BMessage record;
    if (SimulationFile::Read(path, &record).Failed()) return false;
    example->path = path;
    example->title = path.stem();
    std::string line;
    for (int32 i = 0; record.FindString(kDescription, i, &line) == B_OK; i++)
        if (i == 0)
            example->title = line;
        else
            example->lines.push_back(line);
    record.FindString(kSource, &example->source);
    example->picture = fs::path(path).replace_extension(".png");
    return true;
}

}  // namespace

std::string GuidePath() {
    return FindBeside("guide/guide.html");
}

std::string TranslationPath(const std::string& language) {
    return FindBeside("languages/" + language + ".rsrc", kData);
}

std::vector<Example> InstalledExamples() {
    std::vector<Example> examples;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(FindBeside("examples"), error)) {
        Example example;
        if (entry.path().extension() == ".orvek" && ReadExample(entry.path(), &example))
            examples.push_back(std::move(example));
    }
    // Ours first, then by what they are called.
    std::ranges::sort(examples, {}, [](const Example& example) {
        return std::pair(!example.path.ends_with(kFirstExample), example.title);
    });
    return examples;
}
