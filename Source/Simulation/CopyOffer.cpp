#include "Simulation/CopyOffer.h"

#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Application/BMessage.h"

namespace {

constexpr const char* kCopyField = "Copy";
constexpr const char* kDocumentField = "Path";
constexpr const char* kNameField = "Name";

}  // namespace

BMessage CopyOffer::ToMessage() const {
    BMessage message(kOfferCopy);
    message.AddString(kCopyField, copy);
    message.AddString(kDocumentField, path);
    message.AddString(kNameField, name);
    message.AddString(kReasonField, reason);
    return message;
}

std::optional<CopyOffer> CopyOffer::From(const BMessage& message) {
    CopyOffer offer;
    if (message.FindString(kCopyField, &offer.copy) != B_OK ||
        message.FindString(kReasonField, &offer.reason) != B_OK)
        return std::nullopt;
    message.FindString(kDocumentField, &offer.path);
    message.FindString(kNameField, &offer.name);
    return offer;
}
