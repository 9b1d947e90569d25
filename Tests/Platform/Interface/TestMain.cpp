#include "Tests/Platform/Interface/TestMain.h"

#include <gtest/gtest.h>

#include <QString>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <semaphore>
#include <thread>

#include "Platform/Interface/Server/WindowServer.h"

namespace {

int gArgumentCount = 1;
char** gArguments = nullptr;
std::unique_ptr<WindowServer> gServer;

const std::function<void()>* gJob = nullptr;
std::binary_semaphore gJobDone{0};

}  // namespace

void RunOnMainThread(const std::function<void()>& job) {
    WindowServer::Perform([&job] { gJob = &job; });
    WindowServer::Stop();
    gJobDone.acquire();
}

void EndServer() {
    gServer.reset();
}

// The platform without a screen remarks on every window what it cannot do.
void DropRemarks(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (!text.startsWith(QLatin1String("This plugin does not support")) && type != QtInfoMsg)
        std::fprintf(stderr, "%s\n", text.toLocal8Bit().constData());
}

void StartServer() {
    qInstallMessageHandler(DropRemarks);
    gServer = std::make_unique<WindowServer>(gArgumentCount, gArguments,
                                             WindowServer::Screen::kOffscreen);
}

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    // Nothing of the user's own session.
    setenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/dev/null", 1);
    gArguments = argv;
    StartServer();
    int result = 1;
    std::thread tests([&result] {
        result = RUN_ALL_TESTS();
        WindowServer::Stop();
    });
    for (;;) {
        gServer->Run();
        if (gJob == nullptr) break;
        (*gJob)();
        gJob = nullptr;
        gJobDone.release();
    }
    tests.join();
    gServer.reset();
    return result;
}
