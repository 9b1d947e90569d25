// Bodies as text: from the menu to the clipboard and back, and from files.
#include "Simulation/BodyExchange.h"

#include "Platform/Interface/Handles/BClipboard.h"
#include "Platform/Interface/Handles/SaveChoice.h"
#include "Platform/Storage/entry_ref.h"
#include "Tests/Simulation/SettingsFixture.h"

namespace {

class BodyExchangeTest : public SettingsFixture {
protected:
    void Import(const std::string& path) {
        BMessage files(BodyExchange::kImport);
        entry_ref file;
        ASSERT_EQ(get_ref_for_path(path.c_str(), &file), B_OK);
        files.AddRef("refs", &file);
        Send(files);
    }
};

TEST_F(BodyExchangeTest, BodiesArePastedAsOneStepAndComeBackAsText) {
    BClipboard::SetText(
        "body \"Moon\"\nmass 5 m3/s2\nat 1 2 3 km\nrelative \"Earth\"\nbody \"Earth\"\nat 9 9 9 "
        "km\n");
    Send(BMessage(BodyExchange::kPasteBodies));
    EXPECT_EQ(simulation.CountBodies(), 4u);
    EXPECT_NE(simulation.Message().find("2"), std::string::npos) << simulation.Message();
    EXPECT_EQ(Of(2, &MassSystem::Name), "Moon");
    EXPECT_EQ(Of(2, &MassSystem::RelativeTo), 3);

    Send(BMessage(BodyExchange::kCopyAsText));
    const std::string text = BClipboard::Text();
    EXPECT_NE(text.find("\nbody \"Moon\"\n    mass 5 m3/s2\n    at 1000 2000 3000 m\n"),
              std::string::npos)
        << text;
    Undo();
    EXPECT_EQ(simulation.CountBodies(), 2u);

    // What is no text of bodies is told, and changes nothing.
    BClipboard::SetText("body \"A\"\nweight 1 kg");
    Send(BMessage(BodyExchange::kPasteBodies));
    EXPECT_EQ(simulation.CountBodies(), 2u);
    EXPECT_NE(simulation.Message().find("line 2: no such statement: \"weight\""), std::string::npos)
        << simulation.Message();
    EXPECT_EQ(CountEdits(), 0);
}

TEST_F(BodyExchangeTest, AFileOfBodiesIsImportedAndExportedToTheSameBits) {
    const std::string bodies =
        "name,gm [m3/s2],radius [m],x [m],y [m],z [m],vx [m/s],vy [m/s],vz [m/s]\n"
        "\"Sun\",1.5e+20,1,0.1,0,0,0,0,0\n"
        "\"Probe\",0,1,0.3,0,0,0,1e-05,0\n";
    Import(host.folder.Write("bodies.csv", bodies));
    BMessage place(BodyExchange::kExport);
    SaveChoice choice;
    ASSERT_EQ(get_ref_for_path(host.folder.Path().c_str(), &choice.directory), B_OK);
    choice.name = "out.csv";
    choice.AddTo(&place);
    Send(place);
    EXPECT_NE(host.folder.Read("out.csv").find(bodies.substr(bodies.find("\"Sun\""))),
              std::string::npos)
        << host.folder.Read("out.csv");
    EXPECT_NE(simulation.Message().find("out.csv"), std::string::npos);

    Import(host.folder.Write("bad.csv", bodies + "\"X\",1"));
    EXPECT_NE(simulation.Message().find("line 4"), std::string::npos) << simulation.Message();
}

}  // namespace
