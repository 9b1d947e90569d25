// Lets one program run for each user and display: a program that is started while another runs can
// hand the other its documents. Made and destroyed by main; the documents arrive on a thread of its
// own.
//
// Who holds the lock of a file in the user's runtime folder is the one that runs; it listens on a
// socket beside it. The lock ends with its process, however that ends.
#pragma once

#include <string>
#include <thread>
#include <vector>

#include "BFile.h"
#include "BMessenger.h"
#include "FileDescriptor.h"

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
    // are none. False if it does not answer.
    [[nodiscard]] bool HandOver(const std::vector<std::string>& paths) const;
    // The first: from now on the application gets B_REFS_RECEIVED with what others hand over, or
    // kActivateProgram. It has to answer, with anything but B_NO_REPLY. Once.
    void Listen(const BMessenger& application);

private:
    [[nodiscard]] bool OpenSocket();
    void Serve(const BMessenger& application) const;
    static void ServeOne(const FileDescriptor& connection, const BMessenger& application);

    std::string socketPath_;
    BFile lock_;
    FileDescriptor socket_;
    FileDescriptor stop_;  // tells the thread to end
    bool isFirst_ = true;
    std::thread thread_;
};
