#include "Platform/Interface/Server/WindowServer.h"

#include <QApplication>
#include <QEvent>
#include <QEventLoop>
#include <QIcon>
#include <QLibraryInfo>
#include <QLocale>
#include <QPixmap>
#include <QSessionManager>
#include <QTimer>
#include <QTranslator>
#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <future>
#include <mutex>
#include <thread>

#include "Platform/Application/AppDefs.h"
#include "Platform/Interface/Canvas/PixelImage.h"
#include "Platform/Interface/Handles/BApplication.h"
#include "Platform/Interface/Server/AccessibleRoles.h"
#include "Platform/Interface/Server/Outbox.h"

namespace {

using Change = std::function<void()>;

// Input is looked at between two slices of queued work.
constexpr bigtime_t kMaxSlice = 4000;
constexpr int kRetryMilliseconds = 5;

const QEvent::Type kWorkEvent = static_cast<QEvent::Type>(QEvent::registerEventType());

// What other threads touch of the server. Outlives it: they may come late.
struct ServerState {
    std::mutex mutex;
    QObject* server = nullptr;  // null: closed
    std::deque<Change> changes;
    bool isCalled = false;  // the server was told that there is work
    std::thread::id thread;
    Outbox outbox;
    std::atomic<bool> isRetrying{false};
    std::atomic<bigtime_t> longestTurn{0};
    std::atomic<int64> questions{0};
};

ServerState& TheServerState() {
    static auto* const state = new ServerState;
    return *state;
}

}  // namespace

class WindowServer::Application : public QApplication {
public:
    Application(int& argc, char** argv) : QApplication(argc, argv) {
        setQuitOnLastWindowClosed(false);
        QObject::connect(&retry_, &QTimer::timeout, this, [this] { RetryDeliveries(); });
        QObject::connect(this, &QGuiApplication::commitDataRequest, this, [] { EndSession(); });
        resume_.setSingleShot(true);
        QObject::connect(&resume_, &QTimer::timeout, this, [this] { Work(); });
    }

    bool notify(QObject* receiver, QEvent* event) override {
        if (depth_ > 0) return QApplication::notify(receiver, event);
        const bigtime_t start = system_time();
        depth_++;
        const bool result = QApplication::notify(receiver, event);
        depth_--;
        const bigtime_t turn = system_time() - start;
        if (turn > TheServerState().longestTurn) TheServerState().longestTurn = turn;
        return result;
    }

    void StartRetrying() { retry_.start(kRetryMilliseconds); }

    void RetryDeliveries() {
        ServerState& state = TheServerState();
        state.isRetrying = false;  // before looking: whoever finds no room after this calls again
        retry_.stop();
        if (state.outbox.Retry() && !state.isRetrying.exchange(true)) StartRetrying();
    }

protected:
    bool event(QEvent* event) override {
        if (event->type() != kWorkEvent) return QApplication::event(event);
        Work();
        return true;
    }

private:
    // A timer and not an event resumes the work: events would go before the user's input.
    void Work() {
        const bigtime_t end = system_time() + kMaxSlice;
        while (Change change = NextChange()) {
            change();
            if (system_time() < end) continue;
            resume_.start(0);
            return;
        }
    }

    // The desktop ends the session as soon as this returns: not before the application has put
    // everything in order, or was given time enough.
    static void EndSession() {
        constexpr int kPatienceMilliseconds = 8000;
        WindowServer::Deliver(be_app, BMessage(B_SESSION_ENDING));
        QEventLoop loop;
        QTimer patience;
        QObject::connect(&patience, &QTimer::timeout, &loop, &QEventLoop::quit);
        patience.start(kPatienceMilliseconds);
        loop.exec();  // ends with the program, too
    }

    static Change NextChange() {
        ServerState& state = TheServerState();
        const std::lock_guard lock(state.mutex);
        if (state.changes.empty()) {
            state.isCalled = false;
            return nullptr;
        }
        Change change = std::move(state.changes.front());
        state.changes.pop_front();
        return change;
    }

    QTimer resume_;
    QTimer retry_;
    int depth_ = 0;
};

namespace {

WindowServer* gCurrent = nullptr;
std::string gNoDisplayText;

// While the toolkit starts it has one reason to stop the program: no display.
void TellOfNoDisplay(QtMsgType type, const QMessageLogContext& /*where*/, const QString& /*text*/) {
    if (type != QtFatalMsg) return;
    std::fputs(gNoDisplayText.c_str(), stderr);
    std::_Exit(EXIT_FAILURE);
}

}  // namespace

void WindowServer::SetNoDisplayText(std::string text) {
    gNoDisplayText = std::move(text);
}

WindowServer::WindowServer(int& argc, char** argv, Screen screen) {
    if (screen == Screen::kOffscreen) qputenv("QT_QPA_PLATFORM", "offscreen");
    QtMessageHandler usual = nullptr;
    if (!gNoDisplayText.empty()) usual = qInstallMessageHandler(TellOfNoDisplay);
    application_ = std::make_unique<Application>(argc, argv);
    if (!gNoDisplayText.empty()) qInstallMessageHandler(usual);
    InstallAccessibleRoles();
    for (const QString& argument : QCoreApplication::arguments())
        arguments_.push_back(argument.toStdString());
    gCurrent = this;
    ServerState& state = TheServerState();
    {
        const std::lock_guard lock(state.mutex);
        state.server = application_.get();
        state.thread = std::this_thread::get_id();
    }
    // Messages may be waiting from before.
    application_->RetryDeliveries();
}

WindowServer::~WindowServer() {
    gCurrent = nullptr;
    ServerState& state = TheServerState();
    std::deque<Change> dropped;
    {
        const std::lock_guard lock(state.mutex);
        state.server = nullptr;
        state.isCalled = false;
        state.thread = {};
        dropped.swap(state.changes);
    }
}

void WindowServer::SetLanguage(const std::string& language) {
    auto* const words = new QTranslator(application_.get());
    const QLocale locale(QString::fromStdString(language));
    if (words->load(locale, "qtbase", "_", QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(words);
}

WindowServer* WindowServer::Current() {
    return gCurrent;
}

void WindowServer::Run() {
    QApplication::exec();
}

void WindowServer::Stop() {
    Queue([] { QCoreApplication::quit(); });
}

bool WindowServer::IsServerThread() {
    ServerState& state = TheServerState();
    const std::lock_guard lock(state.mutex);
    return state.thread == std::this_thread::get_id();
}

bool WindowServer::Queue(std::function<void()> change) {
    ServerState& state = TheServerState();
    const std::lock_guard lock(state.mutex);
    if (state.server == nullptr) return false;
    state.changes.push_back(std::move(change));
    if (!state.isCalled) QCoreApplication::postEvent(state.server, new QEvent(kWorkEvent));
    state.isCalled = true;
    return true;
}

bool WindowServer::Perform(const std::function<void()>& question) {
    if (IsServerThread()) {
        question();
        return true;
    }
    TheServerState().questions++;
    // A promise that is dropped with the queue wakes the asker, too.
    auto answered = std::make_shared<std::promise<void>>();
    const std::future<void> answer = answered->get_future();
    bool wasAsked = false;
    const bool isQueued = Queue([&question, &wasAsked, answered] {
        question();
        wasAsked = true;
        answered->set_value();
    });
    answered.reset();
    if (isQueued) answer.wait();
    return wasAsked;
}

int64 WindowServer::CountQuestions() {
    return TheServerState().questions;
}

void WindowServer::Deliver(const BMessenger& target, const BMessage& message) {
    ServerState& state = TheServerState();
    if (!state.outbox.Send(target, message) || state.isRetrying.exchange(true)) return;
    const bool isCalled =
        Queue([] { static_cast<Application*>(QCoreApplication::instance())->StartRetrying(); });
    if (!isCalled) state.isRetrying = false;  // the next server will look
}

void WindowServer::SetProgramIcon(const BBitmap* icon) {
    // Where the program is installed the desktop has it in every size.
    Queue([image = ToImage(icon)] {
        QApplication::setWindowIcon(QIcon::fromTheme(QCoreApplication::applicationName(),
                                                     QIcon(QPixmap::fromImage(image))));
    });
}

bigtime_t WindowServer::LongestTurn() {
    return TheServerState().longestTurn;
}

void WindowServer::ResetLongestTurn() {
    TheServerState().longestTurn = 0;
}
