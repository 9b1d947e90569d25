// Scripts that a test writes, compiled as orvek-rc compiles them.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "BMessage.h"
#include "BResources.h"
#include "TestFolder.h"

class RdefTest : public testing::Test {
protected:
    // The resource file; empty, and the test fails, if the script has a fault.
    std::vector<std::byte> Compile(const std::string& script) const;
    [[nodiscard]] BResources Resources(const std::string& script) const;
    // The data of the one resource, whose value this is; its type.
    [[nodiscard]] std::string Data(const std::string& value, type_code* type = nullptr) const;
    [[nodiscard]] BMessage Message(const std::string& value) const;
    // What is wrong with the script, "LINE: REASON" in the script itself.
    [[nodiscard]] std::string Fault(const std::string& script) const;

    TestFolder folder_;  // of the scripts
};
