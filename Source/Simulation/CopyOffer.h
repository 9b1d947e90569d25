// What a simulation tells the application when its document could not be saved and its window
// closes ("ofcp"): strings "Copy" (where the recovery copy lies), "Path" and "Name" of the
// document, and "Reason". A plain value.
#pragma once

#include <optional>
#include <string>

class BMessage;

struct CopyOffer {
    std::string copy;
    std::string path;
    std::string name;
    std::string reason;

    [[nodiscard]] BMessage ToMessage() const;
    // None if there is no copy, or no reason why it is needed.
    [[nodiscard]] static std::optional<CopyOffer> From(const BMessage& message);
};
