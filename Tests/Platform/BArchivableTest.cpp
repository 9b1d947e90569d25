#include "BArchivable.h"

#include <gtest/gtest.h>

#include <memory>

#include "BMessage.h"

namespace {

class Lamp : public BArchivable {
public:
    Lamp() = default;
    explicit Lamp(BMessage* archive) : BArchivable(archive) {
        if (archive->FindInt32("watts", &watts) != B_OK) watts = 40;
    }
    static BArchivable* Instantiate(BMessage* archive) {
        return validate_instantiation(archive, "Lamp") ? new Lamp(archive) : nullptr;
    }
    status_t Archive(BMessage* into, bool deep) const override {
        status_t status = BArchivable::Archive(into, deep);
        if (status == B_OK) status = into->AddString("class", "Lamp");
        if (status == B_OK) status = into->AddInt32("watts", watts);
        return status;
    }

    int32 watts = 0;
};

const ArchivableClass kLamp("Lamp", Lamp::Instantiate);
// Entered under a name that its own check refuses.
const ArchivableClass kImpostor("Impostor", [](BMessage* archive) -> BArchivable* {
    return validate_instantiation(archive, "Somebody else") ? new Lamp(archive) : nullptr;
});

TEST(BArchivable, AnObjectComesBackFromItsRecord) {
    Lamp lamp;
    lamp.watts = 75;
    BMessage archive;
    ASSERT_EQ(lamp.Archive(&archive, true), B_OK);
    std::unique_ptr<BArchivable> copy(instantiate_object(&archive));
    const auto* other = dynamic_cast<Lamp*>(copy.get());
    ASSERT_NE(other, nullptr);
    EXPECT_EQ(other->watts, 75);
}

TEST(BArchivable, OnlyTheFirstClassNameIsMade) {
    BMessage archive;
    ASSERT_EQ(archive.AddString("class", "Chandelier"), B_OK);
    ASSERT_EQ(archive.AddString("class", "Lamp"), B_OK);
    EXPECT_EQ(instantiate_object(&archive), nullptr);
    ASSERT_EQ(archive.RemoveData("class", 0), B_OK);
    std::unique_ptr<BArchivable> lamp(instantiate_object(&archive));
    EXPECT_NE(lamp, nullptr);
}

TEST(BArchivable, WhatNamesNoWillingClassIsNotMade) {
    EXPECT_EQ(instantiate_object(nullptr), nullptr);
    BMessage archive;
    EXPECT_EQ(instantiate_object(&archive), nullptr);
    ASSERT_EQ(archive.AddInt32("class", 1), B_OK);
    EXPECT_EQ(instantiate_object(&archive), nullptr);
    BMessage impostor;
    ASSERT_EQ(impostor.AddString("class", "Impostor"), B_OK);
    EXPECT_EQ(instantiate_object(&impostor), nullptr);
}

TEST(BArchivable, ValidationLooksAtEveryClassName) {
    BMessage archive;
    EXPECT_FALSE(validate_instantiation(&archive, "Lamp"));
    ASSERT_EQ(archive.AddString("class", "Chandelier"), B_OK);
    ASSERT_EQ(archive.AddString("class", "Lamp"), B_OK);
    EXPECT_TRUE(validate_instantiation(&archive, "Lamp"));
    EXPECT_TRUE(validate_instantiation(&archive, "Chandelier"));
    EXPECT_FALSE(validate_instantiation(&archive, "Lam"));
}

}  // namespace
