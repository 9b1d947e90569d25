#include "Tests/Robot/RobotChecks.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "Application/SimApp.h"
#include "Displays/Projection/ProjectionDisplay.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Commands/UndoChain.h"
#include "Model/Epochs/EpochCursor.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Model/Systems/Body.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Handles/BApplication.h"
#include "Platform/Interface/Handles/SaveChoice.h"
#include "Platform/Interface/Server/WindowPart.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/Document/SimulationFile.h"
#include "Simulation/History/RunCheckpoint.h"
#include "Simulation/History/RunHistory.h"
#include "Simulation/Simulation.h"
#include "Simulation/SimulationSaver.h"
#include "Tests/Robot/DocumentState.h"
#include "Tests/Robot/HistoryWalk.h"
#include "Tests/Robot/Robot.h"

namespace {

// Each lets a message that was answered by another one go its way.
constexpr int kSettlingRounds = 5;
constexpr bigtime_t kPatience = 20'000'000;

void Ping(BLooper* looper) {
    const BMessage ping(FourCC("ping"));
    BMessage reply;
    static_cast<void>(BMessenger(static_cast<BHandler*>(looper))
                          .SendMessage(&ping, &reply, kPatience, kPatience));
}

// One quantity of the system in focus, or of the epoch: the line in which it is typed, the unit,
// the unit's factor, and how it is asked for.
struct Quantity {
    const char* line;
    const char* unit;
    double factor;
    double (*value)(const EpochPortal&);
    bool isMagnitude;
};

const std::vector<Quantity> kQuantities{
    {"Mass:", "kg", 6.672e-11, [](const EpochPortal& p) { return p.FocusSystem()->M(); }, true},
    {"Radius:", "km", 1e3, [](const EpochPortal& p) { return p.FocusSystem()->Radius(); }, true},
    {"Position X:", "AU", 1.4959787066e11,
     [](const EpochPortal& p) { return p.FocusSystem()->Position().x; }, false},
    {"Position Z:", "km", 1e3, [](const EpochPortal& p) { return p.FocusSystem()->Position().z; },
     false},
    {"Velocity Vy:", "km/s", 1e3,
     [](const EpochPortal& p) { return p.FocusSystem()->Velocity().y; }, false},
    {"Time:", "dy", 86400.0, [](const EpochPortal& p) { return p.FocusEpoch()->Time(); }, false},
};

}  // namespace

// --- Documents ---

void RobotChecks::Settle() const {
    for (int i = 0; i < kSettlingRounds && !robot_->IsOver(); i++) {
        Ping(application_);
        for (int32 window = 0; window < BApplication::CountWindows(); window++)
            if (BWindow* const looper = BApplication::WindowAt(window); looper != nullptr)
                Ping(looper);
        robot_->Do([] {});
    }
}

// Those that are built, each with the portal that its displays know.
std::vector<RobotChecks::Document> RobotChecks::Documents() const {
    std::vector<Document> documents;
    if (!application_->Lock()) return documents;
    for (Simulation* const simulation : application_->Simulations()) {
        if (simulation->IsHidden()) continue;
        for (int32 i = 0; i < BApplication::CountWindows(); i++)
            if (auto* const display = dynamic_cast<ProjectionDisplay*>(BApplication::WindowAt(i));
                display != nullptr && display->Owner() == static_cast<BLooper*>(simulation)) {
                documents.push_back({simulation, display->Epoch(), display->History()});
                break;
            }
    }
    application_->Unlock();
    return documents;
}

void RobotChecks::Send(const Document& document, const BMessage& message) const {
    BMessage reply;
    static_cast<void>(
        BMessenger(static_cast<BHandler*>(document.window)).SendMessage(&message, &reply));
}

void RobotChecks::Pause(const Document& document) const {
    Send(document, BMessage(kPauseForUser));
    document.portal->CommitChanges();
    Settle();
}

void RobotChecks::CheckOne() {
    Settle();
    const std::vector<Document> documents = Documents();
    if (!documents.empty()) Check(dice_->Any(documents));
}

void RobotChecks::CheckAll() {
    Settle();
    for (const Document& document : Documents())
        Check(document);
}

void RobotChecks::Check(const Document& document) {
    Pause(document);
    CheckKept(document);
    CheckHistory(document);
    if (dice_->Chance(40)) CheckSaving(document);
}

// --- History ---

void RobotChecks::CheckHistory(const Document& document) {
    journal_->Note("check: history of " + document.window->Title());
    UndoChain* const chain = document.portal->GetUndoChain();
    const bool wasSaved = chain->IsSaved();
    HistoryWalk walk(
        document.portal, [&] { Send(document, BMessage(kUndo)); },
        [&] { Send(document, BMessage(kRedo)); });
    std::string difference = walk.Walk();
    const auto [known, isNew] = starts_.try_emplace(
        {document.window->Thread(), walk.FirstEpoch(), walk.StepsAtStart()}, walk.Start());
    if (difference.empty() && !isNew)
        if (const std::string other = FirstDifference(known->second, walk.Start()); !other.empty())
            difference = "another start than before: " + other;
    EXPECT_EQ(difference, "") << document.window->Title() << '\n' << journal_->Last();
    EXPECT_EQ(chain->IsSaved(), wasSaved);
}

// A sample is what the run reported then.
void RobotChecks::CheckKept(const Document& document) {
    const RunHistory& history = *document.history;
    EXPECT_LE(history.Bytes(), history.Limits().bytes) << journal_->Last();
    std::vector<const AbEpoch*> runs;
    {
        const ReadGuard guard(document.portal);
        for (EpochCursor cursor(document.portal->RootEpoch()); cursor.GetEpoch() != nullptr;
             cursor.Increment())
            if (history.SpanOf(cursor.GetEpoch())) runs.push_back(cursor.GetEpoch());
    }
    if (runs.empty()) return;
    const AbEpoch* const run = dice_->Any(runs);
    const std::vector<int64> bodies = history.BodiesOf(run);
    if (bodies.empty()) return;
    const int64 body = dice_->Any(bodies);
    constexpr double kEver = std::numeric_limits<double>::infinity();
    const std::vector<Sample> samples = history.Samples(run, body, -kEver, kEver);
    if (samples.empty()) return;
    const Sample sample = dice_->Any(samples);
    for (const RunEvent& event : history.Events(run))
        if (event.time == sample.time) return;
    const bigtime_t end = system_time() + kPatience / 4;
    RunCheckpoint moment;
    const auto finding = history.MomentAt(
        run, sample.time, [end](double) { return system_time() < end; }, &moment);
    if (finding == RunHistory::Finding::kCancelled) return;
    journal_->Note("check: kept runs of " + document.window->Title());
    ASSERT_EQ(finding, RunHistory::Finding::kFound) << journal_->Last();
    const auto found = std::ranges::find(moment.state.ids, body);
    ASSERT_NE(found, moment.state.ids.end()) << body << '\n' << journal_->Last();
    const auto place = static_cast<std::size_t>(found - moment.state.ids.begin());
    EXPECT_EQ(moment.state.time, sample.time) << journal_->Last();
    EXPECT_TRUE(moment.state.Position(place) == sample.position &&
                moment.state.Velocity(place) == sample.velocity)
        << body << " at " << sample.time << '\n'
        << journal_->Last();
}

// --- Saving ---

void RobotChecks::CheckSaving(const Document& document) {
    const std::string name = "checked " + std::to_string(dice_->Number(1, 3));
    journal_->Note("check: saving " + document.window->Title() + " as " + name);
    entry_ref directory;
    ASSERT_EQ(get_ref_for_path(folder_.c_str(), &directory), B_OK);
    BMessage answer(SimulationSaver::kSaveNamed);
    SaveChoice{directory, name}.AddTo(&answer);
    Send(document, answer);
    Settle();

    // Another window may have the document of that name.
    const std::string title = document.window->Title();
    EXPECT_TRUE(title == name || title.starts_with(name + " (window ")) << title;
    EXPECT_TRUE(document.portal->GetUndoChain()->IsSaved());
    bool isMarked = true;
    if (!robot_->Do([&] { isMarked = document.window->Part()->Widget()->isWindowModified(); }))
        return;
    EXPECT_FALSE(isMarked);
    BMessage record;
    ASSERT_FALSE(SimulationFile::Read(folder_ + '/' + name, &record).Failed());
    SimulationDocument read(nullptr);
    ASSERT_FALSE(read.Load(record).Failed());
    EXPECT_EQ(FirstDifference(DocumentState(document.portal), DocumentState(read.Portal())), "")
        << "saved and read again\n"
        << journal_->Last();
}

// --- Typing ---

void RobotChecks::CheckTyping() {
    Settle();
    const std::vector<Document> documents = Documents();
    if (documents.empty()) return;
    const Document document = dice_->Any(documents);
    Pause(document);
    // What is typed into the past goes to another epoch, which may show it relative to something.
    Send(document, BMessage(kBackToNow));
    Settle();
    const Quantity& quantity = dice_->Any(kQuantities);
    EpochPortal* const portal = document.portal;
    portal->ReadLock();
    const MassSystem* const system = portal->FocusSystem();
    // Others are shown relative to something, or follow from their members.
    const bool isPlain =
        dynamic_cast<const Body*>(system) != nullptr && system->RelativeTo() == kOriginID;
    portal->ReadUnlock();
    if (!isPlain) return;

    using Finish = RobotHands::Finish;
    static const std::vector<Finish> kFinishes{Finish::kEnter, Finish::kTab, Finish::kNothing};
    const Finish finish = dice_->Any(kFinishes);
    const std::string number = dice_->PlainNumber();
    bool isTyped = false;
    const bool isDone = robot_->Do([&] {
        isTyped = hands_->Type(document.window->Part()->Widget(), quantity.line,
                               number + ' ' + quantity.unit, finish);
    });
    if (!isDone || !isTyped) return;
    if (finish == Finish::kNothing) {
        static const std::vector<uint32> kNext{kLogEpoch, kSave, B_QUIT_REQUESTED, kNewBody};
        const uint32 next = dice_->Any(kNext);
        // A saved document would close.
        if (next != B_QUIT_REQUESTED || !portal->GetUndoChain()->IsSaved())
            Send(document, BMessage(next));
        portal->CommitChanges();
        if (next == kNewBody) return;  // which is in focus now
    }
    Settle();
    // A standing answer may have closed it.
    const std::vector<Document> left = Documents();
    if (std::none_of(left.begin(), left.end(),
                     [&](const Document& other) { return other.window == document.window; }))
        return;
    const double wanted = std::stod(number) * quantity.factor;
    portal->ReadLock();
    const double value = quantity.value(*portal);
    portal->ReadUnlock();
    EXPECT_EQ(value, quantity.isMagnitude ? std::fabs(wanted) : wanted)
        << document.window->Title() << ": " << number << ' ' << quantity.unit << " typed into "
        << quantity.line << '\n'
        << journal_->Last() << DocumentState(portal);
}
