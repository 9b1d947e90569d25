#include "SettingsFixture.h"

#include "BGroupView.h"
#include "BMessage.h"
#include "BMessenger.h"
#include "ProgramMessages.h"
#include "WindowServer.h"

namespace {

SimulationDocument* Loaded(SimulationDocument* document, const BMessage& record) {
    static_cast<void>(document->Load(record).Failed());
    return document;
}

}  // namespace

BoxesWindow::BoxesWindow(SimulationDocument* document, SimulationController* controller)
    : BWindow(BRect{}, "boxes", B_TITLED_WINDOW),
      body(new BodySettingsBox(document->Portal(), TestContext())),
      global(new GlobalControlsBox(document->Portal(), TestContext())),
      document_(document),
      controller_(controller) {
    auto* const column = new BGroupView("column", B_VERTICAL);
    column->AddChild(body);
    column->AddChild(global);
    AddChild(column);
    document->Portal()->AddObserver(this);
    BoxesWindow::Changed(-1);
}

void BoxesWindow::Changed(int32 changes) {
    if (pending_.fetch_or(changes) == 0)
        WindowServer::Deliver(BMessenger(static_cast<BHandler*>(this)), BMessage(kRedisplay));
}

bool BoxesWindow::CommitChanges() {
    const bool isNamed = body->CommitNonPhysical();
    const bool isMoved = body->CommitPhysical();
    return global->CommitEpochValues() || isNamed || isMoved;
}

void BoxesWindow::MessageReceived(BMessage* message) {
    int64 id = kNoSystemID;
    message->FindInt64(kBodyIDField, &id);
    switch (message->what) {
        case kRedisplay: {
            const int32 changes = pending_.exchange(0);
            body->Redisplay(changes);
            global->Redisplay(changes);
            break;
        }
        case kEditBody:
            return controller_->EditBody(id);
        case kSetRelativeTo:
            return controller_->SetRelativeTo(id);
        default:
            BWindow::MessageReceived(message);
    }
}

void BoxesWindow::Quit() {
    document_->Portal()->RemoveObserver(this);
    BWindow::Quit();
}

SettingsFixture::SettingsFixture(const BMessage& record)
    : window(new BoxesWindow(Loaded(&document, record), &controller)), hand(window->ChildAt(0)) {
    window->Show();
    EntryHand::WaitUntilActive(window->ChildAt(0));
    Settle();
}

SettingsFixture::~SettingsFixture() {
    if (window->Lock()) window->Quit();
}

// From a list over its box and the window to the model and back are more ways than one Settle waits
// for.
void SettingsFixture::Settle() {
    ::Settle(window);
    ::Settle(window);
}

void SettingsFixture::InWindow(const std::function<void()>& what) {
    window->Lock();
    what();
    window->Unlock();
    Settle();
}

void SettingsFixture::Undo() {
    InWindow([this] { controller.Undo(); });
}

void SettingsFixture::Change(const std::function<void(AbEpoch&)>& change, int32 flags) {
    portal->WriteLock();
    change(*portal->FocusEpoch());
    portal->TellObservers(flags);
    portal->WriteUnlock();
    Settle();
}
