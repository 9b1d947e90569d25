// Lets one program run for each user and display: a program that is started while another runs can
// hand the other its documents. Made and destroyed by main, and used by its thread.
//
// The one that runs holds the lock of a file in the user's runtime folder, and listens on a socket
// beside it. The lock ends with its process, however that ends.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Server/LocalRequests.h"
#include "Platform/Storage/BFile.h"

class SingleLaunch {
public:
    // `program` names the files. Takes the place of the one that runs if that is free.
    explicit SingleLaunch(const std::string& program);
    ~SingleLaunch();
    SingleLaunch(const SingleLaunch&) = delete;
    SingleLaunch& operator=(const SingleLaunch&) = delete;

    // True also where there is no folder for such files: then every program is on its own.
    [[nodiscard]] bool IsFirst() const { return isFirst_; }

    // Not the first: has the one that runs open these documents, or come to the front when there
    // are none, and waits until it has; what could not be opened, in its words. Nothing if it does
    // not answer: then it does not open them, and this is the first if the other has ended.
    [[nodiscard]] std::optional<std::vector<std::string>> HandOver(
        const std::vector<std::string>& paths);
    // The first: from now on the application gets kHandOver with what others hand over, to be
    // answered by LocalRequests with strings kComplaint. Once.
    void Listen(const BMessenger& application);

    static constexpr const char* kPath = "path";
    static constexpr const char* kComplaint = "complaint";

private:
    void TakePlace();
    // The other has been silent or has gone: waits a moment for the lock, which a process that ends
    // can hold longer than its connections.
    void TakePlaceOfEnded();

    std::string base_;  // of the files' names; empty where there is no folder
    BFile lock_;
    bool isFirst_ = true;
    std::optional<LocalRequests> requests_;
};
