// Tables of fields: what they write, read, refuse and tell.
#include <gtest/gtest.h>

#include <cmath>

#include "Platform/Application/FieldTable.h"

namespace {

double gPreferred = 3.0;

struct Place {
    double x = 0.0;
    double y = 0.0;
};

struct Thing {
    std::string name;
    double unit = 1.0;
    int32 count = 7;
    bool isShown = false;
    Place place;
};

bool IsUnit(double unit) {
    return unit > 0.0;
}

constexpr FieldTable kFields{
    Field<&Thing::name>{.name = "Name",
                        .meaning = "what it is called",
                        .missing = "Nobody",
                        .isWritten = [](const Thing& thing) { return !thing.name.empty(); }},
    Field<&Thing::unit>{"Unit", "m", &gPreferred, IsUnit},
    Field<&Thing::place, &Place::x>{.name = "Place", .meaning = "x, y", .missing = 0.0},
    Field<&Thing::count>{"Count", "of things"},
    Field<&Thing::place, &Place::y>{.name = "Place", .missing = 0.0, .item = 1},
    Field<&Thing::isShown>{.name = "Shown", .missing = true, .whenMissing = "as before"},
};

std::string NamesOf(const BMessage& record) {
    std::string names;
    std::string name;
    type_code type = 0;
    for (int32 i = 0; record.GetInfo(B_ANY_TYPE, i, &name, &type) == B_OK; i++)
        names += name + ' ';
    return names;
}

TEST(FieldTable, WritesInItsOrderUntilAnAddFails) {
    const Thing thing{"Stone", 2.0, 5, true, {1.5, -2.5}};
    BMessage record;
    ASSERT_EQ(kFields.Write(thing, &record), B_OK);
    EXPECT_EQ(NamesOf(record), "Name Unit Place Count Shown ");
    double y = 0.0;
    EXPECT_EQ(record.FindDouble("Place", 1, &y), B_OK);
    EXPECT_EQ(y, -2.5);

    BMessage nameless;
    ASSERT_EQ(kFields.Write(Thing(), &nameless), B_OK);
    EXPECT_EQ(NamesOf(nameless), "Unit Place Count Shown ");

    BMessage taken;
    taken.AddString("Count", "five");
    EXPECT_EQ(kFields.Write(thing, &taken), B_BAD_TYPE);
    EXPECT_EQ(NamesOf(taken), "Count Name Unit Place ");
}

TEST(FieldTable, ReadsWhatIsThereAndAccepted) {
    const Thing written{"Stone", 2.0, 5, false, {1.5, -2.5}};
    BMessage record;
    ASSERT_EQ(kFields.Write(written, &record), B_OK);
    Thing read;
    EXPECT_EQ(kFields.Read(record, &read), B_OK);
    EXPECT_EQ(read.name, "Stone");
    EXPECT_EQ(read.unit, 2.0);
    EXPECT_EQ(read.count, 5);
    EXPECT_FALSE(read.isShown);
    EXPECT_EQ(read.place.x, 1.5);
    EXPECT_EQ(read.place.y, -2.5);

    record.ReplaceDouble("Unit", -1.0);
    record.RemoveName("Shown");
    EXPECT_EQ(kFields.Read(record, &read), B_BAD_DATA);
    EXPECT_EQ(read.unit, gPreferred);
    EXPECT_TRUE(read.isShown);

    // What has no value of its own for that stays as it was, and a fallback is bound, too.
    gPreferred = -3.0;
    Thing kept{"Kept", 9.0, 11, false, {1.0, 1.0}};
    EXPECT_EQ(kFields.Read(BMessage(), &kept), B_NAME_NOT_FOUND);
    gPreferred = 3.0;
    EXPECT_EQ(kept.name, "Nobody");
    EXPECT_EQ(kept.unit, 9.0);
    EXPECT_EQ(kept.count, 11);
    EXPECT_EQ(kept.place.y, 0.0);
}

TEST(FieldTable, DescribesEachFieldOnce) {
    FieldDescriptions fields;
    kFields.Describe(&fields);
    std::string told;
    for (const FieldDescription& field : fields)
        told +=
            field.name + '/' + field.count + '/' + field.whenMissing + '/' + field.meaning + '\n';
    EXPECT_EQ(told,
              "Name/0, 1/\"Nobody\"/what it is called\n"
              "Unit/1/3/m\n"
              "Place/2/0/x, y\n"
              "Count/1/7/of things\n"
              "Shown/1/as before/\n");
    EXPECT_EQ(fields[2].type, B_DOUBLE_TYPE);
}

}  // namespace
