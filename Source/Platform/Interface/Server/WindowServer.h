// The main thread of a program with windows: runs the toolkit's event loop and owns every widget.
// `main` makes one, before the first window; the static functions may be called from any thread and
// do nothing (and say so) while there is none.
//
// The server never waits for a looper, a lock of the model or a semaphore: it holds only short
// mutexes of its own, so that no deadlock can pass through it and the interface stays alive.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Kernel/OS.h"

class BBitmap;

class WindowServer {
public:
    enum class Screen { kDesktop, kOffscreen };

    // On the main thread. The toolkit takes the arguments that are its own out of argc and argv;
    // argc must stay where it is. kOffscreen: needs no display; nothing is seen.
    WindowServer(int& argc, char** argv, Screen screen = Screen::kDesktop);
    // What is queued is dropped, callers of Ask get the default answer. Windows must be gone.
    ~WindowServer();
    WindowServer(const WindowServer&) = delete;
    WindowServer& operator=(const WindowServer&) = delete;

    // Printed to standard error when there is no display to be had, which ends the program (1).
    // Before the server is made.
    static void SetNoDisplayText(std::string text);

    // Has the toolkit show its own words (those of file panels, say) in this language, if it has
    // it.
    void SetLanguage(const std::string& language);

    // Null while there is none. Main thread.
    [[nodiscard]] static WindowServer* Current();

    // The program's arguments without the toolkit's own; the first is the program.
    [[nodiscard]] const std::vector<std::string>& Arguments() const { return arguments_; }

    // Runs the event loop on the main thread until Stop. Once.
    void Run();
    // Ends Run when the changes queued so far are done. Any thread.
    static void Stop();

    [[nodiscard]] static bool IsServerThread();

    // Has the server do this later, in the order of the calls, and returns at once. False, and the
    // change is dropped, if there is no server.
    static bool Queue(std::function<void()> change);
    // Has the server do this, after what was queued before, and waits for it. False if the server
    // is gone or ends first; it was not done then and will not be. Directly on the server's thread.
    static bool Perform(const std::function<void()>& question);
    // How often anybody has waited so.
    [[nodiscard]] static int64 CountQuestions();
    // The answer of `question`, asked on the server's thread; `otherwise` if the server is gone.
    template <typename Question, typename Answer = std::invoke_result_t<Question>>
    static Answer Ask(Question question, Answer otherwise = Answer{});

    // Sends the message without waiting: keeps the order for each looper, holds back what a full
    // port refuses until there is room (and a server runs), drops what is for a looper that is
    // gone.
    static void Deliver(const BMessenger& target, const BMessage& message);
    static void Deliver(const BHandler* target, const BMessage& message) {
        Deliver(BMessenger(target), message);
    }

    // The icon of all windows that have none of their own. Any thread; copies the bitmap.
    static void SetProgramIcon(const BBitmap* icon);

    // The longest time in microseconds that one event kept the server from the next one.
    [[nodiscard]] static bigtime_t LongestTurn();
    static void ResetLongestTurn();

private:
    class Application;

    std::vector<std::string> arguments_;
    std::unique_ptr<Application> application_;
};

template <typename Question, typename Answer>
Answer WindowServer::Ask(Question question, Answer otherwise) {
    std::optional<Answer> answer;
    Perform([&] { answer.emplace(question()); });
    return answer ? std::move(*answer) : std::move(otherwise);
}
