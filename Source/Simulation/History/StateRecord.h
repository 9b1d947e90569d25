// Bodies at one moment as fields of a record. No state.
#pragma once

#include <vector>

#include "Platform/Application/FieldDescription.h"
#include "Platform/Support/Errors.h"
#include "Platform/Support/SupportDefs.h"

class BMessage;
struct SystemState;

struct StateRecord {
    [[nodiscard]] static status_t Write(const SystemState& state, const std::vector<double>& radii,
                                        BMessage* into);
    // B_BAD_DATA: there can be no such bodies.
    [[nodiscard]] static status_t Read(const BMessage& record, SystemState* state,
                                       std::vector<double>* radii);
    static void DescribeFields(FieldDescriptions* into);
};

// All items of a field, which may be missing; B_BAD_DATA: numbers that are not finite.
[[nodiscard]] status_t ReadNumbers(const BMessage& record, const char* name,
                                   std::vector<double>* numbers);
[[nodiscard]] status_t ReadNumbers(const BMessage& record, const char* name,
                                   std::vector<int64>* numbers);
