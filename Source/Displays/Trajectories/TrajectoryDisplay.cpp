#include "Displays/Trajectories/TrajectoryDisplay.h"

#include <algorithm>

#include "Interface Widgets/InterfaceTexts.h"
#include "Model/Sharing/AbCalculator.h"
#include "Model/Sharing/ChangeFlags.h"
#include "Model/Sharing/EpochPortal.h"
#include "Model/Sharing/ModelGuards.h"
#include "Platform/Interface/Handles/BScrollView.h"
#include "Platform/Support/BAutolock.h"
#include "Resources/DisplayFeatures.h"

namespace {

constexpr int32 kShown = kTrailChanged | kDiscChanged | kPositionChanged | kMassOrRadiusChanged |
                         kSystemRemoved | kSystemAdded | kCalculatorSettingsChanged;
static_assert(kShown == 0x10c2e);

}  // namespace

TrajectoryDisplay::TrajectoryDisplay(BRect frame, const char* title, EpochPortal* portal,
                                     Benaphore* done, BLooper* owner, const InterfaceTexts* texts)
    : Display(frame, title, B_DOCUMENT_WINDOW, portal, done, owner, texts) {
    SetKind(0, "Trajectories");
}

int32 TrajectoryDisplay::Init(const char* simulationName) {
    if (const int32 result = Display::Init(simulationName); result != 0) return result;
    view_ = MakeView();
    view_->SetAccessibleName(Texts().Text(kLabelSky));
    scrollView_ = new BScrollView("trajectories", view_);
    scrollView_->SetStretch(1, 1);
    AddChild(scrollView_);
    return 0;
}

TrajectoryView* TrajectoryDisplay::MakeView() {
    return new TrajectoryView("sky", this);
}

// Batches that were cut come more often than the user wants to see them. When a run parks all of
// it is shown.
void TrajectoryDisplay::DisplayData() {
    const AbCalculator* const calculator = Epoch()->GetCalculator();
    const bool isShown = calculator == nullptr || ++unshown_ >= calculator->BatchesPerUpdate();
    if (isShown) unshown_ = 0;
    view_->DisplayData(isShown);
}

void TrajectoryDisplay::ReadData(int32 reports, double* /*times*/, double* positions,
                                 double* /*velocities*/) {
    const BAutolock lock(this);
    if (lock.IsLocked()) view_->ReadPositions(reports, positions);
}

EpochPortal TrajectoryDisplay::TakeShown() {
    return *Epoch();
}

void TrajectoryDisplay::Redisplay(int32 changes) {
    if ((changes & kShown) == 0) return;
    EpochPortal* const portal = Epoch();
    const ReadGuard guard(portal);
    if ((changes & kCalculatorSettingsChanged) != 0 && portal->GetCalculator() != nullptr)
        view_->SetSegmentLength(static_cast<float>(portal->GetCalculator()->SegmentLength()));
    const EpochPortal shown = TakeShown();
    const std::vector<Body*> bodies = shown.BodiesInMassOrder();
    TakeBodies(bodies);
    view_->Redisplay(changes & ~kCalculatorSettingsChanged, bodies, IsRunning());
}

bool TrajectoryDisplay::IsRunning() const {
    const AbCalculator* const calculator = Epoch()->GetCalculator();
    return calculator != nullptr && calculator->IsRunning();
}

void TrajectoryDisplay::PrepareForGo(int32 reportsPerSegment) {
    Display::PrepareForGo(reportsPerSegment);
    const BAutolock lock(this);
    if (!lock.IsLocked()) return;
    const ReadGuard guard(Epoch());
    const EpochPortal shown = TakeShown();
    const std::vector<Body*> bodies = shown.BodiesInMassOrder();
    TakeBodies(bodies);
    view_->PrepareForGo(reportsPerSegment, bodies);
}

// Of a box in space its corners say what the plane has of it, wherever that looks.
void TrajectoryDisplay::ShowBars(Extent all) {
    const TrajectoryCache& cache = view_->Cache();
    all.Add(cache.TrailExtent());
    const FrameMoment moment = cache.LastFrame();
    for (int32 body = 0; body < cache.CountBodies(); body++)
        all.Add(moment.See(cache.LastPosition(body)));
    const BRect bounds = view_->Bounds();
    ScrollRange across{all.kNone, -all.kNone, bounds.left, bounds.right};
    ScrollRange up{all.kNone, -all.kNone, bounds.top, bounds.bottom};
    const PlaneMap plane = Plane();
    for (int32 corner = 0; corner < 8 && !all.IsEmpty(); corner++) {
        const PlaneMap::Point seen = plane.Map({(corner & 1) != 0 ? all.high.x : all.low.x,
                                                (corner & 2) != 0 ? all.high.y : all.low.y,
                                                (corner & 4) != 0 ? all.high.z : all.low.z});
        across.low = std::min(across.low, seen.x);
        across.high = std::max(across.high, seen.x);
        up.low = std::min(up.low, seen.y);
        up.high = std::max(up.high, seen.y);
    }
    scrollView_->SetRanges(across, up);
}

void TrajectoryDisplay::ScreenChanged(BRect /*frame*/) {
    DrawDiscs();
}
