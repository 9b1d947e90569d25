#include "Displays/Space/SpaceRasterizer.h"

#include <algorithm>
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

    void Draw(const SpaceItems& items, Pixel sky, double width) {
        pixels_.Fill(pixels_.Bounds(), sky);
        Sort(items.strokes, static_cast<float>(width));
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
    // Those that may touch the band, by layers. Of a layer they stay in their order.
    void Sort(const std::vector<std::vector<Stroke>>& lists, float width) {
        const float margin = width / 2 + kMargin;
        const float least = static_cast<float>(top_) - margin;
        const float most = static_cast<float>(top_ + pixels_.Height()) + margin;
        found_.clear();
        std::fill(first_.begin(), first_.end(), 0);
        for (const std::vector<Stroke>& list : lists)
            for (const Stroke& stroke : list) {
                if (std::max(stroke.y0, stroke.y1) < least || std::min(stroke.y0, stroke.y1) > most)
                    continue;
                found_.push_back(&stroke);
                first_[static_cast<std::size_t>(stroke.layer) + 1]++;
            }
        for (std::size_t layer = 1; layer < first_.size(); layer++)
            first_[layer] += first_[layer - 1];
        sorted_.resize(found_.size());
        next_ = first_;
        for (const Stroke* const stroke : found_)
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
    std::vector<const Stroke*> found_;
    std::vector<const Stroke*> sorted_;
    std::vector<std::size_t> first_;  // of each layer in `sorted_`
    std::vector<std::size_t> next_;
};

SpaceRasterizer::SpaceRasterizer(int32 threads) : team_(HelpersFor(threads)) {}

SpaceRasterizer::~SpaceRasterizer() = default;

void SpaceRasterizer::Draw(const SpaceItems& items, Pixel sky, double width, PixelBuffer* into) {
    const int32 count = (into->Height() + kRowsOfBand - 1) / kRowsOfBand;
    bands_.resize(static_cast<std::size_t>(count));
    WorkInParts(&team_, count, [&](int32 i) {
        std::unique_ptr<Band>& band = bands_[static_cast<std::size_t>(i)];
        const int32 top = i * kRowsOfBand;
        const int32 height = std::min(kRowsOfBand, into->Height() - top);
        if (band == nullptr || !band->IsAt(top, into->Width(), height))
            band = std::make_unique<Band>(top, into->Width(), height);
        band->Draw(items, sky, width);
        band->CopyTo(into);
    });
}
