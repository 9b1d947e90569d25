#include "Displays/Projection/PictureTexts.h"

#include <gtest/gtest.h>

#include "Simulation/Document/ProgramResources.h"
#include "Tests/Displays/TestSky.h"

namespace {

bool Overlap(const BRect& a, const BRect& b) {
    return a.left < b.right && b.left < a.right && a.top < b.bottom && b.top < a.bottom;
}

// Bodies with names, in the order in which they get them.
struct NamedSky : TestSky {
    void Name(const char* name, ThreeVector place) {
        Add(2, place);
        labels.bodies.push_back({static_cast<int64>(labels.bodies.size()), name});
        Start();
    }
    // The names that are shown, each with a comma.
    std::string Names(std::vector<OverlayItem> texts = {}, int32 chosen = -1) {
        const std::size_t before = texts.size();
        if (chosen >= 0) AddChosenName(view, labels, chosen, &texts);
        AddNames(view, labels, chosen, &texts);
        std::string names;
        for (std::size_t i = 0; i < texts.size(); i++) {
            if (i >= before) names += texts[i].text + ',';
            for (std::size_t j = 0; j < i; j++)
                EXPECT_FALSE(Overlap(view.FrameOf(texts[i]), view.FrameOf(texts[j])))
                    << texts[i].text << " covers " << texts[j].text;
        }
        frames.clear();
        for (const OverlayItem& text : texts)
            frames.push_back(view.FrameOf(text));
        return names;
    }

    BodyLabels labels;
    std::vector<BRect> frames;  // of the texts at the last call of Names
};

}  // namespace

TEST(PictureTexts, NamesAreAsWideAsTheyAreAndNotAsTheirBytes) {
    NamedSky narrow;
    narrow.Name("iiiiiiiiii", {-90, 0, 0});
    narrow.Name("Сатурн", {-50, 0, 0});
    narrow.Name("Moon", {40, 0, 0});
    EXPECT_EQ(narrow.Names(), "iiiiiiiiii,Сатурн,Moon,");

    NamedSky wide;
    wide.Name("WWWWWWWWWW", {-90, 0, 0});
    wide.Name("Moon", {-4, 0, 0});
    EXPECT_EQ(wide.Names(), "WWWWWWWWWW,");
}

TEST(PictureTexts, NamesLeaveRoomForTheTimeAndTheBar) {
    const ProgramResources resources;
    const std::vector<OverlayItem> texts{
        MakeTimeText("t = ", 0.0, 1.0, resources.TimeUnits()),
        MakeScaleBar(1e-9, 1.4959787066e11, resources.DistanceUnits())};
    NamedSky sky;
    sky.Name("Top", {-80, 75, 0});
    sky.Name("Bottom", {-60, -95, 0});
    sky.Name("Middle", {0, 0, 0});
    sky.Name("Edge", {95, 0, 0});
    EXPECT_EQ(sky.Names(), "Top,Bottom,Middle,Edge,");
    EXPECT_LE(sky.frames[3].right, sky.view.Bounds().right);
    EXPECT_EQ(sky.Names(texts), "Middle,Edge,");

    // The one that the mouse points at goes to the other side instead, and is not cut off.
    EXPECT_EQ(sky.Names(texts, 0), "Top,Middle,Edge,");
    EXPECT_EQ(sky.Names(texts, 3), "Edge,Middle,");
    EXPECT_LE(sky.frames[2].right, sky.view.Bounds().right);
}

TEST(PictureTexts, NumbersCanBeRead) {
    const ProgramResources resources;
    const auto bar = [&](double scale, double unit) {
        return MakeScaleBar(scale, unit, resources.DistanceUnits()).text;
    };
    EXPECT_EQ(bar(150e-9, 1000.0), "1 000 000 km");
    EXPECT_EQ(bar(1e-9, 1.4959787066e11), "1 AU");
    EXPECT_EQ(bar(1e-27, 1.4959787066e11), "1e18 AU");
    const auto time = [&](double years) {
        return MakeTimeText("", years, 1.0, resources.TimeUnits()).text;
    };
    EXPECT_EQ(time(12.5), "12.500 s");
    EXPECT_EQ(time(0.0125), "0.01250 s");
    EXPECT_EQ(time(5e20), "5e20 s");
}
