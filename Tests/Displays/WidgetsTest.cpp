// The widgets that displays use.
#include <gtest/gtest.h>
#include <QLineEdit>

#include "Displays/Base/DisplayContext.h"
#include "Interface Widgets/AbbrevMenuField.h"
#include "Interface Widgets/MenuArchives.h"
#include "Interface Widgets/NumberBox.h"
#include "Interface Widgets/UnitMenu.h"
#include "Simulation/Document/ProgramResources.h"
#include "Tests/Platform/Interface/TestWindow.h"

namespace {

constexpr double kAU = 1.4959787066e11;

const ProgramResources& Resources() {
    static const ProgramResources resources;
    return resources;
}

std::unique_ptr<AbbrevMenuField> DistanceField() {
    BMessage archive = MenuArchives::MakeUnitMenuFieldArchive(Resources().DistanceUnits());
    std::unique_ptr<BArchivable> object(instantiate_object(&archive));
    return std::unique_ptr<AbbrevMenuField>(dynamic_cast<AbbrevMenuField*>(object.release()));
}

}  // namespace

TEST(UnitMenu, ComesFromAnArchiveWithItsMessages) {
    const auto field = DistanceField();
    ASSERT_NE(field, nullptr);
    auto* const menu = dynamic_cast<UnitMenu*>(field->Menu());
    ASSERT_NE(menu, nullptr);
    auto* const item = dynamic_cast<UnitMenuItem*>(menu->ItemAt(3));
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(item->Label(), "Astronomical Units");
    EXPECT_EQ(item->MarkedLabel(), "AU");
    EXPECT_EQ(item->Uval(), kAU);
    EXPECT_EQ(item->Command(), FourCC("unit"));
    double uval = 0;
    EXPECT_EQ(item->Message()->FindDouble("Units Pref", &uval), B_OK);
    EXPECT_EQ(uval, kAU);
    for (const double bad : {0.0, -1.0, HUGE_VAL, std::nan("")}) {
        item->SetUval(bad);
        EXPECT_EQ(item->Uval(), kAU);
    }
}

TEST(UnitMenu, MarksTheUnitNearestByRatio) {
    const auto field = DistanceField();
    auto* const menu = dynamic_cast<UnitMenu*>(field->Menu());
    EXPECT_EQ(menu->Uval(), 1.0);  // nothing is marked
    menu->SetUval(1609.344);
    EXPECT_EQ(menu->FindMarked()->Label(), "Miles");
    menu->SetUval(2000.0);
    // 2000 / 1609.344 is nearer than 2000 / 1000.
    EXPECT_EQ(menu->FindMarked()->Label(), "Miles");
    menu->SetUval(1200.0);
    EXPECT_EQ(menu->FindMarked()->Label(), "Kilometers");
    menu->SetUval(0.1);  // as far from metres as from centimetres: the first one
    EXPECT_EQ(menu->FindMarked()->Label(), "Meters");
    menu->SetUval(1e30);
    EXPECT_EQ(menu->Uval(), kAU);

    UnitMenu empty("none", true, false);
    empty.SetUval(5.0);
    EXPECT_EQ(empty.Uval(), 1.0);
}

class NumberBoxTest : public WindowFixture {
protected:
    void SetUp() override { Show(box_); }

    // Half typed: no Enter key.
    bool Commit(const char* text) {
        WindowServer::Perform([&] {
            auto* const line = FindWidget<QLineEdit>(box_);
            line->setText(text);
            line->setModified(true);
            emit line->textEdited(text);
        });
        bool isOther = false;
        window_->Do([&] { isOther = box_->Commit(); });
        return isOther;
    }

    const ResourceTexts texts_{&Resources()};
    NumberBox* const box_ =
        new NumberBox("length", "Length", &Resources().DistanceUnits(),
                      MenuArchives::MakeUnitMenuFieldArchive(Resources().DistanceUnits()), texts_);
};

TEST_F(NumberBoxTest, UnderstandsUnitsAndKeepsValuesToTheBit) {
    box_->SetUval(kAU);
    box_->SetValue(0.1 * 3);
    EXPECT_EQ(box_->Value(), 0.1 * 3);
    EXPECT_FALSE(box_->Commit());
    EXPECT_EQ(box_->Value(), 0.1 * 3);

    // What follows from a scale has no more digits where the keyboard is; what is typed has all.
    const auto text = [&] {
        window_->Settle();
        return WindowServer::Ask([&] { return FindWidget<QLineEdit>(box_)->text(); });
    };
    box_->MakeFocus();
    box_->SetValue(kAU / 3);
    EXPECT_EQ(text(), "0.3333333");
    EXPECT_TRUE(Commit("0.33333333333"));
    EXPECT_EQ(text(), "0.33333333333");

    EXPECT_TRUE(Commit("2.5"));
    EXPECT_EQ(box_->Value(), 2.5 * kAU);
    EXPECT_TRUE(Commit("384400 km"));
    EXPECT_EQ(box_->Value(), 384400e3);
    EXPECT_EQ(box_->Uval(), 1000.0);
    // What is no length stays for the user to mend; the value is what it was.
    EXPECT_FALSE(Commit("far"));
    EXPECT_FALSE(Commit("12 furlongs"));
    EXPECT_EQ(box_->Value(), 384400e3);
    EXPECT_EQ(WindowServer::Ask([&] { return FindWidget<QLineEdit>(box_)->text(); }),
              "12 furlongs");
    EXPECT_TRUE(Commit("1,5 Miles"));
    EXPECT_EQ(box_->Value(), 1.5 * 1609.344);
}
