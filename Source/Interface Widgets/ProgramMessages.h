// Codes of the messages that travel between the program's windows, its simulations and the
// application. Those that stay inside one window stand in its header. Fields that name a window
// hold a pointer.
#pragma once

#include "Platform/Support/SupportDefs.h"

// --- To the application ---
inline constexpr uint32 kNewSimulation = FourCC("nwsm");
// With pointer "Simulation": the window that an opened file may replace, or null. Simulations take
// it too, and pass it on with themselves in that field.
inline constexpr uint32 kOpen = FourCC("open");
// A simulation (with pointer "Doomed Simulation"), or to a simulation: a display (with pointer
// "Doomed Display") has closed and wants to be deleted. String "Reason" of a simulation: why its
// document could not be read.
inline constexpr uint32 kDeleteMe = FourCC("klme");
// A message box has closed: pointer "Doomed Msg Window". To the application or a simulation.
inline constexpr uint32 kDeleteMessageWindow = FourCC("klms");
// A StandingAnswer.
inline constexpr uint32 kSetDefaultResponse = FourCC("sdmr");
inline constexpr uint32 kClearDefaultResponses = FourCC("cdmr");
// With pointer "Simulation": it was asked to close, and the user decided that it stays open
// (Cancel, the question's or the save panel's close box), or it could not be saved. Ends the
// quitting of the program.
inline constexpr uint32 kCloseCancelled = FourCC("clcn");
// A document could not be saved, and its window closes: a CopyOffer.
inline constexpr uint32 kOfferCopy = FourCC("ofcp");
// With pointer "Simulation": its window has built itself and is shown.
inline constexpr uint32 kSimulationShown = FourCC("shwn");
// From the menu of recent documents: open the one with string "path", and with pointer "Simulation"
// as in "open"; forget them all.
inline constexpr uint32 kOpenRecent = FourCC("rcop");
inline constexpr uint32 kClearRecent = FourCC("rccl");
// The program was started once more, with the documents "path" (strings), which it hands over: open
// them, or come to the front when there are none. To be answered (LocalRequests) with what could
// not be opened.
inline constexpr uint32 kHandOver = FourCC("hdov");
// Steps in which a simulation's window is built. They go to the application, which hands them back
// to the pointer "Simulation".
inline constexpr uint32 kBuildMenuBar = FourCC("bmmu");
inline constexpr uint32 kBuildRootView = FourCC("brtv");
inline constexpr uint32 kBuildBodySettings = FourCC("bbst");
inline constexpr uint32 kBuildGlobalControls = FourCC("bgct");
inline constexpr uint32 kArrangeWindow = FourCC("arsw");
inline constexpr uint32 kShowWindow = FourCC("bld8");
// Obsolete steps, handed back as well, and ignored.
inline constexpr uint32 kBuildNothing = FourCC("bld9");
inline constexpr uint32 kObsoleteSteps[] = {kBuildNothing, FourCC("sivl"), FourCC("fwfl")};

// --- To a simulation ---
inline constexpr uint32 kSave = FourCC("save");
inline constexpr uint32 kSaveAs = FourCC("svas");
inline constexpr uint32 kSaveCurrentEpoch = FourCC("svep");
inline constexpr uint32 kCloseThenOpen = FourCC("c_op");
inline constexpr uint32 kUndo = FourCC("undo");
inline constexpr uint32 kRedo = FourCC("redo");
inline constexpr uint32 kNewBody = FourCC("nwbd");
inline constexpr uint32 kDeleteCurrentBody = FourCC("dlcb");
inline constexpr uint32 kDeleteBody = FourCC("dlbd");     // int64 "Body ID"
inline constexpr uint32 kEditBody = FourCC("edbd");       // int64 "Body ID"
inline constexpr uint32 kSetRelativeTo = FourCC("rel2");  // int64 "Body ID"
// Of a body that was dragged, or thrown in, in a display: three doubles "Place" (m), "Velocity"
// (m/s), in the document's frame.
inline constexpr uint32 kPlaceBody = FourCC("plbd");  // int64 "Body ID", "Place"
inline constexpr uint32 kSteerBody = FourCC("stbd");  // int64 "Body ID", "Velocity"
inline constexpr uint32 kThrowBody = FourCC("thbd");  // "Place", "Velocity"
// Of the epoch window, with int32 "index" in visiting order and pointer "Epoch".
inline constexpr uint32 kEditEpoch = FourCC("edep");
inline constexpr uint32 kDeleteEpoch = FourCC("dlep");
inline constexpr uint32 kLogEpoch = FourCC("lgep");
// Begin a branch at the moment of the past that is shown; show the present again.
inline constexpr uint32 kBranchHere = FourCC("brch");
inline constexpr uint32 kBackToNow = FourCC("bknw");
inline constexpr uint32 kToCenterOfMass = FourCC("2com");
inline constexpr uint32 kTogglePause = FourCC("tgps");
inline constexpr uint32 kRunBackwards = FourCC("rbck");
// Pause, and let go again; "rest" and "rnok" hold the calculator only. Answered with message
// "Reply", if there is one, when done.
inline constexpr uint32 kPauseRun = FourCC("psar");
inline constexpr uint32 kUnPauseRun = FourCC("gook");
inline constexpr uint32 kRestRun = FourCC("rest");
inline constexpr uint32 kUnRestRun = FourCC("rnok");
inline constexpr uint32 kPauseForUser = FourCC("psur");
inline constexpr uint32 kRedisplay = FourCC("rdsp");
inline constexpr uint32 kNewDisplay = FourCC("nwds");  // int32 "Display Type"
inline constexpr uint32 kShowTrailDisc = FourCC("s_td");
inline constexpr uint32 kShowAnimation = FourCC("sanm");
inline constexpr uint32 kShowEpochs = FourCC("sepw");
inline constexpr uint32 kRequestGroup = FourCC("rqgr");
inline constexpr uint32 kTellUser = FourCC("tell");  // string "Text": in the status line

// --- Their fields ---
inline constexpr const char* kSimulationField = "Simulation";
inline constexpr const char* kDoomedSimulation = "Doomed Simulation";
inline constexpr const char* kDoomedDisplay = "Doomed Display";
inline constexpr const char* kDoomedMessageWindow = "Doomed Msg Window";
inline constexpr const char* kBodyIDField = "Body ID";
inline constexpr const char* kPlaceField = "Place";
inline constexpr const char* kVelocityField = "Velocity";
inline constexpr const char* kEpochIndexField = "index";
inline constexpr const char* kEpochField = "Epoch";
inline constexpr const char* kDisplayTypeField = "Display Type";
inline constexpr const char* kReplyField = "Reply";
inline constexpr const char* kReasonField = "Reason";
inline constexpr const char* kTextField = "Text";
inline constexpr const char* kPathField = "path";
