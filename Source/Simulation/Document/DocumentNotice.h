// What a document that could be read has lost or got on the way, to be told to whoever opened it.
// Plain values.
#pragma once

#include <string>
#include <vector>

#include "Simulation/Document/DocumentError.h"

class ProgramResources;

struct DocumentNotice {
    DocumentText text;
    std::vector<std::string> subjects;  // what the text names
    DocumentError reason = {};          // named last, if there is one

    // In one line, without the file's name.
    [[nodiscard]] std::string Text(const ProgramResources& resources) const;
};

class DocumentNotices {
public:
    void Add(DocumentNotice notice);
    // An epoch that cannot be used, and stands there without its systems.
    void AddEmptied(const std::string& epoch, const std::string& position, DocumentError reason);

    [[nodiscard]] bool IsEmpty() const { return notices_.empty(); }
    // The reason of the first epoch that cannot be used, if there is one.
    [[nodiscard]] const DocumentError& FirstFault() const { return firstFault_; }
    // One line for each of the first hundred, and one for how many more there are.
    [[nodiscard]] std::vector<std::string> Lines(const ProgramResources& resources) const;
    // The first one and how many more there are.
    [[nodiscard]] std::string Summary(const ProgramResources& resources) const;

private:
    static constexpr std::size_t kMaxKept = 100;

    std::vector<DocumentNotice> notices_;
    std::size_t count_ = 0;
    DocumentError firstFault_;
};
