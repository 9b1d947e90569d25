// A temporary folder with documents in it, and readers for what the program writes.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "Model/Epochs/Epoch.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Support/SupportDefs.h"
#include "Tests/Platform/TestFolder.h"

struct CsvRow {
    int64 report = 0;
    double time = 0.0;
    int64 id = 0;
    std::string name;
    double values[6] = {};  // x y z vx vy vz
    bool operator==(const CsvRow&) const = default;
};

class RunFixture : public testing::Test {
protected:
    [[nodiscard]] std::string Path(const std::string& name) const { return folder_.Path(name); }
    // A file with these bytes; its path.
    std::string Put(const std::string& name, const std::string& bytes) const {
        return folder_.Write(name, bytes);
    }
    [[nodiscard]] static std::string Get(const std::string& path);
    // A document with this epoch, or with the given record; its path.
    std::string PutDocument(const std::string& name, const Epoch& epoch) const;
    std::string PutRecord(const std::string& name, const BMessage& record) const;
    [[nodiscard]] static BMessage GetRecord(const std::string& path);
    // Fails the test when the text is not what the program writes. Names stand as they are written.
    [[nodiscard]] static std::vector<CsvRow> ParseCsv(const std::string& text);
    // A member of a JSON object without nested objects, as it stands there.
    [[nodiscard]] static std::string Member(const std::string& json, const std::string& name);

private:
    TestFolder folder_;
};

// A star with two planets, a name that needs quotes and a massless body; off the origin and moving.
std::unique_ptr<Epoch> TestSystem();
// A body of radius 0.05 with GM 1, called "b" and its number.
void AddSmallBody(Epoch* epoch, int64 id, ThreeVector position, ThreeVector velocity = {});
// "b0" and "b1" fall into one another, "b2" is in orbit about them.
std::unique_ptr<Epoch> MergingSystem();
