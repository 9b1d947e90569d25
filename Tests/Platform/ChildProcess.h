// A program that a test runs beside itself. Ends with the test program, whatever becomes of that.
// Used by one thread.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

class ChildProcess {
public:
    // Variables of the environment: those to be set, and those to be left out (empty).
    using Environment = std::map<std::string, std::optional<std::string>>;
    using Duration = std::chrono::milliseconds;

    // How a program has ended.
    struct Ending {
        int status = -1;  // -1 when a signal ended it
        int signal = 0;
        bool operator==(const Ending&) const = default;
    };

    // There is no message bus in the session, or the program would meet the user's own programs;
    // the environment may name a private one.
    // `output`: a file for what the program writes to both outputs; empty: nobody reads it.
    ChildProcess(const std::vector<std::string>& arguments, const Environment& environment,
                 const std::string& output = {});
    // Kills it if it still runs.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    [[nodiscard]] pid_t Id() const { return id_; }
    [[nodiscard]] bool IsRunning() { return !Wait(Duration(0)); }
    void Signal(int signal) const;
    // None while it still runs after that time.
    std::optional<Ending> Wait(Duration patience);

private:
    pid_t id_ = -1;
    int handle_ = -1;  // becomes readable when it has ended
    std::optional<Ending> ending_;
};
