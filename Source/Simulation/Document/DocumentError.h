// Why a document could not be read or written: a status for programs, and what it takes to tell a
// person. A plain value; no error is the default.
#pragma once

#include <string>

#include "Platform/Support/Errors.h"
#include "Resources/DocumentTexts.h"

class ProgramResources;

struct [[nodiscard]] DocumentError {
    status_t status = B_OK;
    int32 text = 0;       // a string resource, 0: the system's own words for systemError
    std::string subject;  // the body, epoch or file that the text names
    int systemError = 0;  // an errno value

    // A fault of the document's contents.
    static DocumentError Content(DocumentText text, std::string subject = {});
    // A record could not be read or made; no error for B_OK.
    static DocumentError Record(status_t status);
    // A system call failed; `error` is its errno.
    static DocumentError System(int error);

    [[nodiscard]] bool Failed() const { return status < B_OK; }
    // The reason in one line, without the file's name.
    [[nodiscard]] std::string Reason(const ProgramResources& resources) const;
};
