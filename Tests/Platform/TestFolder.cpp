#include "Tests/Platform/TestFolder.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

TestFolder::TestFolder() {
    std::string pattern = testing::TempDir() + "orvek-XXXXXX";
    EXPECT_NE(mkdtemp(pattern.data()), nullptr);
    path_ = std::filesystem::canonical(pattern).native();
}

TestFolder::~TestFolder() {
    std::error_code error;
    std::filesystem::remove_all(path_, error);
}

std::string TestFolder::Write(const std::string& name, std::string_view contents) const {
    std::filesystem::create_directories(std::filesystem::path(Path(name)).parent_path());
    std::ofstream file(Path(name), std::ios::binary);
    file << contents;
    EXPECT_TRUE(file.good()) << name;
    return Path(name);
}

std::string TestFolder::Read(const std::string& name) const {
    std::ifstream file(Path(name), std::ios::binary);
    EXPECT_TRUE(file.good()) << name;
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> TestFolder::Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path_))
        names.push_back(entry.path().filename().native());
    std::sort(names.begin(), names.end());
    return names;
}
