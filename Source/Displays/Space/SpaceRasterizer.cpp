#include "Displays/Space/SpaceRasterizer.h"

#include <algorithm>
#include <cmath>
#include <thread>

#include "Displays/Space/BallPen.h"
#include "Displays/Space/WorkInParts.h"
#include "Platform/Interface/Canvas/Rasterizer.h"

namespace {

// The same ones for any number of threads, since a line that is cut at an edge may differ by a
// shade.
constexpr int32 kRowsOfBand = 64;
constexpr int32 kMaxThreads = 8;
constexpr float kMargin = 2.0f;  // around a line: its smooth edge

int32 HelpersFor(int32 threads) {
    const auto there = static_cast<int32>(std::thread::hardware_concurrency());
    return std::clamp(threads > 0 ? threads : there, 1, kMaxThreads) - 1;
}

}  // namespace

class SpaceRasterizer::Band {
public:
    Band(int32 top, int32 width, int32 height)
        : top_(top), pixels_(width, height, 0), first_(SpaceLayer::kCount + 1) {}

    [[nodiscard]] bool IsAt(int32 top, int32 width, int32 height) const {
        return top_ == top && pixels_.Width() == width && pixels_.Height() == height;
    }

    // The strokes that may touch it stand in one list of each group.
    void Draw(const std::vector<StrokesOfBands>& groups, std::size_t own, const SpaceItems& items,
              Pixel sky, double width) {
        pixels_.Fill(pixels_.Bounds(), sky);
        Sort(groups, own);
        Rasterizer pen(pixels_, width);
        BallPen ballPen(&pixels_, top_);
        std::size_t drawn = 0;
        for (const Ball& ball : items.balls) {
            const double reach = BallPen::ReachOf(ball);
            if (ball.y + reach < top_ || ball.y - reach > top_ + pixels_.Height()) continue;
            // What is at the same depth passes through it, and most of that lies behind its front.
            const std::size_t end =
                first_[static_cast<std::size_t>(SpaceLayer::Of(ball.nearness)) + 1];
            DrawStrokes(drawn, end, &pen);
            drawn = std::max(drawn, end);
            ballPen.Draw(ball);
        }
        DrawStrokes(drawn, sorted_.size(), &pen);
    }

    void CopyTo(PixelBuffer* into) const { into->Copy(pixels_, pixels_.Bounds(), {0, top_}); }

private:
    // Nothing, where there was no memory to find it.
    static const std::vector<const Stroke*>& OfBand(const StrokesOfBands& group, std::size_t own) {
        static const std::vector<const Stroke*> kNothing;
        return own < group.size() ? group[own] : kNothing;
    }

    // By layers. Of a layer they stay in their order.
    void Sort(const std::vector<StrokesOfBands>& groups, std::size_t own) {
        std::fill(first_.begin(), first_.end(), 0);
        for (const StrokesOfBands& group : groups)
            for (const Stroke* const stroke : OfBand(group, own))
                first_[static_cast<std::size_t>(stroke->layer) + 1]++;
        for (std::size_t layer = 1; layer < first_.size(); layer++)
            first_[layer] += first_[layer - 1];
        sorted_.resize(first_.back());
        next_ = first_;
        for (const StrokesOfBands& group : groups)
            for (const Stroke* const stroke : OfBand(group, own))
                sorted_[next_[static_cast<std::size_t>(stroke->layer)]++] = stroke;
    }

    void DrawStrokes(std::size_t from, std::size_t to, Rasterizer* pen) const {
        const double top = top_;
        for (std::size_t i = from; i < to; i++) {
            const Stroke& stroke = *sorted_[i];
            pen->SetColor(stroke.color);
            pen->DrawLine(static_cast<double>(stroke.x0), static_cast<double>(stroke.y0) - top,
                          static_cast<double>(stroke.x1), static_cast<double>(stroke.y1) - top);
        }
    }

    const int32 top_;
    PixelBuffer pixels_;
    std::vector<const Stroke*> sorted_;
    std::vector<std::size_t> first_;  // of each layer in `sorted_`
    std::vector<std::size_t> next_;
};

SpaceRasterizer::SpaceRasterizer(int32 threads) : team_(HelpersFor(threads)) {}

SpaceRasterizer::~SpaceRasterizer() = default;

// Each stroke by the bands that it may touch: mostly one.
void SpaceRasterizer::FindTouching(const std::vector<std::vector<Stroke>>& lists, float width,
                                   std::size_t bands) {
    const float margin = width / 2 + kMargin;
    const auto bandAt = [](float y) {
        return static_cast<int32>(std::floor(y / static_cast<float>(kRowsOfBand)));
    };
    touching_.resize(lists.size());
    WorkInParts(&team_, static_cast<int32>(lists.size()), [&](int32 part) {
        StrokesOfBands& found = touching_[static_cast<std::size_t>(part)];
        for (std::vector<const Stroke*>& list : found)
            list.clear();
        found.resize(bands);
        for (const Stroke& stroke : lists[static_cast<std::size_t>(part)]) {
            const int32 first = bandAt(std::min(stroke.y0, stroke.y1) - margin);
            const int32 last = bandAt(std::max(stroke.y0, stroke.y1) + margin);
            for (int32 i = std::max(first, 0); i <= last && i < static_cast<int32>(bands); i++)
                found[static_cast<std::size_t>(i)].push_back(&stroke);
        }
    });
}

void SpaceRasterizer::Draw(const SpaceItems& items, Pixel sky, double width, PixelBuffer* into) {
    const int32 count = (into->Height() + kRowsOfBand - 1) / kRowsOfBand;
    bands_.resize(static_cast<std::size_t>(count));
    FindTouching(items.strokes, static_cast<float>(width), bands_.size());
    WorkInParts(&team_, count, [&](int32 i) {
        std::unique_ptr<Band>& band = bands_[static_cast<std::size_t>(i)];
        const int32 top = i * kRowsOfBand;
        const int32 height = std::min(kRowsOfBand, into->Height() - top);
        if (band == nullptr || !band->IsAt(top, into->Width(), height))
            band = std::make_unique<Band>(top, into->Width(), height);
        band->Draw(touching_, static_cast<std::size_t>(i), items, sky, width);
        band->CopyTo(into);
    });
}
