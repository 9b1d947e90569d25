// A folder for one test's files, removed with everything in it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

class TestFolder {
public:
    TestFolder();
    ~TestFolder();
    TestFolder(const TestFolder&) = delete;
    TestFolder& operator=(const TestFolder&) = delete;

    [[nodiscard]] const std::string& Path() const { return path_; }
    // Of a file or folder in it.
    [[nodiscard]] std::string Path(const std::string& name) const { return path_ + '/' + name; }
    // Writes a file, in a folder that is made for it if need be, and gives its path.
    std::string Write(const std::string& name, std::string_view contents) const;
    [[nodiscard]] std::string Read(const std::string& name) const;
    // What is in the folder, sorted.
    [[nodiscard]] std::vector<std::string> Names() const;

private:
    std::string path_;
};
