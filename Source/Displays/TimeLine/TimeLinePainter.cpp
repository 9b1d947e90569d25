#include "Displays/TimeLine/TimeLinePainter.h"

#include <algorithm>
#include <cmath>

#include "Platform/Interface/Canvas/CanvasView.h"

namespace {

constexpr float kInset = 14.0f;  // of the line from the view's sides
constexpr float kLineAt = 24.0f;
constexpr float kTimesAt = 32.0f;
constexpr float kThickness = 2.0f;  // half of it, as of all that follow
constexpr float kTick = 6.0f;
constexpr float kMerger = 3.5f;
constexpr float kKnob = 6.5f;
constexpr float kHalo = 8.0f;
constexpr float kReach = 5.0f;       // from a mark
constexpr float kGap = 8.0f;         // between texts
constexpr std::size_t kMaxTold = 8;  // marks in one place

constexpr rgb_color kTrack{66, 70, 84, 255};
constexpr rgb_color kKept{84, 118, 168, 255};
constexpr rgb_color kPassed{126, 176, 240, 255};
constexpr rgb_color kMark{210, 214, 224, 255};
constexpr rgb_color kMergerMark{240, 150, 70, 255};
constexpr rgb_color kNowKnob{235, 238, 244, 255};
constexpr rgb_color kPastKnob{255, 208, 84, 255};
constexpr rgb_color kText{190, 195, 205, 255};

bool Overlap(const BRect& a, const BRect& b) {
    return a.left < b.right + kGap && b.left < a.right + kGap;
}

}  // namespace

TimeLinePainter::TimeLinePainter(const TimeLine& line, BRect bounds)
    : line_(line),
      bounds_(bounds),
      left_(bounds.left + kInset),
      right_(std::max(bounds.left + kInset + 1.0f, bounds.right - kInset)) {}

float TimeLinePainter::PlaceOf(double time) const {
    const double length = line_.End() - line_.Start();
    if (length == 0.0) return right_;
    const double part = std::clamp((time - line_.Start()) / length, 0.0, 1.0);
    return left_ + static_cast<float>(part) * (right_ - left_);
}

double TimeLinePainter::TimeAt(float x) const {
    const auto part = static_cast<double>(std::clamp((x - left_) / (right_ - left_), 0.0f, 1.0f));
    // The ends are the line's own.
    if (part >= 1.0) return line_.End();
    return line_.Start() + part * (line_.End() - line_.Start());
}

std::vector<const TimeLine::Mark*> TimeLinePainter::MarksAt(float x) const {
    std::vector<const TimeLine::Mark*> nearest;
    float reach = kReach;
    for (const TimeLine::Mark& mark : line_.marks) {
        const float distance = std::abs(PlaceOf(mark.time) - x);
        if (distance > reach) continue;
        if (distance < reach) nearest.clear();
        reach = distance;
        if (nearest.size() < kMaxTold) nearest.push_back(&mark);
    }
    return nearest;
}

void TimeLinePainter::Draw(Canvas* canvas, double moment, bool isPast) const {
    const float y = bounds_.top + kLineAt;
    const auto bar = [&](float from, float to, rgb_color color) {
        if (to >= from) canvas->FillRect({from, y - kThickness, to, y + kThickness}, color);
    };
    canvas->FillRect(bounds_, kBackground);
    bar(left_, right_, kTrack);
    if (line_.IsEmpty()) return;
    const float knob = PlaceOf(moment);
    for (const TimeLine::Run& run : line_.runs) {
        if (!run.isKept) {
            canvas->FillRect({PlaceOf(run.start), y, PlaceOf(run.end), y + 1.0f}, kKept);
            continue;
        }
        bar(PlaceOf(run.start), PlaceOf(run.end), kKept);
        bar(PlaceOf(run.start), std::min(PlaceOf(run.end), knob), kPassed);
    }
    for (const TimeLine::Mark& mark : line_.marks) {
        const float x = std::round(PlaceOf(mark.time));
        if (mark.kind == TimeLine::Mark::Kind::kMerger)
            canvas->DrawDisc({x, y}, kMerger, kMergerMark);
        else
            canvas->FillRect({x, y - kTick, x + 1.0f, y + kTick}, kMark);
    }
    canvas->DrawDisc({knob, y}, kHalo, kBackground);
    canvas->DrawDisc({knob, y}, kKnob, isPast ? kPastKnob : kNowKnob);
}

void TimeLinePainter::AddNames(const CanvasView& view, std::vector<OverlayItem>* texts) const {
    float free = bounds_.left;
    for (const TimeLine::Mark& mark : line_.marks) {
        if (mark.kind != TimeLine::Mark::Kind::kEpoch || mark.name.empty()) continue;
        OverlayItem name;
        name.where = {PlaceOf(mark.time) - bounds_.left, 1.0f};
        name.text = mark.name;
        name.color = kText;
        const float width = view.FrameOf(name).Width();
        name.where.x = std::min(name.where.x, bounds_.Width() - width);
        if (name.where.x + bounds_.left < free) continue;
        free = name.where.x + bounds_.left + width + kGap;
        texts->push_back(std::move(name));
    }
}

void TimeLinePainter::AddTimes(const CanvasView& view, const std::string& start,
                               const std::string& end, const std::string& shown, bool isPast,
                               std::vector<OverlayItem>* texts) const {
    const auto text = [](OverlayItem::Anchor anchor, const std::string& said) {
        OverlayItem item;
        item.anchor = anchor;
        item.where = {kInset, kTimesAt};
        item.text = said;
        item.color = kText;
        return item;
    };
    // What is shown comes first; beside the ends' times it stands in the middle.
    OverlayItem middle = text(OverlayItem::Anchor::kLeftTop, shown);
    if (isPast) middle.color = kPastKnob;
    const float width = view.FrameOf(middle).Width();
    middle.where.x = std::max(kInset, std::floor((bounds_.Width() - width) / 2.0f));
    const BRect taken = view.FrameOf(middle);
    for (const OverlayItem& item :
         {text(OverlayItem::Anchor::kLeftTop, start), text(OverlayItem::Anchor::kRightTop, end)})
        if (!item.text.empty() && !Overlap(view.FrameOf(item), taken)) texts->push_back(item);
    texts->push_back(std::move(middle));
}
