// A folder for one test, removed with all that is in it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <string>

class TestFolder {
public:
    TestFolder() {
        std::string name = std::filesystem::temp_directory_path() / "interface-XXXXXX";
        path_ = mkdtemp(name.data());
    }
    ~TestFolder() { std::filesystem::remove_all(path_); }
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    [[nodiscard]] const std::string& Path() const { return path_; }

private:
    std::string path_;
};
