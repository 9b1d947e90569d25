#include "Displays/Projection/ScaleRequester.h"

#include <utility>

#include "Displays/Base/Display.h"
#include "Displays/Base/DisplayContext.h"
#include "Displays/Projection/RequesterButtons.h"
#include "Displays/Projection/ScaleChoice.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/MenuArchives.h"
#include "Interface Widgets/ScaleBox.h"
#include "Interface Widgets/UnitMenu.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BScreen.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Resources/CommonTexts.h"

namespace {

// As a number of pixels.
double Width(BRect frame) {
    return static_cast<double>(frame.Width()) + 1.0;
}

double Height(BRect frame) {
    return static_cast<double>(frame.Height()) + 1.0;
}

}  // namespace

ScaleRequester::ScaleRequester(double scale, int32 reference, double units, Display* display,
                               const DisplayContext& context)
    : BWindow(BRect{}, context.texts->Text(kLabelChooseScale), B_MODAL_WINDOW,
              B_NOT_RESIZABLE | B_NOT_ZOOMABLE | B_NOT_MINIMIZABLE),
      display_(display),
      box_(new ScaleBox("scale", *context.texts, context.distanceUnits,
                        context.menus->DistanceUnitMenuArchive())),
      scale_(scale) {
    AddRequesterContent(this, box_, display, kCancel);
    box_->SetReference(reference);
    box_->Length().SetUval(units);
    pixels_ = PixelsOf(box_->GetReference());
    Redisplay();
    box_->Length().MakeFocus();
}

double ScaleRequester::PixelsOf(int32 reference) const {
    switch (reference) {
        case ScaleBox::kScreenWidth:
            return Width(BScreen(display_).Frame());
        case ScaleBox::kScreenHeight:
            return Height(BScreen(display_).Frame());
        case ScaleBox::kWindowWidth:
            return Width(display_->Frame());
        case ScaleBox::kWindowHeight:
            return Height(display_->Frame());
        default:
            return 1.0;
    }
}

void ScaleRequester::SetScaleRef(int32 reference) {
    const double before = std::exchange(pixels_, PixelsOf(reference));
    // What the user is typing stays where nothing has changed.
    if (pixels_ != before) Redisplay();
}

void ScaleRequester::Redisplay() {
    box_->Length().SetValue(pixels_ / scale_);
}

// A length that nobody has changed leaves the scale what it was, to the last bit.
void ScaleRequester::CommitLength() {
    const double unit = box_->Length().Uval();
    if (box_->Length().Commit()) scale_ = pixels_ / box_->Length().Value();
    // A unit typed behind the number was chosen as well.
    if (box_->Length().Uval() != unit) isUnitChanged_ = true;
}

void ScaleRequester::MessageReceived(BMessage* message) {
    switch (message->what) {
        case ScaleBox::kReferenceChosen: {
            int32 index = 0;
            const bool isGiven = message->FindInt32(kIndexField, &index) == B_OK;
            SetScaleRef(isGiven ? index + 1 : box_->GetReference());
            break;
        }
        case kScaleChanged:
            if (const auto scale = ScaleChoice::From(*message).scale; scale) {
                scale_ = *scale;
                box_->Length().SetValueUnderHand(pixels_ / scale_);
            }
            break;
        case UnitMenu::kUnitChosen:
            isUnitChanged_ = true;
            Redisplay();
            break;
        case NumberBox::kNumberEntered:
            CommitLength();
            break;
        default:
            BWindow::MessageReceived(message);
    }
}

bool ScaleRequester::QuitRequested() {
    if (!IsHidden()) Hide();
    CommitLength();
    ScaleChoice answer{box_->GetReference(), std::nullopt, scale_};
    if (isUnitChanged_) answer.units = box_->Length().Uval();
    WindowServer::Deliver(display_, answer.ToMessage(kSetScale));
    return false;
}
