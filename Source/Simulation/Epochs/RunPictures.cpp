#include "Simulation/Epochs/RunPictures.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <utility>
#include <vector>

#include "Displays/Trajectories/TrajectoryView.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Systems/Body.h"
#include "Platform/Interface/Canvas/BBitmap.h"
#include "Platform/Interface/Canvas/Canvas.h"
#include "Simulation/Epochs/PictureTrails.h"

namespace {

constexpr float kWidth = 36.0f;
constexpr float kHeight = 22.0f;
constexpr double kScale = 2.0;   // device pixels, for screens that have so many
constexpr double kMargin = 2.0;  // around the trails
constexpr float kDot = 0.75f;    // half its length
constexpr std::size_t kMaxBodies = 12;
constexpr std::size_t kMaxSamples = 400;  // of a body
constexpr int32 kMaxDrawn = 16;           // in a round

std::vector<const Body*> HeaviestOf(const Epoch& epoch, const std::vector<int64>& ids) {
    std::vector<const Body*> bodies;
    for (const int64 id : ids)
        if (const auto* const body = dynamic_cast<const Body*>(epoch.SystemFromID(id));
            body != nullptr && body->TrailOn())
            bodies.push_back(body);
    const std::size_t count = std::min(bodies.size(), kMaxBodies);
    std::ranges::partial_sort(bodies, bodies.begin() + static_cast<std::ptrdiff_t>(count),
                              std::ranges::greater{}, &Body::M);
    bodies.resize(count);
    return bodies;
}

// Without anything in it.
std::shared_ptr<BBitmap> MakeBitmap() {
    constexpr auto kScaled = static_cast<float>(kScale);
    return std::make_shared<BBitmap>(
        BRect{0.0f, 0.0f, kScaled * kWidth - 1.0f, kScaled * kHeight - 1.0f}, B_RGB32);
}

RunPictures::Picture CopyOf(const PixelBuffer& pixels) {
    auto bitmap = MakeBitmap();
    auto* row = static_cast<std::byte*>(bitmap->Bits());
    const int32 width = std::min(pixels.Width(), bitmap->Width());
    for (int32 y = 0; y < std::min(pixels.Height(), bitmap->RowCount()); y++) {
        std::vector<Pixel> opaque(pixels.Row(y), pixels.Row(y) + width);
        for (Pixel& pixel : opaque)
            pixel |= kOpaque;
        std::memcpy(row, opaque.data(), opaque.size() * sizeof(Pixel));
        row += bitmap->BytesPerRow();
    }
    return bitmap;
}

}  // namespace

void RunPictures::BeginRound() {
    std::erase_if(entries_, [this](const auto& entry) { return entry.second.round != round_; });
    round_++;
    drawn_ = 0;
    isIncomplete_ = false;
}

RunPictures::Picture RunPictures::PictureOf(const AbEpoch& epoch) {
    const auto* const real = dynamic_cast<const Epoch*>(&epoch);
    const auto span = history_ == nullptr ? std::nullopt : history_->SpanOf(&epoch);
    if (real == nullptr || !span) return nullptr;
    Entry& entry = entries_[&epoch];
    const bool isOther = entry.life.owner_before(real->Life()) ||
                         real->Life().owner_before(entry.life) || entry.end != span->end;
    if (isOther && drawn_ == kMaxDrawn) isIncomplete_ = true;
    if (isOther && drawn_ < kMaxDrawn) {
        entry = {real->Life(), span->end, round_, Draw(*real, *span)};
        drawn_++;
    }
    entry.round = round_;
    return entry.picture;
}

RunPictures::Picture RunPictures::Blank() {
    static const Picture blank = MakeBitmap();
    return blank;
}

RunPictures::Picture RunPictures::Draw(const Epoch& epoch, const RunHistory::Span& span) const {
    std::vector<PictureTrail> trails;
    for (const Body* const body : HeaviestOf(epoch, history_->BodiesOf(&epoch)))
        trails.push_back({body->TrailColor(), body->M(),
                          history_->Samples(&epoch, body->ID(), std::min(span.start, span.end),
                                            std::max(span.start, span.end), kMaxSamples)});
    trails = TrailsToSee(std::move(trails));
    const Extent all = ExtentOf(trails);
    if (all.IsEmpty()) return nullptr;
    const ThreeVector size = all.high - all.low;
    const ThreeVector middle = (all.low + all.high) * 0.5;
    const double largest =
        std::max({size.x / (kWidth - 2.0 * kMargin), size.y / (kHeight - 2.0 * kMargin), 1e-300});
    const auto map = [&](const ThreeVector& place) {
        return BPoint{static_cast<float>((place.x - middle.x) / largest + 0.5 * kWidth - 0.5),
                      static_cast<float>((middle.y - place.y) / largest + 0.5 * kHeight - 0.5)};
    };
    Canvas canvas({0.0f, 0.0f, kWidth - 1.0f, kHeight - 1.0f}, TrajectoryView::kSky, kScale);
    canvas.Fill(TrajectoryView::kSky);
    for (const auto& [color, mass, samples] : trails) {
        if (samples.empty()) continue;
        canvas.BeginLineArray(static_cast<int32>(2 * samples.size()));
        // Where it came to, so that none is hidden altogether.
        const BPoint end = map(samples.back().position);
        canvas.AddLine({end.x - kDot, end.y}, {end.x + kDot, end.y}, color);
        for (std::size_t i = 1; i < samples.size(); i++) {
            const Sample& from = samples[i - 1];
            const Sample& to = samples[i];
            if (!to.isJoined) continue;
            const BPoint bend = map(Between(from, to, 0.5 * (from.time + to.time)).position);
            canvas.AddLine(map(from.position), bend, color);
            canvas.AddLine(bend, map(to.position), color);
        }
        canvas.EndLineArray();
    }
    return CopyOf(canvas.Pixels());
}
