// Gives a fuzz target every file of a folder, one after the other: the target as a test that needs
// no fuzzer.
#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "Tests/Fuzz/FuzzKit.h"

namespace {

std::vector<char> Contents(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) return 2;
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(argv[1]))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    for (const std::filesystem::path& file : files) {
        std::printf("%s\n", file.filename().c_str());
        std::fflush(stdout);  // the last line names the input that ends the program
        const std::vector<char> contents = Contents(file);
        // Not a byte more than there is, so that reading past the end shows.
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(contents.data()),
                               contents.size());
    }
    std::printf("%zu inputs\n", files.size());
    return files.empty() ? 1 : 0;
}
