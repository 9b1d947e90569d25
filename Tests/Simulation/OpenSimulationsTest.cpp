// Windows of one document that is opened more than once.
#include "Simulation/OpenSimulations.h"

#include <gtest/gtest.h>

#include "Interface Widgets/ProgramMessages.h"
#include "Platform/Interface/Handles/BApplication.h"
#include "Simulation/Epochs/EpochWindow.h"
#include "Tests/Simulation/Document/SampleDocument.h"
#include "Tests/Simulation/TestSimulation.h"

namespace {

constexpr BRect kFrame{40.0f, 40.0f, 240.0f, 240.0f};
constexpr BPoint kCorner{100.0f, 100.0f};

BPoint CornerOf(const BWindow& window) {
    return {window.Frame().left, window.Frame().top};
}

EpochWindow* EpochsOf(const TestSimulation& simulation) {
    for (int32 i = 0; i < BApplication::CountWindows(); i++)
        if (auto* const epochs = dynamic_cast<EpochWindow*>(BApplication::WindowAt(i));
            epochs != nullptr && epochs->Owner() == static_cast<BLooper*>(simulation.window))
            return epochs;
    return nullptr;
}

// They read their document each on a thread of its own, and find their places in any order.
TEST(OpenSimulations, NumbersAndPlacesAreThoseOfTheOrderOfOpening) {
    OpenSimulations windows;
    const auto make = [] { return new BWindow(kFrame, "", B_DOCUMENT_WINDOW, 0); };
    BWindow* const first = make();
    BWindow* const second = make();
    BWindow* const beside = make();  // of the second
    EXPECT_EQ(windows.Enter(first, "document"), 1);
    EXPECT_EQ(windows.Enter(second, "document"), 2);
    windows.MoveTo(beside, second, kCorner);
    windows.MoveTo(second, second, {kCorner.x + 300.0f, kCorner.y});
    windows.MoveTo(first, first, {kCorner.x + 300.0f, kCorner.y});
    EXPECT_EQ(CornerOf(*first), (BPoint{400.0f, 100.0f}));
    EXPECT_EQ(CornerOf(*second), (BPoint{424.0f, 124.0f}));
    EXPECT_EQ(CornerOf(*beside), (BPoint{124.0f, 124.0f}));
    // What the user has moved is not moved again.
    beside->MoveTo(kCorner);
    windows.Place(beside, second);
    EXPECT_EQ(CornerOf(*beside), kCorner);
    // Where there is no other window of the document, another one may be in the way.
    BWindow* const other = make();
    windows.MoveTo(other, other, kCorner);
    EXPECT_EQ(CornerOf(*other), (BPoint{124.0f, 124.0f}));
    for (BWindow* const window : {first, second, beside, other}) {
        windows.Leave(window);
        if (window->Lock()) window->Quit();
    }
}

// A window that is opened beside others covers none of them while the screen has room.
TEST(OpenSimulations, AWindowIsPlacedWhereItCoversNone) {
    OpenSimulations windows;
    const auto make = [](BRect frame) { return new BWindow(frame, "", B_DOCUMENT_WINDOW, 0); };
    BWindow* const shown = make(kFrame);
    windows.MoveTo(shown, shown, {kFrame.left, kFrame.top});
    shown->Show();
    BWindow* const hidden = make({0.0f, 300.0f, 700.0f, 500.0f});
    windows.MoveTo(hidden, hidden, {0.0f, 300.0f});
    BWindow* const added = make({100.0f, 100.0f, 250.0f, 200.0f});
    windows.PlaceBeside(added, shown);
    EXPECT_GT(added->Frame().top, shown->Frame().bottom) << "below, whatever is hidden there";
    EXPECT_EQ(added->Frame().left, shown->Frame().left);
    for (BWindow* const window : {shown, hidden, added}) {
        windows.Leave(window);
        if (window->Lock()) window->Quit();
    }
}

TEST(OpenSimulations, EpochListsOfTwoWindowsAreBothSeen) {
    TestHost host;
    TestSimulation first(&host, PlanetRecord(), "Comets");
    const auto show = [](TestSimulation* simulation) {
        simulation->Send(kShowEpochs);
        simulation->Settle();
    };
    show(&first);
    EpochWindow* const list = EpochsOf(first);
    ASSERT_NE(list, nullptr);
    {
        TestSimulation second(&host, PlanetRecord(), "Comets");
        show(&second);
        EXPECT_NE(CornerOf(*EpochsOf(second)), CornerOf(*list));
    }
    // They come back where they are saved, and that is the same place for both.
    const BMessage saved = first.SavedAs("Comets");
    TestSimulation second(&host, saved, "Comets");
    second.Settle();
    EXPECT_FALSE(EpochsOf(second)->IsHidden());
    EXPECT_NE(CornerOf(*EpochsOf(second)), CornerOf(*list));
    EXPECT_EQ(second->Title(), "Comets (window 2 of this document)");
}

}  // namespace
