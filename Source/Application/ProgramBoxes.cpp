#include "Application/ProgramBoxes.h"

#include <algorithm>

#include "Application/GalleryWindow.h"
#include "Application/GuideWindow.h"
#include "Application/InstalledFiles.h"
#include "Application/MessageBoxes/MessageWindow.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Platform/Storage/BEntry.h"
#include "Resources/CommonTexts.h"
#include "Resources/Help.h"
#include "Resources/MessageBoxes.h"
#include "Simulation/Document/TextTemplate.h"

void ProgramBoxes::Show(int32 id, int32 title, const std::string& text) {
    if (const auto found = std::ranges::find(boxes_, id, &MessageWindow::ID); found != boxes_.end())
        return (*found)->Activate();
    const error_option ok{texts_->Label(kLabelOK), {}, {}};
    auto* const box = new MessageWindow(id, owner_, {}, nullptr, true, text.c_str(), nullptr,
                                        nullptr, &ok, nullptr, *texts_);
    boxes_.push_back(box);
    box->SetTitle(texts_->Text(title));
    box->Show();
}

void ProgramBoxes::Closed(const void* window) {
    const auto found = std::ranges::find(boxes_, window);
    if (found == boxes_.end()) return;
    MessageWindow* const box = *found;
    boxes_.erase(found);
    BLooper::QuitIfAlive(box);
}

void ProgramBoxes::ShowGuide() {
    const std::string page = GuidePath();
    if (!BEntry(page.c_str()).Exists())
        return Show(MessageWindow::kNoGuide, kTextGuideTitle,
                    FillIn(texts_->Label(kTextNoGuide), {page}));
    if (guide_ == nullptr) guide_ = new GuideWindow(page, *texts_);
    guide_->Show();
    guide_->Activate();
}

void ProgramBoxes::ShowGallery() {
    if (gallery_ == nullptr) {
        std::vector<Example> examples = InstalledExamples();
        if (examples.empty()) return;
        gallery_ = new GalleryWindow(std::move(examples), *texts_);
    }
    gallery_->Show();
    gallery_->Activate();
}

void ProgramBoxes::QuitAll() {
    for (MessageWindow* const box : boxes_)
        BLooper::QuitIfAlive(box);
    boxes_.clear();
    BLooper::QuitIfAlive(guide_);
    guide_ = nullptr;
    BLooper::QuitIfAlive(gallery_);
    gallery_ = nullptr;
}
