// Offers the recovery copies that an earlier run of the program has left, one box after the other,
// each to be recovered, discarded or left for later. Owned by the application, on its thread.
#pragma once

#include <deque>
#include <string>

#include "Simulation/Document/RecoveryFolder.h"

class BLooper;
class BMessage;
class InterfaceTexts;
class MessageWindow;

class RecoveryOffers {
public:
    // What the boxes' buttons send the owner; they are about the current copy.
    static constexpr uint32 kRecover = FourCC("rcov");
    static constexpr uint32 kDiscard = FourCC("rcds");

    // Neither is owned.
    RecoveryOffers(BLooper* owner, const InterfaceTexts* texts) : owner_(owner), texts_(texts) {}

    // Looks for the copies that were there before, and offers the first; once. After that brings
    // the box to the front, if there is one.
    void Begin();
    // Offers the copy of a document that could not be saved just now, after those that are waiting.
    void OfferUnsaved(const RecoveryCopy& copy, const std::string& reason);
    // A copy of that kind is waiting for an answer.
    [[nodiscard]] bool IsOfferingUnsaved() const;
    // The copy of the box that is shown.
    [[nodiscard]] const RecoveryCopy& Current() const { return offers_.front().copy; }
    [[nodiscard]] bool IsOffering() const { return box_ != nullptr; }
    void DiscardCurrent();
    // True if it is this one's box, which is quit then; offers the next copy.
    bool BoxClosed(const void* box);
    // Quits the box that is shown, and offers no more.
    void End();

private:
    struct Offer {
        RecoveryCopy copy;
        std::string reason;  // why it could not be saved; empty: an earlier run has left it
    };
    void OfferFirst();

    BLooper* const owner_;
    const InterfaceTexts* const texts_;
    const RecoveryFolder folder_;
    std::deque<Offer> offers_;
    MessageWindow* box_ = nullptr;
    bool hasBegun_ = false;
};
