#include "Displays/Projection/PictureSaver.h"

#include <cstddef>
#include <vector>

#include "Displays/Base/Display.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessenger.h"
#include "Platform/Interface/Canvas/CanvasView.h"
#include "Platform/Interface/Handles/BFilePanel.h"
#include "Platform/Interface/Handles/SaveChoice.h"
#include "Platform/Storage/AtomicFile.h"
#include "Platform/Storage/BEntry.h"
#include "Resources/DisplayFeatures.h"

PictureSaver::PictureSaver(Display* display, const InterfaceTexts* texts)
    : PictureSaver(display, texts, {kNamed, kLabelSavePictureTitle, kLabelPictureSuffix}) {}

PictureSaver::PictureSaver(Display* display, const InterfaceTexts* texts, const Kind& kind)
    : display_(display), texts_(texts), kind_(kind) {}

PictureSaver::~PictureSaver() = default;

void PictureSaver::Request() {
    if (panel_ == nullptr) {
        const BMessage named(kind_.named);
        panel_ = std::make_unique<BFilePanel>(B_SAVE_PANEL, BMessenger(display_), nullptr, false,
                                              &named);
        panel_->SetTitle(texts_->Text(kind_.title));
    }
    panel_->SetSaveText((display_->Title() + texts_->Label(kind_.suffix)).c_str());
    panel_->Show();
}

void PictureSaver::Save(const BMessage& message, const CanvasView& view) const {
    Save(message, view.EncodePNG());
}

void PictureSaver::Save(const BMessage& message, std::span<const std::byte> bytes) const {
    const auto choice = SaveChoice::From(message);
    std::string path;
    if (!choice || get_path_for_ref(choice->directory, &path) != B_OK) return;
    std::string name = choice->name;
    // The user was asked about a file of the name that was typed, and not of another one.
    const std::string& suffix = texts_->Label(kind_.suffix);
    if (!name.ends_with(suffix) && !BEntry((path + '/' + name + suffix).c_str()).Exists())
        name += suffix;
    AtomicFile file;
    if (bytes.empty() || file.Open(path + '/' + name) != B_OK) return;
    file.Write(bytes.data(), bytes.size());
    static_cast<void>(file.Commit());
}
