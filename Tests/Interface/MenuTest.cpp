#include "BMenu.h"

#include <gtest/gtest.h>

#include <QComboBox>
#include <QMenu>
#include <QMenuBar>
#include <QTest>

#include "AppDefs.h"
#include "BBitmap.h"
#include "BMenuBar.h"
#include "BMenuField.h"
#include "BPopUpMenu.h"
#include "BSeparatorItem.h"
#include "TestWindow.h"

namespace {

constexpr uint32 kUnit = FourCC("unit");

// An item of a higher floor: archives one more field and shows something shorter in a field.
class FactorItem : public BMenuItem {
public:
    FactorItem(const char* label, const char* shown, double factor)
        : BMenuItem(label, new BMessage(kUnit)), shown_(shown), factor_(factor) {}
    explicit FactorItem(BMessage* archive) : BMenuItem(archive) {
        archive->FindString("shown", &shown_);
        archive->FindDouble("factor", &factor_);
    }

    static BArchivable* Instantiate(BMessage* archive) {
        return validate_instantiation(archive, "(anonymous namespace)::FactorItem")
                   ? new FactorItem(archive)
                   : nullptr;
    }

    status_t Archive(BMessage* into, bool deep) const override {
        const status_t status = BMenuItem::Archive(into, deep);
        into->AddString("shown", shown_);
        into->AddDouble("factor", factor_);
        return status;
    }

    std::string MarkedLabel() const override { return shown_; }
    [[nodiscard]] double Factor() const { return factor_; }

private:
    std::string shown_;
    double factor_ = 0;
};

const ArchivableClass kFactorItem("(anonymous namespace)::FactorItem", FactorItem::Instantiate);

BPopUpMenu* MakeUnits() {
    auto* const menu = new BPopUpMenu("Number unit menu", true, true);
    menu->AddItem(new FactorItem("Meters", "m", 1));
    menu->AddItem(new FactorItem("Kilometers", "km", 1000));
    menu->AddSeparatorItem();
    menu->AddItem(new FactorItem("Astronomical Units", "AU", 1.4959787066e11));
    menu->ItemAt(1)->SetMarked(true);
    return menu;
}

TEST(Menu, ArchivesComeBackAsTheyWere) {
    auto* const inner = new BMenu("Inner");
    auto* const message = new BMessage(FourCC("open"));
    message->AddPointer("Simulation", nullptr);
    inner->AddItem(new BMenuItem("Open…", message, 'O', B_SHIFT_KEY));
    inner->ItemAt(0)->SetEnabled(false);
    BPopUpMenu* const units = MakeUnits();
    units->AddItem(inner);
    BMenuField field("Unit menu field", "Unit:", units);

    BMessage archive(B_ARCHIVED_OBJECT);
    ASSERT_EQ(field.Archive(&archive, true), B_OK);
    std::string name;
    EXPECT_EQ(archive.FindString("class", &name), B_OK);
    EXPECT_EQ(name, "BMenuField");
    // Through the stored form, as a file would give it back.
    std::vector<std::byte> bytes;
    ASSERT_EQ(archive.Flatten(&bytes), B_OK);
    BMessage stored;
    ASSERT_EQ(stored.Unflatten(bytes.data(), bytes.size()), B_OK);

    const std::unique_ptr<BArchivable> object(instantiate_object(&stored));
    auto* const copy = dynamic_cast<BMenuField*>(object.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->Name(), "Unit menu field");
    EXPECT_EQ(copy->Label(), "Unit:");
    auto* const menu = dynamic_cast<BPopUpMenu*>(copy->Menu());
    ASSERT_NE(menu, nullptr);
    EXPECT_TRUE(menu->IsRadioMode());
    EXPECT_TRUE(menu->IsLabelFromMarked());
    ASSERT_EQ(menu->CountItems(), 5);
    EXPECT_EQ(menu->FindMarked(), menu->ItemAt(1));
    EXPECT_NE(dynamic_cast<BSeparatorItem*>(menu->ItemAt(2)), nullptr);
    auto* const unit = dynamic_cast<FactorItem*>(menu->ItemAt(3));
    ASSERT_NE(unit, nullptr);
    EXPECT_EQ(unit->Factor(), 1.4959787066e11);
    EXPECT_EQ(unit->Command(), kUnit);
    BMenu* const submenu = menu->SubmenuAt(4);
    ASSERT_NE(submenu, nullptr);
    EXPECT_EQ(submenu->Superitem(), menu->ItemAt(4));
    BMenuItem* const open = menu->FindItem(FourCC("open"));
    ASSERT_NE(open, nullptr);
    EXPECT_EQ(open->Label(), "Open…");
    EXPECT_FALSE(open->IsEnabled());
    uint32 modifiers = 0;
    EXPECT_EQ(open->Shortcut(&modifiers), 'O');
    EXPECT_EQ(modifiers, B_SHIFT_KEY);
    EXPECT_TRUE(open->Message()->HasName("Simulation", B_POINTER_TYPE));

    BMessage again(B_ARCHIVED_OBJECT);
    ASSERT_EQ(copy->Archive(&again, true), B_OK);
    EXPECT_EQ(again, archive);
    BMessage shallow;
    EXPECT_EQ(copy->Archive(&shallow, false), B_OK);
    EXPECT_FALSE(shallow.HasName("_menu"));
}

TEST(Menu, ItemsOfUnknownClassesAreLeftOut) {
    BMessage archive(B_ARCHIVED_OBJECT);
    archive.AddString("class", "BMenu");
    BMessage item(B_ARCHIVED_OBJECT);
    item.AddString("class", "NoSuchItem");
    archive.AddMessage("_items", &item);
    BMessage view(B_ARCHIVED_OBJECT);
    view.AddString("class", "BMenuField");  // archivable, but no item
    archive.AddMessage("_items", &view);
    const std::unique_ptr<BArchivable> object(instantiate_object(&archive));
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(dynamic_cast<BMenu&>(*object).CountItems(), 0);
}

TEST(Menu, ItemsKeepTheirPlaces) {
    BMenu menu("menu");
    auto* const a = new BMenuItem("a", nullptr);
    auto* const b = new BMenuItem("b", nullptr);
    EXPECT_TRUE(menu.AddItem(a));
    EXPECT_TRUE(menu.AddItem(b, 0));
    EXPECT_FALSE(menu.AddItem(a));
    BMenu tooFar("too far");
    EXPECT_FALSE(menu.AddItem(&tooFar, 7));
    EXPECT_EQ(menu.IndexOf(a), 1);
    EXPECT_EQ(menu.RemoveItem(0), b);
    EXPECT_EQ(b->Menu(), nullptr);
    EXPECT_TRUE(menu.AddItem(b));
    EXPECT_EQ(WindowServer::Ask([&] {
                  QStringList texts;
                  for (const QAction* action : menu.Part()->Widget()->actions())
                      texts.append(action->text());
                  return texts.join(QLatin1Char(' '));
              }),
              QStringLiteral("a b"));
}

class MenuWindowTest : public testing::Test {
protected:
    void TearDown() override { window_->LockAndQuit(); }

    // Chooses an item as a click on it would.
    void Choose(BMenu* menu, int index) {
        WindowServer::Perform([=] { menu->Part()->Widget()->actions().at(index)->trigger(); });
        window_->Settle();
    }

    [[nodiscard]] QString FieldText(BMenuField* field) const {
        return WindowServer::Ask([=] { return FindWidget<QComboBox>(field)->currentText(); });
    }

    TestWindow* window_ = new TestWindow;
};

TEST_F(MenuWindowTest, ChoosingAnItemMarksItAndSendsItsMessage) {
    auto* const field = new BMenuField("field", "", MakeUnits());
    window_->AddChild(field);
    window_->Show();
    window_->Settle();
    BMenu* const menu = field->Menu();
    EXPECT_EQ(FieldText(field), QStringLiteral("km"));
    Choose(menu, 3);
    EXPECT_EQ(menu->FindMarked(), menu->ItemAt(3));
    EXPECT_EQ(FieldText(field), QStringLiteral("AU"));
    auto received = window_->Take();
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].what, kUnit);
    int32 index = -1;
    EXPECT_EQ(received[0].FindInt32("index", &index), B_OK);
    EXPECT_EQ(index, 3);
    Choose(menu, 3);  // the marked one stays marked
    EXPECT_EQ(menu->FindMarked(), menu->ItemAt(3));
    EXPECT_TRUE(
        WindowServer::Ask([=] { return menu->Part()->Widget()->actions().at(3)->isChecked(); }));

    // Arrow keys go over separators and what is disabled.
    window_->Take();
    window_->Lock();
    menu->ItemAt(1)->SetEnabled(false);
    window_->Unlock();
    WindowServer::Perform([=] { QTest::keyClick(FindWidget<QComboBox>(field), Qt::Key_Up); });
    window_->Settle();
    EXPECT_EQ(menu->FindMarked(), menu->ItemAt(0));
    EXPECT_EQ(FieldText(field), QStringLiteral("m"));
    EXPECT_EQ(window_->Take().size(), 1u);
}

TEST_F(MenuWindowTest, AFieldOpensItsOwnMenu) {
    auto* const field = new BMenuField("field", "Unit:", MakeUnits());
    window_->AddChild(field);
    window_->Show();
    window_->Settle();
    WindowServer::Perform([=] {
        auto* const menu = static_cast<QMenu*>(field->Menu()->Part()->Widget());
        QTest::mouseClick(FindWidget<QComboBox>(field), Qt::LeftButton);
        ASSERT_TRUE(menu->isVisible());
        QTest::keyClick(menu, Qt::Key_Up);
        QTest::keyClick(menu, Qt::Key_Return);
        EXPECT_FALSE(menu->isVisible());
    });
    window_->Settle();
    EXPECT_EQ(field->Menu()->FindMarked(), field->Menu()->ItemAt(0));
}

TEST_F(MenuWindowTest, MenuBarsAreUsedByMouseKeysAndTargets) {
    auto* const owner = new TestWindow;
    owner->Show();
    auto* const bar = new BMenuBar("bar");
    auto* const menu = new BMenu("Simulation");
    menu->AddItem(new BMenuItem("Go", new BMessage(FourCC("tgps")), 'g'));
    menu->SetTargetForItems(owner);
    bar->AddItem(menu);
    window_->AddChild(bar);
    window_->Show();
    window_->Activate();
    window_->Settle();
    window_->Lock();
    menu->ItemAt(0)->SetLabel("Pause");
    window_->Unlock();
    WindowServer::Perform([=, this] {
        ASSERT_TRUE(QTest::qWaitForWindowActive(window_->Widget()));
        EXPECT_EQ(menu->Part()->Widget()->actions().at(0)->text(), QStringLiteral("Pause"));
        QTest::keyClick(window_->Widget(), Qt::Key_G, Qt::ControlModifier);
        auto* const widget = static_cast<QMenuBar*>(bar->Part()->Widget());
        QTest::mouseClick(widget, Qt::LeftButton, {},
                          widget->actionGeometry(widget->actions().at(0)).center());
        auto* const popUp = static_cast<QMenu*>(menu->Part()->Widget());
        ASSERT_TRUE(popUp->isVisible());
        QTest::mouseClick(popUp, Qt::LeftButton, {},
                          popUp->actionGeometry(popUp->actions().at(0)).center());
    });
    window_->Settle();
    owner->Settle();
    EXPECT_EQ(owner->Take().size(), 2u);

    // An item that is removed after it was chosen sends nothing.
    window_->Lock();
    WindowServer::Perform([=] { menu->Part()->Widget()->actions().at(0)->trigger(); });
    delete menu->RemoveItem(0);
    window_->Unlock();
    window_->Settle();
    owner->Settle();
    EXPECT_TRUE(owner->Take().empty());
    owner->LockAndQuit();
}

TEST(Bitmap, ColorsOfBothKinds) {
    BBitmap icon({0, 0, 15, 15}, B_CMAP8);
    EXPECT_EQ(icon.BitsLength(), 256);
    const uint8 indexes[] = {0, 31, 32, 32 + 215, 255};
    icon.SetBits(indexes, sizeof indexes);
    EXPECT_EQ(icon.ColorAt(1, 0), (rgb_color{255, 255, 255, 255}));
    EXPECT_EQ(icon.ColorAt(2, 0), (rgb_color{0, 0, 0, 255}));
    EXPECT_EQ(icon.ColorAt(3, 0), (rgb_color{255, 255, 255, 255}));
    EXPECT_EQ(icon.ColorAt(4, 0).alpha, 0);
    BBitmap picture({0, 0, 0, 0}, B_RGB32);
    const uint8 pixel[] = {1, 2, 3, 4};
    picture.SetBits(pixel, sizeof pixel);
    EXPECT_EQ(picture.ColorAt(0, 0), (rgb_color{3, 2, 1, 4}));
}

}  // namespace
