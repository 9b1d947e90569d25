// The foot of a simulation's window: how many bodies there are, how a run goes, and below it what
// happened last. Rules as for BView.
#pragma once

#include <string>

#include "BGroupView.h"
#include "RunMonitor.h"

class BStringView;
class ProgramResources;

class StatusLine : public BGroupView {
public:
    // The resources are not owned.
    explicit StatusLine(const ProgramResources* resources);

    void ShowBodies(std::size_t count);
    // Rates of zero and errors that are not known are left out. `timeUval`: the unit of time, s.
    void ShowRun(const RunMonitor::Figures& figures, double timeUval);
    // Longer ones than there is room for are cut; the tool tip has all of it.
    void ShowMessage(const std::string& text);
    // The same for what happened in the run.
    void ShowRunEvent(const std::string& text);
    // Another epoch is shown than the one that the run made: its figures and its last event go.
    void ForgetRun();

private:
    void ShowFigures();

    const ProgramResources* const resources_;
    BStringView* const figuresView_;
    BStringView* const message_;
    std::string bodies_;
    std::string run_;
    bool isRunEvent_ = false;  // the message
};
