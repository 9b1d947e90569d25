// What a checkpoint holds of its run, beside the document as it stands: all that the run needs to
// go on as if nothing had happened, and what its summary tells of the part that is over. A plain
// value.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/FieldDescription.h"
#include "Run/Progress.h"
#include "Simulation/Document/Conservation.h"

// How far the file of the run's reports has come.
struct ReportMark {
    int64 size = 0;       // bytes until now
    std::string lastRow;  // what these end with
    int64 every = 1;      // reports from one that is written to the next
    // It has states in place of reports: at these times (s, rising), or where steps end.
    std::vector<double> times = {};
    bool areSteps = false;

    // The number of the last report in the file.
    [[nodiscard]] int64 LastReport() const;
};

// How far the file of its events has come.
struct EventMark {
    int64 size = 0;
    std::string lastRow;
    double escapeDistance = 0.0;  // m
};

struct RunRecord {
    BMessage calculator;   // Calculator::ArchiveRun
    int64 steps = 0;       // taken until now
    int64 reports = 0;     // made until now
    double seconds = 0.0;  // of real time that they took
    RunGoal goal;
    bool stopsAtCollision = false;
    double startTime = 0.0;  // s
    Conserved start;
    MergerTotals mergers;
    std::optional<ReportMark> reportFile;  // if they go to a file
    std::optional<EventMark> eventFile;

    // Adds the field "Run", a record, to that of the document.
    [[nodiscard]] status_t AddTo(BMessage* document) const;
    // B_NAME_NOT_FOUND: the document holds no run. Changes nothing unless all is there.
    [[nodiscard]] status_t FindIn(const BMessage& document);
    // Of that record.
    static void DescribeFields(FieldDescriptions* into);
};
