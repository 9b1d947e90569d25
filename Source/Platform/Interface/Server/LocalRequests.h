// Records that other programs of the same user send to this one, by a local socket, and the answers
// to them. Made and destroyed on the window server's thread, which listens while it runs; there is
// at most one.
//
// Both sides agree on which of them deals with a request. The server says at once that it would
// take it; an asker that still waits has it go on; only then is the request delivered, and the
// asker waits for the answer as long as the server's program lives.
#pragma once

#include <memory>
#include <string>

#include "Platform/Application/BMessenger.h"
#include "Platform/Kernel/OS.h"

class BMessage;

class LocalRequests {
public:
    // Of a request that was delivered: its number, for the answer.
    static constexpr const char* kNumber = "Request number";

    // Listens at that path, for this user alone; replaces what a program that has ended left there.
    // Requests go to `target` as messages `what`.
    LocalRequests(const std::string& path, const BMessenger& target, uint32 what);
    // Askers that still wait are told that there will be no answer.
    ~LocalRequests();
    LocalRequests(const LocalRequests&) = delete;
    LocalRequests& operator=(const LocalRequests&) = delete;

    [[nodiscard]] bool IsListening() const;

    // Answers the request of that number; nothing if the asker has gone. Any thread.
    static void Answer(int32 number, const BMessage& answer);

    // Asks the program that listens at the path, and waits for its answer. False if none takes the
    // request within `patience`, or if it ends before it answers: then nobody will deal with it.
    // Any thread but the window server's while that runs.
    [[nodiscard]] static bool Ask(const std::string& path, const BMessage& request,
                                  bigtime_t patience, BMessage* answer);

private:
    class Part;

    const std::unique_ptr<Part> part_;
};
