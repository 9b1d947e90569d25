// Bodies as text: from the menu to the clipboard and back, and from files.
#include "Simulation/BodyExchange.h"

#include <algorithm>
#include <sstream>

#include "Exchange/CsvExport.h"
#include "Platform/Interface/Handles/BClipboard.h"
#include "Platform/Interface/Handles/SaveChoice.h"
#include "Platform/Storage/entry_ref.h"
#include "Simulation/Document/RunTarget.h"
#include "Simulation/MissingMassWindow.h"
#include "Tests/Platform/WaitUntil.h"
#include "Tests/Simulation/SettingsFixture.h"

namespace {

class BodyExchangeTest : public SettingsFixture {
protected:
    void Import(const std::vector<std::string>& paths) {
        BMessage files(BodyExchange::kImport);
        for (const std::string& path : paths) {
            entry_ref file;
            ASSERT_EQ(get_ref_for_path(path.c_str(), &file), B_OK);
            files.AddRef("refs", &file);
        }
        Send(files);
    }
    void Export(uint32 what, const std::string& name) {
        BMessage place(what);
        SaveChoice choice;
        ASSERT_EQ(get_ref_for_path(host.folder.Path().c_str(), &choice.directory), B_OK);
        choice.name = name;
        choice.AddTo(&place);
        Send(place);
    }
    void ExpectSaid(const std::vector<std::string>& pieces) {
        for (const std::string& piece : pieces)
            EXPECT_NE(simulation.Message().find(piece), std::string::npos)
                << piece << ": " << simulation.Message();
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
    Import({host.folder.Write("bodies.csv", bodies)});
    Export(BodyExchange::kExport, "out.csv");
    EXPECT_NE(host.folder.Read("out.csv").find(bodies.substr(bodies.find("\"Sun\""))),
              std::string::npos)
        << host.folder.Read("out.csv");
    EXPECT_NE(simulation.Message().find("out.csv"), std::string::npos);

    Import({host.folder.Write("bad.csv", bodies + "\"X\",1")});
    EXPECT_NE(simulation.Message().find("line 4"), std::string::npos) << simulation.Message();
}

// What is to be said of each file stands there, and the masses that none tells are asked for.
TEST_F(BodyExchangeTest, OfSeveralFilesAllIsSaidAndMissingMassesAreAskedFor) {
    const std::string head = "name,x [m],y [m],z [m],vx [m/s],vy [m/s],vz [m/s]\n";
    const std::string heavy =
        host.folder.Write("heavy.csv",
                          "name,gm [m3/s2],x [m],y [m],z [m],vx [m/s],vy [m/s],vz [m/s]\n"
                          "Heavy,7,1e9,0,0,0,0,0\n");
    const std::string bad = host.folder.Write("bad.csv", head + "X,1\n");
    const std::string light =
        host.folder.Write("light.csv", head + "P,2e9,0,0,0,0,0\nQ,3e9,0,0,0,0,0\n");
    const std::string more = host.folder.Write("more.csv", head + "R,4e9,0,0,0,0,0\n");
    const int32 before = CountEdits();
    Import({bad, heavy, light, host.folder.Path(), more});
    ExpectSaid({bad + ": line 2", "Bodies added: 1", host.folder.Path() + ": Is a directory"});
    // The new simulation has given up its own.
    EXPECT_EQ(simulation.CountBodies(), 1u);

    BMessage given(MissingMassWindow::kGiven);
    given.AddDouble(MissingMassWindow::kMass, 5.0);
    Send(given);
    Send(BMessage(MissingMassWindow::kClosed));
    EXPECT_EQ(simulation.CountBodies(), 4u);
    ExpectSaid({bad + ": line 2", "Bodies added: 1", "Bodies added: 2"});
    const auto massOf = [this](const char* name) {
        return Ask([=](const AbEpoch& epoch) {
            const MassSystem* const systems = epoch.RootSystem();
            for (int32 i = 0; i < systems->CountChildren(); i++)
                if (systems->ChildAt(i)->Name() == std::string(name))
                    return systems->ChildAt(i)->M();
            return -1.0;
        });
    };
    EXPECT_EQ(massOf("Heavy"), 7.0);
    EXPECT_EQ(massOf("P"), 5.0);
    EXPECT_EQ(massOf("R"), 5.0);
    EXPECT_EQ(CountEdits(), before + 3);
    // A late answer is to nothing, and one that is not given leaves all as it is.
    Send(given);
    Import({host.folder.Write("other.csv", head + "S,5e9,0,0,0,0,0\n")});
    Send(BMessage(MissingMassWindow::kClosed));
    Send(given);
    EXPECT_EQ(simulation.CountBodies(), 4u);
}

// The first and the last row of a body are the start and the end of the run, to the bit.
TEST_F(BodyExchangeTest, AKeptRunIsExportedSampleBySample) {
    Export(BodyExchange::kExportRun, "none.csv");
    ExpectSaid({"none.csv: no run is kept"});
    EXPECT_EQ(std::ranges::count(host.folder.Names(), "none.csv"), 0);

    const auto rowOf = [this] {
        return Ask([](const AbEpoch& epoch) {
            const MassSystem& body = *epoch.SystemFromID(1);
            std::string row = "1," + QuotedCsvName(body.Name());
            AppendCsvNumber(&row, epoch.Time());
            for (const ThreeVector& vector : {body.Position(), body.Velocity()})
                for (const double component : {vector.x, vector.y, vector.z})
                    AppendCsvNumber(&row, component);
            return row;
        });
    };
    portal->GetCalculator()->SetPace(Pace());
    RunTarget target;
    target.time = 1e7;
    Send(target.ToMessage());
    ASSERT_TRUE(WaitUntil([this] { return simulation.GoLabel() == "Go"; }));
    Settle();
    const std::string end = rowOf();
    EXPECT_GT(Ask([](const AbEpoch& epoch) { return epoch.Time(); }), 9e6);
    Export(BodyExchange::kExportRun, "run.csv");
    ExpectSaid({"run.csv"});
    std::istringstream text(host.folder.Read("run.csv"));
    std::vector<std::string> rows;
    for (std::string row; std::getline(text, row);)
        if (row.starts_with("1,") || rows.empty()) rows.push_back(row);
    ASSERT_GT(rows.size(), 3u);
    EXPECT_EQ(rows[0], "id,name,time [s],x [m],y [m],z [m],vx [m/s],vy [m/s],vz [m/s]");
    EXPECT_TRUE(rows[1].starts_with(std::string("1,\"BoskVeld\",0,"))) << rows[1];
    EXPECT_EQ(rows.back(), end);
}

}  // namespace
