#include "Tests/Application/AppDriver.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>
#include <limits>
#include <string_view>

#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Simulation/Document/SimulationFile.h"
#include "Simulation/Simulation.h"
#include "Tests/Platform/Interface/TestMain.h"

namespace {

class TestApp : public SimApp {
public:
    TestApp(const ProgramResources& resources, std::binary_semaphore* ready, Welcome welcome)
        : SimApp(&resources, Recovery::kOffer, welcome), ready_(ready) {}

    void ReadyToRun() override {
        SimApp::ReadyToRun();
        ready_->release();
    }
    void MessageReceived(BMessage* message) override {
        if (message->what == kPing)
            SendReply(BMessage(B_REPLY));
        else
            SimApp::MessageReceived(message);
    }

    static constexpr uint32 kPing = FourCC("ping");

private:
    std::binary_semaphore* const ready_;
};

BMessage RefsMessage(const std::vector<std::string>& paths) {
    BMessage message(B_REFS_RECEIVED);
    for (const std::string& path : paths) {
        entry_ref ref;
        if (get_ref_for_path(path.c_str(), &ref) == B_OK) message.AddRef("refs", &ref);
    }
    return message;
}

}  // namespace

const ProgramResources& TestResources() {
    static const ProgramResources resources;
    return resources;
}

std::string WriteDocument(const std::string& path) {
    EXPECT_FALSE(SimulationFile::Write(path, TestResources().NewSimulation()).Failed());
    return path;
}

BMessage BadRecord() {
    BMessage record = TestResources().NewSimulation();
    BMessage epoch;
    EXPECT_EQ(record.FindMessage("Epochs", &epoch), B_OK);
    epoch.RemoveName("Time");
    epoch.AddDouble("Time", std::numeric_limits<double>::quiet_NaN());
    record.RemoveName("Epochs");
    record.AddMessage("Epochs", &epoch);
    return record;
}

void PutUnchecked(const std::string& path, const BMessage& record) {
    std::vector<std::byte> bytes;
    EXPECT_EQ(record.Flatten(&bytes), B_OK);
    std::ofstream(path, std::ios::binary)
        << SimulationFile::kTag
        << std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

AppDriver::AppDriver(const std::string& folder, const std::vector<std::string>& documents,
                     SimApp::Welcome welcome, const ProgramResources& resources) {
    setenv("XDG_CONFIG_HOME", (folder + "/settings").c_str(), 1);
    setenv("XDG_STATE_HOME", (folder + "/state").c_str(), 1);
    runner_ = std::thread([this, documents, welcome, &resources] {
        RunOnMainThread([&] {
            TestApp app(resources, &isReady_, welcome);
            app_ = &app;
            if (const BMessage refs = RefsMessage(documents); !documents.empty()) Post(refs);
            app.Run();
            hasEnded_ = true;
        });
    });
    isReady_.acquire();
}

const ProgramResources& AppDriver::Resources() {
    return TestResources();
}

AppDriver::~AppDriver() {
    if (!hasEnded_) Post(B_SESSION_ENDING);
    runner_.join();
}

void AppDriver::Post(const BMessage& message) {
    static_cast<void>(app_.load()->PostMessage(&message));
}

void AppDriver::Choose(const std::vector<std::string>& paths, Simulation* requester) {
    BMessage message = RefsMessage(paths);
    message.AddPointer(kSimulationField, requester);
    Post(message);
}

void AppDriver::Settle() {
    const BMessage ping(TestApp::kPing);
    BMessage reply;
    static_cast<void>(BMessenger(static_cast<BHandler*>(app_.load())).SendMessage(&ping, &reply));
}

std::vector<Simulation*> AppDriver::Simulations() {
    SimApp* const app = app_;
    if (hasEnded_ || !app->Lock()) return {};
    std::vector<Simulation*> simulations = app->Simulations();
    app->Unlock();
    return simulations;
}

std::string AppDriver::Titles() {
    std::string titles;
    SimApp* const app = app_;
    if (hasEnded_ || !app->Lock()) return titles;
    for (const Simulation* simulation : app->Simulations())
        if (!simulation->IsHidden()) titles += (titles.empty() ? "" : ",") + simulation->Title();
    app->Unlock();
    return titles;
}

std::string AppDriver::Message(std::size_t index) {
    Simulation* const simulation = Simulations().at(index);
    if (!simulation->Lock()) return {};
    const auto* const line = dynamic_cast<BStringView*>(simulation->FindView("Message"));
    std::string text = line == nullptr ? "" : line->Text();
    simulation->Unlock();
    return text;
}

void AppDriver::Edit(std::size_t index) {
    const BMessage newBody(kNewBody);
    BMessage reply;
    static_cast<void>(
        BMessenger(static_cast<BHandler*>(Simulations().at(index))).SendMessage(&newBody, &reply));
}

void AppDriver::Close(std::size_t index) {
    static_cast<void>(
        static_cast<BLooper*>(Simulations().at(index))->PostMessage(B_QUIT_REQUESTED));
}

bool AppDriver::Shows(const std::string& titles) {
    return WaitUntil([&] { return Titles() == titles; });
}

bool AppDriver::Ends() const {
    return WaitUntil([this] { return HasEnded(); });
}

bool AppDriver::WaitUntil(const std::function<bool()>& condition) {
    constexpr bigtime_t kPause = 5000;
    const bigtime_t end = system_time() + 30'000'000;
    while (!condition()) {
        if (system_time() > end) return false;
        snooze(kPause);
    }
    return true;
}
