#include "Application/RecoveryOffers.h"

#include <algorithm>
#include <ctime>

#include "Application/MessageBoxes/MessageWindow.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Resources/ApplicationFeatures.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

std::string DayAndTime(std::time_t time) {
    std::tm parts{};
    char text[80];
    if (localtime_r(&time, &parts) == nullptr) return {};
    return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M", &parts)};
}

}  // namespace

void RecoveryOffers::Begin() {
    if (box_ != nullptr) box_->Activate();
    if (hasBegun_) return;
    hasBegun_ = true;
    const std::vector<RecoveryCopy> found = folder_.List();
    for (const RecoveryCopy& copy : found)
        offers_.push_back({copy, {}});
    if (box_ == nullptr) OfferFirst();
}

void RecoveryOffers::OfferUnsaved(const RecoveryCopy& copy, const std::string& reason) {
    offers_.push_back({copy, reason});
    if (box_ == nullptr) OfferFirst();
}

bool RecoveryOffers::IsOfferingUnsaved() const {
    return std::ranges::any_of(offers_, [](const Offer& offer) { return !offer.reason.empty(); });
}

void RecoveryOffers::OfferFirst() {
    if (offers_.empty()) return;
    const auto& [copy, reason] = offers_.front();
    const std::string& name = copy.originalPath.empty() ? copy.documentName : copy.originalPath;
    const std::string text =
        reason.empty() ? FillIn(texts_->Label(kTextRecovery), {name, DayAndTime(copy.time)})
                       : FillIn(texts_->Label(kTextRecoveryUnsaved), {name, reason});
    const BMessenger owner(owner_);
    const error_option discard{texts_->Label(kTextDiscard), BMessage(kDiscard), owner};
    const error_option later{texts_->Label(kTextLater), {}, {}};
    const error_option recover{texts_->Label(kTextRecover), BMessage(kRecover), owner};
    box_ = new MessageWindow(MessageWindow::kRecovery, owner_, {}, nullptr, true, text.c_str(),
                             &discard, &later, &recover, nullptr, *texts_);
    box_->SetTitle(texts_->Text(kTextRecoveryTitle));
    box_->Show();
    box_->Activate();
}

void RecoveryOffers::DiscardCurrent() {
    folder_.Discard(Current().path);
}

bool RecoveryOffers::BoxClosed(const void* box) {
    if (box_ == nullptr || box != static_cast<void*>(box_)) return false;
    BLooper::QuitIfAlive(box_);
    box_ = nullptr;
    offers_.pop_front();
    OfferFirst();
    return true;
}

void RecoveryOffers::End() {
    offers_.clear();
    BLooper::QuitIfAlive(box_);
    box_ = nullptr;
}
