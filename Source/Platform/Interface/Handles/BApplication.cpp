#include "Platform/Interface/Handles/BApplication.h"

#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BWindow.h"
#include "Platform/Interface/Server/WindowList.h"
#include "Platform/Interface/Server/WindowServer.h"

BApplication* be_app = nullptr;

namespace {

constexpr const char* kArgumentField = "argv";  // strings

}  // namespace

BApplication::BApplication(const char* signature) : BLooper(signature) {
    if (be_app != nullptr) debugger("There is an application object already.");
    be_app = this;
}

BApplication::~BApplication() {
    be_app = nullptr;
}

// --- Running ---

thread_id BApplication::Run() {
    WindowServer* const server = WindowServer::Current();
    if (server == nullptr || !WindowServer::IsServerThread())
        debugger("Run() of an application needs the window server, on its thread.");
    if (server->Arguments().size() > 1) {
        BMessage message(B_ARGV_RECEIVED);
        message.AddInt32("argc", static_cast<int32>(server->Arguments().size()));
        for (const std::string& argument : server->Arguments())
            message.AddString(kArgumentField, argument);
        WindowServer::Deliver(this, message);
    }
    WindowServer::Deliver(this, BMessage(B_READY_TO_RUN));
    const thread_id thread = BLooper::Run();
    if (thread < 0) return thread;
    server->Run();
    wait_for_thread(thread, nullptr);
    return B_OK;
}

void BApplication::ThreadMain() {
    Loop();
    Unlock();
    QuitAllWindows();
    WindowServer::Stop();
}

void BApplication::Quit() {
    if (Thread() == find_thread(nullptr))
        EndLoop();
    else
        BLooper::Quit();
}

void BApplication::QuitAllWindows() {
    while (BWindow* const window = WindowList::At(0))
        if (!QuitIfAlive(window)) WindowList::Remove(window);
}

// --- Windows and messages ---

int32 BApplication::CountWindows() {
    return WindowList::Count();
}

BWindow* BApplication::WindowAt(int32 index) {
    return WindowList::At(index);
}

void BApplication::DispatchMessage(BMessage* message, BHandler* handler) {
    if (handler != this) return BLooper::DispatchMessage(message, handler);
    switch (message->what) {
        case B_READY_TO_RUN:
            ReadyToRun();
            break;
        case B_ARGV_RECEIVED: {
            std::vector<std::string> arguments;
            std::string argument;
            for (int32 i = 0; message->FindString(kArgumentField, i, &argument) == B_OK; i++)
                arguments.push_back(argument);
            ArgvReceived(arguments);
            break;
        }
        case B_REFS_RECEIVED:
            RefsReceived(message);
            break;
        case B_ABOUT_REQUESTED:
            AboutRequested();
            break;
        default:
            BLooper::DispatchMessage(message, handler);
    }
}
