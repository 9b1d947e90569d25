// Notes which systems are left out while records are read. The mass systems made on this thread as
// long as it lives report to it; those that are stored without an identifier get provisional ones.
// Readings on one thread do not nest.
#pragma once

#include <string>
#include <vector>

#include "Platform/Support/SupportDefs.h"

class BMessage;
class MassSystem;

class SystemReading {
public:
    // A system whose identifier a sibling had already.
    struct LeftOut {
        std::string name;
        std::string sibling;
    };

    SystemReading() { sCurrent = this; }
    ~SystemReading() { sCurrent = nullptr; }
    SystemReading(const SystemReading&) = delete;
    SystemReading& operator=(const SystemReading&) = delete;

    // Null when none is under way on this thread.
    static SystemReading* Current() { return sCurrent; }

    void NoteLeftOut(const MassSystem& system, const MassSystem& sibling);
    // What stands among the systems and is none; "class" is what its record names.
    void NoteForeign(const BMessage& record);
    // The first few of those left out.
    [[nodiscard]] const std::vector<LeftOut>& Told() const { return told_; }
    [[nodiscard]] int32 CountLeftOut() const { return count_; }
    // The class of the first one that is no system; empty if its record names none.
    [[nodiscard]] const std::string& ForeignClass() const { return foreignClass_; }
    [[nodiscard]] int32 CountForeign() const { return foreignCount_; }

    static constexpr int32 kMaxTold = 3;

private:
    static thread_local SystemReading* sCurrent;

    std::vector<LeftOut> told_;
    int32 count_ = 0;
    std::string foreignClass_;
    int32 foreignCount_ = 0;
};
