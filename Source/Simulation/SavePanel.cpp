#include "Simulation/SavePanel.h"

#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/MyFilePanel.h"
#include "Platform/Application/BMessage.h"
#include "Resources/Menus.h"
#include "Resources/SimulationFeatures.h"
#include "Simulation/Document/WindowFields.h"

namespace {

// A panel's width, in sizes of the plain font, that somebody has set.
constexpr float kMinWidth = 1.0f;

}  // namespace

SavePanel::SavePanel(const InterfaceTexts* texts) : texts_(texts) {}

SavePanel::~SavePanel() = default;

void SavePanel::MakePanel(const BMessenger& target, const entry_ref& directory) {
    if (panel_ != nullptr) return panel_->SetFrame(panel_->Frame());
    panel_ = std::make_unique<MyFilePanel>(B_SAVE_PANEL, target, &directory);
    panel_->SetArea(at_, width_, height_);
}

void SavePanel::Ask(uint32 what, const BMessenger& target, const entry_ref& directory,
                    const std::string& simulationName, const std::string& proposal) {
    MakePanel(target, directory);
    const BMessage answer(what);
    panel_->SetMessage(&answer);
    panel_->SetSaveText(proposal.c_str());
    panel_->SetTitle(
        (texts_->Label(kLabelSave) + ' ' + simulationName + texts_->Label(kTextSaveAsAfter))
            .c_str());
    panel_->Show();
}

void SavePanel::Close() {
    panel_.reset();
}

void SavePanel::FindArea(const BMessage& archive) {
    BPoint at;
    if (archive.FindPoint(kSaveAtField, &at) == B_OK) at_ = at;
    float size = 0.0f;
    if (archive.FindFloat(kSaveWidthField, &size) == B_OK) width_ = size;
    if (archive.FindFloat(kSaveHeightField, &size) == B_OK) height_ = size;
}

void SavePanel::SetArea(BMessage* archive) const {
    BPoint at = at_;
    float width = width_;
    float height = height_;
    if (panel_ != nullptr) panel_->GetArea(&at, &width, &height);
    if (!(width > kMinWidth)) return;
    archive->AddPoint(kSaveAtField, at);
    archive->AddFloat(kSaveWidthField, width);
    archive->AddFloat(kSaveHeightField, height);
}
