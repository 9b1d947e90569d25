#include "Displays/Chart/ChartDisplay.h"

#include <algorithm>
#include <cmath>
#include <span>
#include <utility>

#include "Displays/Chart/ChartExport.h"
#include "Displays/Chart/ChartMenus.h"
#include "Displays/Chart/ChartView.h"
#include "Interface Widgets/InterfaceTexts.h"
#include "Interface Widgets/ProgramMessages.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Application/AppDefs.h"
#include "Platform/Application/BMessage.h"
#include "Platform/Application/BMessageRunner.h"
#include "Platform/Interface/Handles/BMenuBar.h"
#include "Resources/Chart.h"
#include "Resources/EpochWindow.h"
#include "Resources/SimulationWindow.h"
#include "Simulation/History/RunHistory.h"
#include "Simulation/History/ShownMoment.h"

namespace {

// Between two pictures of a run, and how long lines are made at a time: us.
constexpr bigtime_t kFrame = 200'000;
constexpr bigtime_t kSlice = 15'000;
constexpr uint32 kTick = FourCC("chtk");
constexpr uint32 kGoOn = FourCC("chgo");
constexpr uint32 kSvgNamed = FourCC("chsn");
constexpr uint32 kCsvNamed = FourCC("chcn");

// The moment alone is another one.
constexpr int32 kOnlyMoment = kMomentChanged;

std::span<const std::byte> BytesOf(const std::string& text) {
    return std::as_bytes(std::span(text.data(), text.size()));
}

}  // namespace

ChartDisplay::ChartDisplay(BRect frame, const char* title, EpochPortal* portal, Benaphore* done,
                           BLooper* owner, const DisplayContext& context)
    : Display(frame, title, B_DOCUMENT_WINDOW, portal, done, owner, context.texts),
      context_(context),
      texts_(context_),
      shown_(portal),
      pictureSaver_(this, context.texts),
      svgSaver_(this, context.texts, {kSvgNamed, kLabelSaveChartTitle, kLabelSvgSuffix}),
      csvSaver_(this, context.texts, {kCsvNamed, kLabelSaveChartTitle, kLabelCsvSuffix}) {
    SetKind(kType, Texts().Text(kLabelChart));
    texts_.lengthUnit = POSITION_UVAL_PREF;
    DisplayMenus::RemoveShortcuts(this);
}

ChartDisplay::~ChartDisplay() = default;

void ChartDisplay::SetHistory(const RunHistory* history, ShownMoment* shown) {
    history_ = history;
    reader_.SetHistory(history);
    shown_.SetSource(shown);
}

int32 ChartDisplay::Init(const char* simulationName) {
    if (const int32 result = Display::Init(simulationName); result != 0) return result;
    menus_ = std::make_unique<ChartMenus>(this, context_);
    AddChild(menus_->Bar());
    view_ = new ChartView(this);
    view_->SetAccessibleName(Texts().Text(kLabelChartView));
    view_->SetStretch(1, 1);
    AddChild(view_);
    foot_ = std::make_unique<DisplayFoot>(
        this, TimeLineBar::Source{Epoch(), history_, shown_.Source(), Owner()}, context_);
    view_->MakeFocus();
    ShowFields();
    return 0;
}

void ChartDisplay::Quit() {
    clock_.reset();
    Display::Quit();
}

// --- Messages ---

void ChartDisplay::MessageReceived(BMessage* message) {
    switch (message->what) {
        case kTick:
            return Update();
        case kGoOn:
            isGoingOn_ = false;
            return GoOn();
        case kPauseRun:
            return RunStopped();
        case kUnPauseRun:
            return RunStarted();
        case kFit:
            return FitAll();
        default:
            if (!Save(*message) && !TakeChoice(*message)) Display::MessageReceived(message);
    }
}

bool ChartDisplay::Save(const BMessage& message) {
    switch (message.what) {
        case kSavePicture:
            pictureSaver_.Request();
            return true;
        case PictureSaver::kNamed:
            pictureSaver_.Save(message, *view_);
            return true;
        case ChartMenus::kSaveSvg:
            svgSaver_.Request();
            return true;
        case kSvgNamed: {
            const ChartScene scene = MakeScene();
            svgSaver_.Save(message, BytesOf(ChartSvg(DrawingOf(scene).Find())));
            return true;
        }
        case ChartMenus::kSaveCsv:
            csvSaver_.Request();
            return true;
        case kCsvNamed:
            csvSaver_.Save(message,
                           BytesOf(ChartCsv(MakeScene(), texts_.TimeTitle(), texts_.timeUnit)));
            return true;
        default:
            return false;
    }
}

bool ChartDisplay::TakeChoice(const BMessage& message) {
    const bool wasLight = fields_.isLight;
    if (!ChartMenus::Take(message, Bodies(), &fields_)) return false;
    const bool isOfLooks = fields_.isLight != wasLight;
    // Values of another kind lie elsewhere.
    if (!isOfLooks) fields_.isChosenView = false;
    ShowFields();
    if (isOfLooks)
        Repaint();
    else
        Update();
    return true;
}

void ChartDisplay::DispatchMessage(BMessage* message, BHandler* handler) {
    if (message->what == B_PULSE && handler == this) foot_->Pulse();
    Display::DispatchMessage(message, handler);
}

void ChartDisplay::RunStarted() {
    menus_->SetGoLabel(Texts().Text(kLabelPause));
    foot_->SetRunning(true);
    clock_ = std::make_unique<BMessageRunner>(BMessenger(this), BMessage(kTick), kFrame);
}

void ChartDisplay::RunStopped() {
    menus_->SetGoLabel(Texts().Text(kLabelGo));
    foot_->SetRunning(false);
    clock_.reset();
    Update();
}

// --- The model ---

void ChartDisplay::Redisplay(int32 changes) {
    menus_->Redisplay(changes, Epoch());
    foot_->Redisplay(changes);
    // Other moments are kept than before.
    if ((changes & kRunsKeptChanged) == kRunsKeptChanged) reader_.Forget();
    if (changes != kOnlyMoment) return Update();
    {
        const ReadGuard guard(Epoch());
        shown_.TakeMoment();
    }
    menus_->ShowMoment(shown_.IsPast());
    Repaint();
}

void ChartDisplay::Update() {
    {
        const ReadGuard guard(Epoch());
        shown_.TakeMoment();
        shown_.TakeTime(false);
        if (shown_.TakeLabels(shown_.Portal().BodiesInMassOrder()) && menus_ != nullptr) {
            for (const BodyLabels::Label& body : shown_.Labels().bodies)
                names_[body.id] = body.name;
            menus_->ShowBodies(shown_.Labels(), fields_);
            ShowFields();
        }
        texts_.timeUnit = shown_.TimeUval();
        if (history_ != nullptr) line_ = ReadTimeLine(*Epoch(), *history_);
        TakeLines();
    }
    if (menus_ != nullptr) menus_->ShowMoment(shown_.IsPast());
    if (!isGoingOn_) GoOn();
}

void ChartDisplay::TakeLines() {
    std::vector<ChartLine> lines;
    for (const Quantity quantity : fields_.Quantities()) {
        if (!IsOfBody(quantity)) {
            lines.push_back({quantity, kNoSystemID, kNoSystemID, {}, Crossing::kNone});
            continue;
        }
        for (const int64 body : Bodies())
            if (const int64 about = AboutFor(body); about != kNoSystemID && about != body)
                lines.push_back({quantity, body, about, fields_.Against(), fields_.Points()});
    }
    if (history_ != nullptr) reader_.Start(lines, ReadChartRuns(*Epoch(), line_, *history_));
}

void ChartDisplay::GoOn() {
    isComplete_ = reader_.Work(kSlice);
    if (!isComplete_) isGoingOn_ = PostMessage(kGoOn) == B_OK;
    Repaint();
}

std::vector<int64> ChartDisplay::Bodies() const {
    if (!fields_.bodies.empty()) return fields_.bodies;
    // What goes about the heaviest.
    for (const BodyLabels::Label& body : shown_.Labels().bodies)
        if (body.id != shown_.Labels().bodies.front().id && body.id != AboutFor(body.id))
            return {body.id};
    return {};
}

int64 ChartDisplay::AboutFor(int64 body) const {
    if (fields_.about != kNoSystemID) return fields_.about;
    for (const BodyLabels::Label& other : shown_.Labels().bodies)
        if (other.id != body) return other.id;
    return kNoSystemID;
}

std::string ChartDisplay::NameOf(int64 body) const {
    const auto found = names_.find(body);
    return found == names_.end() ? std::string() : found->second;
}

void ChartDisplay::SetPreferredUnit(double unit) {
    if (!(unit > 0.0) || !std::isfinite(unit)) return;
    texts_.lengthUnit = unit;
    Repaint();
}

void ChartDisplay::ShowFields() {
    ChartFields shown = fields_;
    shown.bodies = Bodies();
    menus_->ShowFields(shown);
}

// --- What is seen ---

ChartRange ChartDisplay::FittedAcross() const {
    if (!fields_.Against()) {
        const double low = std::min(line_.Start(), line_.End());
        const double high = std::max(line_.Start(), line_.End());
        return low < high ? ChartRange{low, high} : RangeAround(low, high, false);
    }
    ChartSpan span;
    for (const ChartSeries& series : reader_.Series())
        span.Add(series.Extent(fields_.IsAcrossLog()));
    return RangeAround(span.low, span.high, fields_.IsAcrossLog());
}

ChartRange ChartDisplay::FittedUp() const {
    ChartSpan span;
    for (const ChartSeries& series : reader_.Series())
        span.Add(fields_.isLogUp ? series.PositiveEnvelope() : series.Envelope(0, series.Count()));
    return RangeAround(span.low, span.high, fields_.isLogUp);
}

void ChartDisplay::AddMarks(ChartScene* scene) const {
    using Kind = TimeLine::Mark::Kind;
    if (!scene->isOverTime) return;
    for (const TimeLine::Mark& mark : line_.marks)
        scene->marks.push_back({mark.time, mark.name, mark.kind == Kind::kMerger});
}

ChartScene ChartDisplay::MakeScene() const {
    ChartScene scene;
    scene.isOverTime = !fields_.Against();
    scene.areDots = fields_.Points() != Crossing::kNone;
    scene.isLight = fields_.isLight;
    scene.across.isLog = fields_.IsAcrossLog();
    scene.up.isLog = fields_.isLogUp;
    scene.across.range = fields_.isChosenView ? fields_.across : FittedAcross();
    scene.up.range = fields_.isChosenView ? fields_.up : FittedUp();
    texts_.Name(fields_.Against() ? std::vector{*fields_.Against()} : std::vector<Quantity>(),
                &scene.across);
    texts_.Name(fields_.Quantities(), &scene.up);
    if (line_.IsEmpty()) scene.note = Texts().Label(kTextChartEmpty);
    AddMarks(&scene);
    const double cursor = shown_.IsPast() ? shown_.GetMoment().epoch->Time() : line_.End();
    if (!line_.IsEmpty()) scene.cursor = cursor;
    const std::vector<ChartLine>& lines = reader_.Lines();
    for (std::size_t i = 0; i < lines.size(); i++) {
        const ChartSeries& series = reader_.Series()[i];
        scene.lines.push_back(
            {&series, texts_.NameOf(lines[i], NameOf(lines[i].body), NameOf(lines[i].about)),
             ChartDrawing::ColorOf(i, fields_.isLight)});
        // A run that goes on is ahead of its lines.
        const bool isNow = !shown_.IsPast() && series.Count() > 0;
        const std::size_t newest = line_.isBackwards || !isNow ? 0 : series.Count() - 1;
        const double value = isNow ? series[newest].y : series.At(cursor).y;
        scene.values.push_back(scene.areDots ? "" : ChartTexts::ValueText(value, scene.up));
    }
    return scene;
}

ChartDrawing ChartDisplay::DrawingOf(const ChartScene& scene) const {
    const BRect bounds = view_->Bounds();
    return {scene, bounds.Width() + 1.0f, bounds.Height() + 1.0f};
}

void ChartDisplay::Repaint() {
    if (view_ == nullptr || IsHidden() || view_->IsEmpty()) return;
    const ChartScene scene = MakeScene();
    view_->Paint(DrawingOf(scene).Find());
    std::string said;
    for (std::size_t i = 0; i < scene.lines.size(); i++)
        said += scene.lines[i].name + ": " + scene.values[i] + '\n';
    view_->Describe(said);
}

// --- What moves the view ---

void ChartDisplay::SetView(const ChartRange& across, const ChartRange& up) {
    fields_.across = across;
    fields_.up = up;
    fields_.isChosenView = true;
    Repaint();
}

void ChartDisplay::PanBy(float right, float down) {
    const ChartScene scene = MakeScene();
    const ChartDrawing drawing = DrawingOf(scene);
    SetView(drawing.Across().Moved(right), drawing.Up().Moved(down));
}

void ChartDisplay::ZoomAbout(BPoint point, double factor) {
    const ChartScene scene = MakeScene();
    const ChartDrawing drawing = DrawingOf(scene);
    const bool isBesideUp = point.x < drawing.Plot().left;
    const bool isBelow = point.y > drawing.Plot().bottom;
    SetView(isBesideUp ? scene.across.range : drawing.Across().Zoomed(point.x, factor),
            isBelow ? scene.up.range : drawing.Up().Zoomed(point.y, factor));
}

void ChartDisplay::Zoom(double across, double up) {
    const ChartScene scene = MakeScene();
    const ChartDrawing drawing = DrawingOf(scene);
    const BRect plot = drawing.Plot();
    SetView(drawing.Across().Zoomed((plot.left + plot.right) / 2.0f, across),
            drawing.Up().Zoomed((plot.top + plot.bottom) / 2.0f, up));
}

void ChartDisplay::FitAll() {
    fields_.isChosenView = false;
    Repaint();
}

void ChartDisplay::ShowMomentAt(BPoint point) {
    if (shown_.Source() == nullptr || fields_.Against() || line_.IsEmpty()) return;
    const ChartScene scene = MakeScene();
    if (clock_ != nullptr) SendToOwner(BMessage(kPauseForUser));
    shown_.Source()->SeekTo(DrawingOf(scene).Across().ValueAt(point.x));
}

// --- Archive ---

status_t ChartDisplay::MiniArchive(BMessage* archive) const {
    const status_t status = Display::MiniArchive(archive);
    return status == B_OK ? fields_.Write(archive) : status;
}

status_t ChartDisplay::Regenerate(const BMessage& archive) {
    const status_t status = Display::Regenerate(archive);
    fields_.Read(archive);
    ShowFields();
    return status;
}
