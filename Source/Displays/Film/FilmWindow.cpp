#include "Displays/Film/FilmWindow.h"

#include <cerrno>
#include <cmath>
#include <cstring>
#include <utility>

#include "Displays/Base/DisplayContext.h"
#include "Interface Widgets/NumberTextControl.h"
#include "Model/Units/FittingUnit.h"
#include "Model/Units/QuantityText.h"
#include "Model/Units/UnitTable.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Interface/Handles/BButton.h"
#include "Platform/Interface/Handles/BChoiceField.h"
#include "Platform/Interface/Handles/BFilePanel.h"
#include "Platform/Interface/Handles/BGroupView.h"
#include "Platform/Interface/Handles/BStringView.h"
#include "Platform/Interface/Handles/SaveChoice.h"
#include "Platform/Storage/entry_ref.h"
#include "Resources/CommonTexts.h"
#include "Resources/Film.h"
#include "Simulation/Document/TextTemplate.h"

namespace {

constexpr uint32 kTyped = FourCC("fltp");
constexpr uint32 kHeightChosen = FourCC("flhg");
constexpr uint32 kFormChosen = FourCC("flfm");
constexpr uint32 kRecord = FourCC("flrc");
constexpr const char* kIdField = "id";
constexpr int32 kColumns = 28;
constexpr int64 kHeights[] = {480, 720, 1080, 2160};
constexpr std::string_view kMp4Suffix = ".mp4";
constexpr int kSecondsDigits = 3;

}  // namespace

FilmWindow::FilmWindow(Subject subject, const DisplayContext& context)
    : BWindow(BRect{}, context.texts->Text(kLabelFilmTitle), B_MODAL_WINDOW,
              B_NOT_RESIZABLE | B_NOT_ZOOMABLE | B_NOT_MINIMIZABLE | B_CLOSE_ON_ESCAPE),
      subject_(std::move(subject)),
      context_(context),
      pace_(new NumberTextControl("pace", context.texts->Text(kLabelFilmPace), context.timeUnits,
                                  *context.texts, new BMessage(kTyped))),
      rate_(new NumberTextControl("rate", context.texts->Text(kLabelFilmRate), nullptr,
                                  *context.texts, new BMessage(kTyped))),
      height_(new BChoiceField("height", context.texts->Text(kLabelFilmHeight),
                               new BMessage(kHeightChosen))),
      form_(
          new BChoiceField("form", context.texts->Text(kLabelFilmForm), new BMessage(kFormChosen))),
      news_(new BStringView("news", "")),
      pacePerSecond_(subject_.pace) {
    const InterfaceTexts& texts = *context.texts;
    auto* const column = new BGroupView("content", B_VERTICAL);
    column->SetWindowInsets();
    pace_->SetShowsUnit(true);
    AddRow(column, pace_, kLabelFilmPace);
    AddRow(column, rate_, kLabelFilmRate);
    std::vector<BChoiceField::Choice> heights{{0, texts.Label(kTextFilmAsSeen), 0}};
    for (const int64 height : kHeights)
        heights.push_back(
            {height, FillIn(texts.Label(kTextFilmLines), {std::to_string(height)}), 0});
    height_->SetChoices(std::move(heights));
    height_->Choose(pixels_);
    height_->SetColumns(kColumns);
    AddRow(column, height_, kLabelFilmHeight);
    std::vector<BChoiceField::Choice> forms{
        {static_cast<int64>(Form::kPngs), texts.Label(kTextFilmPngs), 0}};
    if (FilmEncoder::IsInstalled())
        forms.push_back({static_cast<int64>(Form::kMp4), texts.Label(kTextFilmMp4), 0});
    form_->SetChoices(std::move(forms));
    form_->Choose(static_cast<int64>(chosenForm_));
    form_->SetColumns(kColumns);
    AddRow(column, form_, kLabelFilmForm);
    column->AddChild(news_);
    AddButtons(column);
    AddChild(column);
    pace_->ShowBrief(DimValue(pacePerSecond_, PaceUnit()), true);
    rate_->ShowValue(DimValue(framesPerSecond_, 1.0), true);
    ShowLength();
    pace_->SelectAll();
    pace_->MakeFocus();
}

FilmWindow::~FilmWindow() = default;

void FilmWindow::AddRow(BGroupView* column, BView* field, int32 label) {
    auto* const row = new BGroupView("row", B_HORIZONTAL);
    auto* const text = new BStringView("label", context_.texts->Text(label));
    text->SetField(*field);
    row->AddChild(text);
    row->AddStretch();
    row->AddChild(field);
    column->AddChild(row);
}

void FilmWindow::AddButtons(BGroupView* column) {
    auto* const row = new BGroupView("buttons", B_HORIZONTAL);
    auto* const cancel =
        new BButton("cancel", context_.texts->Text(kLabelCancel), new BMessage(B_QUIT_REQUESTED));
    record_ = new BButton("record", context_.texts->Text(kTextFilmButton), new BMessage(kRecord));
    row->AddStretch();
    row->AddChild(cancel);
    row->AddChild(record_);
    column->AddChild(row);
    SetDefaultButton(record_);
    SetCancelButton(cancel);
}

void FilmWindow::MessageReceived(BMessage* message) {
    int64 number = 0;
    int32 error = 0;
    switch (message->what) {
        case kTyped:
            if (TakeTyped()) ShowLength();
            break;
        case kHeightChosen:
            message->FindInt64(kIdField, &pixels_);
            break;
        case kFormChosen:
            if (message->FindInt64(kIdField, &number) == B_OK)
                chosenForm_ = static_cast<Form>(number);
            break;
        case kRecord:
            if (recorder_ == nullptr && TakeTyped()) RequestName();
            break;
        case kNamed:
            return Record(*message);
        case FilmRecorder::kProgress:
            if (recorder_ != nullptr && message->FindInt64(FilmRecorder::kFrame, &number) == B_OK)
                Say(kTextFilmProgress,
                    {std::to_string(number), std::to_string(Plan().CountFrames())});
            break;
        case FilmRecorder::kEnd:
            if (recorder_ != nullptr && message->FindInt32(FilmRecorder::kError, &error) == B_OK)
                ShowEnd(error);
            break;
        default:
            BWindow::MessageReceived(message);
    }
}

bool FilmWindow::TakeTyped() {
    if (const auto typed = pace_->TakeText()) {
        const DimValue former(pacePerSecond_, PaceUnit());
        const auto value = pace_->Read(*typed, former);
        if (!value) return false;
        if (!(value->Value() > 0.0) || !std::isfinite(value->Value())) {
            pace_->RefuseRange(former);
            return false;
        }
        pacePerSecond_ = value->Value();
    }
    if (const auto typed = rate_->TakeText()) {
        const DimValue former(framesPerSecond_, 1.0);
        const auto value = rate_->Read(*typed, former);
        if (!value) return false;
        if (!(value->Value() >= FilmPlan::kMinRate && value->Value() <= FilmPlan::kMaxRate &&
              value->Value() == std::floor(value->Value()))) {
            rate_->RefuseRange(former);
            return false;
        }
        framesPerSecond_ = static_cast<int32>(value->Value());
    }
    return true;
}

double FilmWindow::PaceUnit() const {
    const UnitInfo* const unit = FittingUnit(*context_.timeUnits, pacePerSecond_);
    return unit == nullptr ? 1.0 : unit->factor;
}

FilmPlan FilmWindow::Plan() const {
    return FilmPlan::Of(subject_.runs, pacePerSecond_, framesPerSecond_);
}

void FilmWindow::ShowLength() {
    if (recorder_ != nullptr) return;
    record_->SetEnabled(!subject_.runs.IsEmpty());
    if (subject_.runs.IsEmpty()) return news_->SetText(context_.texts->Text(kTextFilmNoRun));
    const int64 frames = Plan().CountFrames();
    record_->SetEnabled(frames <= FilmPlan::kMaxFrames);
    if (frames > FilmPlan::kMaxFrames)
        return Say(kTextFilmTooLong, {std::to_string(FilmPlan::kMaxFrames)});
    const double seconds = static_cast<double>(frames) / framesPerSecond_;
    Say(kTextFilmLength, {std::to_string(frames), print_double(seconds, kSecondsDigits)});
}

void FilmWindow::RequestName() {
    ShowLength();
    if (!record_->IsEnabled()) return;
    if (panel_ == nullptr) {
        const BMessage named(kNamed);
        panel_ =
            std::make_unique<BFilePanel>(B_SAVE_PANEL, BMessenger(this), nullptr, false, &named);
        panel_->SetTitle(context_.texts->Text(kLabelFilmTitle));
    }
    const std::string suffix(chosenForm_ == Form::kMp4 ? kMp4Suffix : "");
    panel_->SetSaveText((subject_.name + suffix).c_str());
    panel_->Show();
}

void FilmWindow::Record(const BMessage& place) {
    const auto choice = SaveChoice::From(place);
    std::string folder;
    if (recorder_ != nullptr || !choice || get_path_for_ref(choice->directory, &folder) != B_OK)
        return;
    path_ = folder + '/' + choice->name;
    std::unique_ptr<FilmFiles> files;
    if (chosenForm_ == Form::kMp4) {
        if (!path_.ends_with(kMp4Suffix)) path_ += kMp4Suffix;
        files = std::make_unique<FilmEncoder>(path_, framesPerSecond_);
    } else {
        files = std::make_unique<FilmFolder>(path_, false);
    }
    FilmView view = subject_.view;
    if (pixels_ > 0) view.deviceScale = static_cast<double>(pixels_) / view.height;
    record_->SetEnabled(false);
    Say(kTextFilmProgress, {"0", std::to_string(Plan().CountFrames())});
    recorder_ = std::make_unique<FilmRecorder>(
        FilmPainter(subject_.portal, subject_.history, subject_.runs, std::move(view)), Plan(),
        std::move(files), BMessenger(this));
}

void FilmWindow::ShowEnd(int error) {
    recorder_.reset();
    record_->SetEnabled(true);
    if (error == 0) return Say(kTextFilmDone, {path_});
    const std::string reason = error == EEXIST    ? context_.texts->Label(kTextFilmExists)
                               : error == ENODATA ? context_.texts->Label(kTextFilmNoRun)
                                                  : std::string(std::strerror(error));
    Say(kTextFilmFailed, {path_, reason});
}

void FilmWindow::Say(int32 text, std::initializer_list<std::string_view> values) {
    news_->SetText(FillIn(context_.texts->Label(text), values).c_str());
}
