#include "Simulation/SimulationCloser.h"

#include "Application/MessageBoxes/MessageWindow.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BFilePanel.h"
#include "Platform/Interface/Handles/SaveChoice.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Simulation/CopyOffer.h"
#include "Simulation/Document/RunControl.h"
#include "Simulation/Document/SimulationDocument.h"
#include "Simulation/MessageBoxes.h"
#include "Simulation/Simulation.h"
#include "Simulation/SimulationHost.h"
#include "Simulation/SimulationSaver.h"

SimulationCloser::SimulationCloser(Simulation* simulation, SimulationHost* host,
                                   SimulationDocument* document, RunControl* run,
                                   SimulationSaver* saver, MessageBoxes* boxes)
    : simulation_(simulation),
      host_(host),
      document_(document),
      run_(run),
      saver_(saver),
      boxes_(boxes) {}

void SimulationCloser::Request() {
    if (document_->GetUndoChain()->IsSaved()) {
        Close();
    } else if (const uint32 answer = host_->DefaultResponse(MessageWindow::kSaveConfirmation);
               answer != 0) {
        WindowServer::Deliver(simulation_, BMessage(answer));
    } else {
        isAsked_ = true;
        boxes_->MakeQuitConfirm(saver_->File().Name());
    }
}

bool SimulationCloser::Handle(const BMessage& message) {
    switch (message.what) {
        case MessageBoxes::kSaveThenQuit:
            SaveThenClose(message);
            break;
        case MessageBoxes::kCancelQuit:
            isAsked_ = false;
            Cancel();
            break;
        case B_CANCEL:
            if (int32 answer = 0; message.FindInt32(BFilePanel::kCancelledField, &answer) == B_OK &&
                                  answer == static_cast<int32>(MessageBoxes::kSaveThenQuit))
                Cancel();
            break;
        case MessageBoxes::kReallyQuit:
            CloseUnsaved(message);
            break;
        default:
            return false;
    }
    return true;
}

// An answer comes before the end of its box; a box that ends without one was closed.
void SimulationCloser::BoxClosed(const MessageWindow* box) {
    const bool isQuestion = box == boxes_->MessageWindowFromID(MessageWindow::kSaveConfirmation);
    boxes_->DeleteMessageWindow(box);
    if (!isQuestion || !isAsked_) return;
    isAsked_ = false;
    Cancel();
}

void SimulationCloser::SaveThenClose(const BMessage& answer) {
    isAsked_ = false;
    if (const auto choice = SaveChoice::From(answer); choice) {
        saver_->SaveRequested(*choice, true);
    } else {
        // Deliberately, "Never ask me again" makes "Don't Save" the standing answer even though the
        // user has chosen to save this time.
        boxes_->HandleDefaultResponse(answer, MessageWindow::kSaveConfirmation,
                                      MessageBoxes::kReallyQuit);
        switch (saver_->Save(MessageBoxes::kSaveThenQuit)) {
            case SimulationSaver::Outcome::kDone:
                break;
            case SimulationSaver::Outcome::kAsked:
                return;
            case SimulationSaver::Outcome::kRefused:
                return Cancel();
        }
    }
    // What could be written nowhere, not even as a recovery copy, stays.
    if (!document_->GetUndoChain()->IsSaved()) return Cancel();
    if (!saver_->WhyNotSaved().empty()) OfferCopy();
    Close();
}

void SimulationCloser::CloseUnsaved(const BMessage& answer) {
    boxes_->HandleDefaultResponse(answer, MessageWindow::kSaveConfirmation,
                                  MessageBoxes::kReallyQuit);
    // A user who was asked does not want the recovered document either; one who was not may.
    if (answer.HasName(MessageWindow::kCheckBoxField))
        saver_->File().DiscardRecovered();
    else
        saver_->KeepRecoveryCopy();
    Close();
}

// The user, who believes the document to be saved, hears before long that it is not.
void SimulationCloser::OfferCopy() {
    const CopyOffer offer{saver_->File().CopyPath(), saver_->WhereNotSaved(), saver_->File().Name(),
                          saver_->WhyNotSaved()};
    WindowServer::Deliver(host_->Application(), offer.ToMessage());
}

void SimulationCloser::Cancel() {
    BMessage cancelled(kCloseCancelled);
    cancelled.AddPointer(kSimulationField, simulation_);
    WindowServer::Deliver(host_->Application(), cancelled);
}

void SimulationCloser::Close(const std::string& reason) {
    simulation_->Hide();
    run_->Pause();
    saver_->File().DiscardAutomaticCopy();
    isClosing_ = true;
    BMessage doomed(kDeleteMe);
    doomed.AddPointer(kDoomedSimulation, simulation_);
    if (!reason.empty()) doomed.AddString(kReasonField, reason);
    WindowServer::Deliver(host_->Application(), doomed);
}
