// What is being opened, and what could not be. A request may be for several documents, each read by
// a window of its own; it is done when all of them are. Owned by the application, on its thread.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Support/SupportDefs.h"

class ProgramResources;
class Simulation;

struct OpenRequest {
    // What could not be opened.
    struct Complaint {
        std::string path;
        std::string reason;
    };

    Simulation* requester = nullptr;  // whose window asked; may be gone, or null
    int32 handOver = 0;               // the number of another program's request; 0: none
    Simulation* opened = nullptr;     // a window that shows one of the documents; may be gone
    std::vector<Complaint> complaints;
    int pending = 1;  // documents that are being read, and the request itself
};

class OpenRequests {
public:
    using Request = std::shared_ptr<OpenRequest>;

    // A document that a window reads.
    struct Reading {
        Request request;
        std::string path;
        Simulation* replaced = nullptr;  // that goes when it is read; null for none
    };

    // The resources are not owned.
    explicit OpenRequests(const ProgramResources* resources) : resources_(resources) {}

    [[nodiscard]] static Request Begin(Simulation* requester, int32 handOver = 0);
    // A window reads one of the documents, until it is taken.
    void Await(Simulation* reader, Reading reading);
    [[nodiscard]] std::optional<Reading> Take(const Simulation* reader);
    // The request itself, or one of its documents, is done; true if that was the last.
    static bool End(OpenRequest* request) { return --request->pending == 0; }

    // The complaints with whole paths, a line each; and in one line, as a window has room for them.
    [[nodiscard]] std::vector<std::string> Lines(const OpenRequest& request) const;
    [[nodiscard]] std::string Summary(const OpenRequest& request) const;

private:
    [[nodiscard]] std::string Text(const std::string& document, const std::string& reason) const;

    const ProgramResources* const resources_;
    std::map<const Simulation*, Reading> readings_;
};
