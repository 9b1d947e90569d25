// What is kept of a run, as a record in a document. No state; the caller has the run to itself.
#pragma once

#include <memory>

#include "Platform/Application/FieldDescription.h"
#include "Platform/Support/Errors.h"

class BMessage;
class KeptRun;

class KeptRunRecord {
public:
    [[nodiscard]] static status_t Write(const KeptRun& run, BMessage* into);
    // Null: the record is damaged.
    [[nodiscard]] static std::unique_ptr<KeptRun> Read(const BMessage& record);

    // Of a run, and of what lies in its record.
    static void DescribeRun(FieldDescriptions* into);
    static void DescribeTrack(FieldDescriptions* into);
    static void DescribeEvent(FieldDescriptions* into);
    static void DescribeCheckpoint(FieldDescriptions* into);
};
