#include "Tests/Displays/TestDocument.h"

#include <algorithm>

const ProgramResources& TestResources() {
    static const ProgramResources resources;
    return resources;
}

const DisplayContext& TestContext() {
    static const ResourceTexts texts(&TestResources());
    static const MenuArchives menus(texts, TestResources().MassUnits(),
                                    TestResources().DistanceUnits(), TestResources().SpeedUnits(),
                                    TestResources().TimeUnits());
    static const DisplayContext context{&texts,
                                        &TestResources().MassUnits(),
                                        &TestResources().DistanceUnits(),
                                        &TestResources().SpeedUnits(),
                                        &TestResources().TimeUnits(),
                                        &menus};
    return context;
}

TestDocument::TestDocument() {
    static_cast<void>(document.Load(PlanetRecord()).Failed());
}

TestDocument::~TestDocument() {
    control.Pause();
    while (!displays_.empty())
        Remove(displays_.back());
    if (owner->Lock()) owner->Quit();
}

void TestDocument::Add(Display* display) {
    control.Rest();
    displays_.push_back(display);
    document.AddConsumer(display);
    control.UnRest();
}

void TestDocument::Remove(Display* display) {
    control.Rest();
    std::erase(displays_, display);
    document.RemoveConsumer(display);
    if (display->Lock()) display->Quit();
    control.UnRest();
}

ProjectionDisplay* TestDocument::AddProjection() {
    auto* const display =
        new ProjectionDisplay({100, 100, 500, 400}, "test", portal, writeOk, owner, TestContext());
    if (display->Init("Tests") != 0) return nullptr;
    Add(display);
    display->Show();
    return display;
}

void TestDocument::Run(int64 steps) {
    StepRunner(&document).Run(&control, steps);
}
