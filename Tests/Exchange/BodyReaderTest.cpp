#include "Exchange/BodyReader.h"

#include <gtest/gtest.h>

#include <cmath>

#include "Exchange/CsvExport.h"
#include "Exchange/ExampleModel.h"
#include "Exchange/ExampleWriter.h"
#include "Model/Epochs/Epoch.h"
#include "Model/Systems/Body.h"
#include "Model/Systems/CompositeSystem.h"
#include "Simulation/Document/ProgramResources.h"

namespace {

// Two bodies as a service prints them, one with labels in km and s, one with commas in au and days.
const std::string kEarth = R"(
 Revised: July 31, 2013                  Earth                              399
  GM, km^3/s^2            = 398600.435436  Inner core rad = 1215 km
  GM 1-sigma, km^3/s^2    =      0.0014
Target body name: Earth (399)                     {source: DE441}
Center body name: Sun (10)                        {source: DE441}
Output units    : KM-S
Reference frame : Ecliptic of J2000.0
JDTDB
   X     Y     Z
$$SOE
2451545.000000000 = A.D. 2000-Jan-01 12:00:00.0000 TDB
 X =-2.649903375682292E+07 Y = 1.446972967925493E+08 Z =-6.112600000000000E+02
 VX=-2.979426007043741E+01 VY=-5.469294939770602E+00 VZ= 1.817900000000000E-04
2451546.000000000 = A.D. 2000-Jan-02 12:00:00.0000 TDB
 X = 1.0 Y = 1.0 Z = 1.0
 VX= 1.0 VY= 1.0 VZ= 1.0
$$EOE
)";
const std::string kCeres = R"(
Target body name: 1 Ceres                         {source: JPL#48}
Center body name: Sun (10)                        {source: DE441}
Output units    : AU-D
Reference frame : Ecliptic of J2000.0
            JDTDB,            Calendar Date (TDB),  X,  Y,  Z,  VX,  VY,  VZ,
$$SOE
2451545.000000000, A.D. 2000-Jan-01 12:00:00.0000, -2.0, 1.5, 0.5, -0.005, -0.01, 0.001,
$$EOE
)";
const std::string kOrbit = R"(
Target body name: Mars (499)
Center body name: Sun (10)
Keplerian GM    : 1.3271248287031293E+11 km^3/s^2
Output units    : KM-S, deg, Julian Day Number (Tp)
Reference frame : Ecliptic of J2000.0
JDTDB
$$SOE
2451545.000000000 = A.D. 2000-Jan-01 12:00:00.0000 TDB
 EC= 9.331510145825598E-02 QR= 2.066445270070570E+08 IN= 1.849876609221010E+00
 OM= 4.956199566273333E+01 W = 2.865373577554387E+02 Tp=  2451508.0
 N = 6.065013122498700E-06 MA= 1.935647997591667E+01 TA= 2.333320047803738E+01
$$EOE
)";

class BodyReaderTest : public testing::Test {
protected:
    ReadBodies Read(const std::string& text) {
        ReadBodies bodies;
        const auto fault = BodyReader(resources_).Read(text, &bodies);
        EXPECT_FALSE(fault.has_value()) << fault->Text(resources_);
        return bodies;
    }
    std::string Fault(const std::string& text) {
        ReadBodies bodies;
        const auto fault = BodyReader(resources_).Read(text, &bodies);
        return fault ? fault->Text(resources_) : "nothing";
    }
    std::unique_ptr<Epoch> Build(const std::string& text) {
        ExampleModel model(resources_);
        std::unique_ptr<Epoch> epoch = model.Build(Read(text).text);
        EXPECT_NE(epoch, nullptr) << model.Reason();
        return epoch;
    }

    ProgramResources resources_;
};

std::string Replaced(std::string text, const std::string& what, const std::string& by) {
    text.replace(text.find(what), what.size(), by);
    return text;
}

TEST_F(BodyReaderTest, WhatIsWrittenIsReadBackToTheSameBits) {
    Epoch epoch;
    epoch.SetTime(1.0 / 3.0);
    auto* const group = new CompositeSystem("Pair", 7, {1, 2, 3, 255}, {4, 5, 6, 255}, kOriginID);
    for (int64 id : {3, 5}) {
        auto* const body =
            new Body("A \"quoted\", # name", id, {1, 2, 3, 255}, {9, 8, 7, 255}, kOriginID);
        body->SetM(1e20 / 3.0);
        body->SetRadius(0.1);
        body->SetPosition({1.0 / 7.0, static_cast<double>(id), -1e-300});
        body->SetVelocity({-0.0, 1e300, 2.0 / 3.0});
        body->SetDiscOn(id == 3);
        body->SetPositionUval(1000.0);
        group->AddChild(body);
    }
    epoch.RootSystem()->AddChild(group);
    auto* const moon = new Body("Moon", 1, {1, 1, 1, 255}, {1, 1, 1, 255}, 7);
    moon->SetPosition({5.0, 6.0, 7.0});
    epoch.RootSystem()->AddChild(moon);

    const std::string text = ExampleWriter(resources_).Write(epoch);
    const std::unique_ptr<Epoch> read = Build(text);
    ASSERT_NE(read, nullptr);
    EXPECT_EQ(read->Time(), epoch.Time());
    EXPECT_EQ(ExampleWriter(resources_).Write(*read), text);
    const MassSystem* const pair = read->RootSystem()->ChildAt(1);
    ASSERT_EQ(pair->CountChildren(), 2);
    EXPECT_EQ(pair->ChildAt(0)->Name(), "A \"quoted\", # name");
    EXPECT_EQ(pair->ChildAt(0)->M(), 1e20 / 3.0);
    EXPECT_EQ(pair->ChildAt(1)->Position(), group->ChildAt(1)->Position());
    EXPECT_EQ(pair->ChildAt(1)->Velocity(), group->ChildAt(1)->Velocity());
    EXPECT_EQ(pair->ChildAt(0)->DiscColor(), (rgb_color{9, 8, 7, 255}));
    EXPECT_TRUE(pair->ChildAt(0)->DiscOn());
    EXPECT_FALSE(pair->ChildAt(1)->DiscOn());
    EXPECT_EQ(pair->ChildAt(1)->PositionUval(), 1000.0);
    // It stands above what it is shown relative to.
    EXPECT_EQ(read->RootSystem()->ChildAt(0)->RelativeTo(), pair->ID());

    // As values, too, without the group.
    const std::string csv = BodiesAsCsv(epoch);
    EXPECT_EQ(BodiesAsCsv(*Build(csv)), csv);
}

TEST_F(BodyReaderTest, ColumnsAreReadInTheirUnits) {
    const ReadBodies bodies = Read(
        "# a remark\n"
        "vx [km/s], vy [km/s], vz [AU/d], name, mass [kg], x [au], y [km], z [m]\n"
        "1, 2, 1, \"Hal\"\"ley\", 1e10, 1, -3, 4\n");
    ASSERT_EQ(bodies.text.systems.size(), 1u);
    const ExampleSystem& body = bodies.text.systems[0];
    EXPECT_EQ(body.name, "Hal\"ley");
    EXPECT_EQ(body.line, 3);
    EXPECT_EQ(body.mass, 1e10 * 6.672e-11);
    EXPECT_EQ(*body.position, (ThreeVector{149'597'870'700.0, -3000.0, 4.0}));
    EXPECT_EQ(*body.velocity, (ThreeVector{1000.0, 2000.0, 149'597'870'700.0 / 86400.0}));
    EXPECT_TRUE(bodies.usesKilograms);
    EXPECT_TRUE(bodies.massless.empty());

    // Of a run the first moment; masses that are not told are left open.
    ReadBodies run = Read(
        "t [s],name,x [m],y [m],z [m],vx [m/s],vy [m/s],vz [m/s]\n"
        "5,A,1,2,3,4,5,6\n5,B,2,2,3,4,5,6\n6,A,7,2,3,4,5,6\n");
    ASSERT_EQ(run.text.systems.size(), 2u);
    EXPECT_EQ(run.massless.size(), 2u);
    EXPECT_FALSE(run.usesKilograms);
    run.SetMissingMasses(3.0);
    EXPECT_EQ(run.text.systems[1].mass, 3.0);
}

TEST_F(BodyReaderTest, TablesOfAnEphemerisAreReadWithTheirGM) {
    const ReadBodies bodies = Read(kEarth + kCeres);
    ASSERT_EQ(bodies.text.systems.size(), 2u);
    EXPECT_EQ(bodies.date, 2451545.0);
    const ExampleSystem& earth = bodies.text.systems[0];
    EXPECT_EQ(earth.name, "Earth");
    EXPECT_EQ(earth.mass, 398600.435436 * 1e9);
    EXPECT_EQ(earth.position->x, -2.649903375682292E+07 * 1000.0);
    EXPECT_EQ(earth.velocity->z, 1.817900000000000E-04 * 1000.0);
    const ExampleSystem& ceres = bodies.text.systems[1];
    EXPECT_EQ(ceres.name, "1 Ceres");
    EXPECT_EQ(ceres.position->x, -2.0 * 149'597'870'700.0);
    EXPECT_DOUBLE_EQ(ceres.velocity->y, -0.01 * 149'597'870'700.0 / 86400.0);
    EXPECT_EQ(bodies.massless, (std::vector<std::size_t>{1}));

    // The radius on the orbit follows from the true anomaly, which the reader does not use.
    const ExampleSystem mars = Read(kOrbit).text.systems.at(0);
    const double e = 9.331510145825598E-02;
    const double nu = 2.333320047803738E+01 * std::acos(-1.0) / 180.0;
    const double radius = 2.066445270070570E+11 * (1.0 + e) / (1.0 + e * std::cos(nu));
    EXPECT_NEAR(Length(*mars.position) / radius, 1.0, 1e-6);
}

// One value and its uncertainty in a line, and below the table what its columns are.
TEST_F(BodyReaderTest, TablesAreReadAsTheyArePrinted) {
    const std::string neptune =
        Replaced(Replaced(Replaced(kEarth, "Earth (399)", "Neptune (899)"),
                          "  GM, km^3/s^2            = 398600.435436  Inner core rad = 1215 km\n",
                          " GM (km^3/s^2) = 6835099.97      GM 1-sigma (km^3/s^2)  = +-10\n"),
                 "  GM 1-sigma, km^3/s^2    =      0.0014\n", "") +
        "  JDTDB    Julian Day Number, Barycentric Dynamical Time\n";
    const ReadBodies bodies = Read(neptune + kEarth);
    ASSERT_EQ(bodies.text.systems.size(), 2u);
    EXPECT_EQ(bodies.text.systems[0].mass, 6835099.97 * 1e9);
    EXPECT_EQ(bodies.text.systems[1].mass, 398600.435436 * 1e9);
}

TEST_F(BodyReaderTest, WhatCannotBeReadIsRefusedWithLineAndReason) {
    const std::string head = "name,x [m],y [m],z [m],vx [m/s],vy [m/s],vz [m/s]\n";
    const std::pair<std::string, std::string> faults[] = {
        {std::string("body \"A\"\nmass\0 1 kg", 20), "line 2: not a text in UTF-8"},
        {"\xff\xfe"
         "b,\0",
         "line 1: not a text in UTF-8"},
        {"body \"A\"\nname \"\xc3\"", "line 2: not a text in UTF-8"},
        {"body \"A\"\r\nmass 1 kg\nradius 1 m\r\n", "line 2: line ends are mixed"},
        {"body \"A\"\rmass 1 kg", "line 1: line ends are mixed"},
        {"name,x,y [m]\n", "line 1: column 2: a unit is missing"},
        {"name,x [s],y [m]\n", "line 1: column 2: no such unit here: \"s\""},
        {"name,weight [kg]\n", "line 1: column 2: no such quantity: \"weight\""},
        {"name,x [m],x [m]\n", "line 1: column 3: \"x\" is there twice"},
        {"name,x [m],y [m]\n", "line 1: there is no column \"z\""},
        {head + "A,1,2,3,4,5\n", "line 2: 6 values in a table of 7 columns"},
        {head + "A,1,2,3,4,5,6\nB,1,2,1e999,4,5,6\n", "line 3: column 4: not a number: \"1e999\""},
        {head + ",1,2,3,4,5,6\n", "line 2: column 1: \"name\" is missing"},
        {Replaced(kEarth, "$$EOE", ""), "line 18: the table has no end ($$EOE)"},
        {Replaced(kEarth, "KM-S", "MI-S"), "line 7: no such unit here: \"MI-S\""},
        {Replaced(kEarth, "JDTDB", "JDUT"),
         "line 11: the head of the table does not say \"JDTDB\""},
        {Replaced(kEarth, " VZ=", " Q="), "line 18: \"VZ\" is missing"},
        {kEarth + Replaced(kCeres, "Sun (10)", "Solar System Barycenter (0)"),
         "line 25: \"Center body name\" differs from that of the table before"},
        {kEarth + Replaced(kCeres, "Ecliptic of J2000.0", "ICRF"),
         "line 25: \"Reference frame\" differs from that of the table before"},
        {kEarth + Replaced(kCeres, "2451545", "2451546"),
         "line 27: \"JDTDB\" differs from that of the table before"},
        {Replaced(kOrbit, "Keplerian GM", "Something"),
         "line 13: the head of the table does not say \"Keplerian GM\""},
    };
    for (const auto& [text, fault] : faults)
        EXPECT_EQ(Fault(text), fault) << text;

    std::string many = head;
    for (std::size_t i = 0; i < 1'000'000; i++)
        many += "A,1,2,3,4,5,6\n";
    EXPECT_EQ(Fault(many), "line 100002: more than 100000 bodies");
}

}  // namespace
