// Signals that ask a program to end, kept back so that a thread can wait for them as for anything
// else, and nothing runs inside a signal handler. Made before any other thread is started, which
// inherits that. A write that fails ends the program no more.
#pragma once

#include <csignal>
#include <vector>

#include "Platform/Storage/FileDescriptor.h"

class EndSignals {
public:
    // Those of them that are not ignored, as by nohup.
    [[nodiscard]] static std::vector<int> NotIgnored(std::vector<int> signals);

    // Keeps them back from now on.
    explicit EndSignals(const std::vector<int>& signals);

    // On the thread that made this: from LetThrough to the next Hold a signal does what it does
    // with other programs.
    void LetThrough() const;
    void Hold() const;

    // Readable when one has come: for poll.
    [[nodiscard]] int Descriptor() const { return arrivals_.Get(); }
    // The one that has come; 0 for none. Any thread.
    [[nodiscard]] int Take() const;

private:
    sigset_t signals_;
    FileDescriptor arrivals_;
};
