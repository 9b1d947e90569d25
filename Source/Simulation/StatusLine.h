// The foot of a simulation's window: how many bodies there are, how a run goes and how far it can
// be believed, which a click explains, and below it what happened last. Rules as for BView.
#pragma once

#include <cstddef>
#include <string>

#include "Platform/Interface/Handles/BGroupView.h"
#include "Simulation/LineBreaker.h"
#include "Simulation/RunMonitor.h"

class BStringView;
class ProgramResources;

class StatusLine : public BGroupView {
public:
    // The resources are not owned.
    explicit StatusLine(const ProgramResources* resources);

    // The figures are broken into as many lines as they take. True if the line wants another
    // height now, as for all that follow.
    bool ShowBodies(std::size_t count);
    // Advice on what would be better; empty: there is none.
    bool ShowAdvice(const std::string& advice);
    // How far two runs are apart that are compared; empty: none are.
    bool ShowSeparation(const std::string& text);
    // Rates of zero and errors that are not known are left out. `timeUval`: the unit of time, s.
    bool ShowRun(const RunMonitor::Figures& figures, double timeUval, int32 order);
    // Longer ones than there is room for are cut; the tool tip has all of it.
    bool ShowMessage(const std::string& text);
    // Likewise, but broken into as many lines as it takes.
    bool ShowInFull(const std::string& text);
    // The same text again, where the line has another width than it had; the event stays one.
    bool BreakAnew();
    // Likewise, for what happened in the run.
    bool ShowRunEvent(const std::string& text);
    // Another epoch is shown than the one that the run made: its figures and its last event go.
    bool ForgetRun();
    // What their lines need beyond one of each.
    [[nodiscard]] float ExtraHeight() const;

private:
    bool ShowFigures();
    bool ShowLines(const std::string& text, const std::string& lines);

    const ProgramResources* const resources_;
    BStringView* const figuresView_;
    BStringView* const message_;
    LineBreaker lines_;
    float width_ = 0.0f;  // of both, when it was last asked for; 0: not yet
    std::string bodies_;
    std::string advice_;
    std::string run_;
    std::string error_;  // of the energy, for who looks closer
    std::string separation_;
    // Between the lines of the figures; while a run goes on they do not become fewer.
    std::ptrdiff_t figureBreaks_ = 0;
    std::string inFull_;         // the message, if it is broken into lines
    std::ptrdiff_t breaks_ = 0;  // between the message's lines
    bool isRunEvent_ = false;    // the message
};
