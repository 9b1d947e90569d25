#include "Application/GalleryWindow.h"

#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Canvas/PictureReader.h"
#include "Platform/Interface/Handles/BApplication.h"
#include "Platform/Interface/Handles/BButton.h"
#include "Platform/Interface/Handles/BFont.h"
#include "Platform/Interface/Handles/BGroupView.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Platform/Interface/Lists/BColumnListView.h"
#include "Resources/Gallery.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr uint32 kChosen = FourCC("gach");
constexpr uint32 kOpenSelected = FourCC("gaop");

// Beside a simulation that opens at its usual place.
constexpr BPoint kFirstPlace{440.0f, 48.0f};
// In sizes of the plain font.
constexpr float kWidth = 75.0f;
constexpr float kHeight = 50.0f;
// In characters; beside a title there is its picture.
constexpr int32 kTitleColumn = 40;
constexpr int32 kSeeColumn = 65;
constexpr std::size_t kTitleWidth = 26;
constexpr std::size_t kSeeWidth = 88;

BRect FirstFrame() {
    const float unit = BFont().Size();
    return {kFirstPlace.x, kFirstPlace.y, kFirstPlace.x + kWidth * unit,
            kFirstPlace.y + kHeight * unit};
}

std::vector<BColumnListView::Column> Columns(const InterfaceTexts& texts) {
    return {{texts.Label(kTextExampleColumn), kTitleColumn, false},
            {texts.Label(kTextSeeColumn), kSeeColumn, false}};
}

// Broken into lines at spaces.
std::string Wrapped(const std::string& text, std::size_t width) {
    std::string lines = text;
    std::size_t begin = 0;
    while (lines.size() - begin > width) {
        const std::size_t space = lines.rfind(' ', begin + width);
        if (space == std::string::npos || space <= begin) break;
        lines[space] = '\n';
        begin = space + 1;
    }
    return lines;
}

ColumnListRow RowOf(const Example& example, const InterfaceTexts& texts) {
    std::string see;
    std::string told;
    for (const std::string& line : example.lines) {
        see += (see.empty() ? "" : " ") + line;
        told += (told.empty() ? "" : "\n") + Wrapped(line, kSeeWidth);
    }
    if (!example.source.empty())
        told += '\n' + Wrapped(FillIn(texts.Label(kTextSource), {example.source}), kSeeWidth);
    ColumnListRow row;
    row.cells = {{Wrapped(example.title, kTitleWidth)}, {std::move(told)}};
    row.cells[0].picture = ReadPicture(example.picture);
    row.tip = std::move(see);
    return row;
}

}  // namespace

GalleryWindow::GalleryWindow(std::vector<Example> examples, const InterfaceTexts& texts)
    : BWindow(FirstFrame(), texts.Text(kTextGalleryTitle), B_TITLED_WINDOW, B_CLOSE_ON_ESCAPE),
      examples_(std::move(examples)),
      list_(new BColumnListView("Examples", Columns(texts), new BMessage(kChosen))) {
    list_->SetAccessibleName(texts.Text(kTextGalleryList));
    list_->SetStretch(1, 1);
    AddChild(list_);
    AddChild(MakeFoot(texts));
    FillList(texts);
    list_->MakeFocus();
}

BView* GalleryWindow::MakeFoot(const InterfaceTexts& texts) {
    auto* const row = new BGroupView("foot", B_HORIZONTAL);
    row->AddChild(new BStringView("hint", texts.Text(kTextGalleryHint)));
    row->AddStretch();
    row->SetWindowInsets();
    row->AddChild(new BButton("open", texts.Text(kTextGalleryOpen), new BMessage(kOpenSelected)));
    return row;
}

void GalleryWindow::FillList(const InterfaceTexts& texts) {
    std::vector<ColumnListRow> rows;
    rows.reserve(examples_.size());
    for (const Example& example : examples_) {
        rows.push_back(RowOf(example, texts));
        rows.back().key = static_cast<int64>(rows.size()) - 1;
    }
    list_->SetRows(std::move(rows));
    if (!examples_.empty()) list_->Select(0);
}

void GalleryWindow::MessageReceived(BMessage* message) {
    int64 key = ColumnListRow::kNoKey;
    if (message->what == kOpenSelected)
        key = list_->Selection();
    else if (message->what != kChosen ||
             message->FindInt64(BColumnListView::kKeyField, &key) != B_OK)
        return BWindow::MessageReceived(message);
    if (key < 0 || key >= static_cast<int64>(examples_.size())) return;
    BMessage open(ExampleMenu::kOpenExample);
    if (open.AddString(kPathField, examples_[static_cast<std::size_t>(key)].path) == B_OK)
        static_cast<void>(be_app->PostMessage(&open));
}

bool GalleryWindow::QuitRequested() {
    Hide();
    return false;
}
