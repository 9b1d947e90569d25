#include "Platform/Interface/Handles/BMenu.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QComboBox>
#include <QImage>
#include <QMenu>
#include <QMenuBar>
#include <QPainter>
#include <QStyleOptionMenuItem>
#include <QTest>
#include <QToolTip>
#include <QWindow>

#include "Platform/Application/AppDefs.h"
#include "Platform/Interface/Canvas/BBitmap.h"
#include "Platform/Interface/Handles/BMenuBar.h"
#include "Platform/Interface/Handles/BMenuField.h"
#include "Platform/Interface/Handles/BMenuItem.h"
#include "Tests/Platform/Interface/TestWindow.h"

namespace {

constexpr uint32 kUnit = FourCC("unit");

// Shows something shorter in a field.
class UnitItem : public BMenuItem {
public:
    UnitItem(const char* label, const char* shown)
        : BMenuItem(label, new BMessage(kUnit)), shown_(shown) {}

    std::string MarkedLabel() const override { return shown_; }

private:
    const std::string shown_;
};

// Of the first item of a menu bar on a screen of this scale.
int CountPixels(const QMenuBar& bar, double scale, QColor color) {
    QStyleOptionMenuItem item;
    item.initFrom(&bar);
    item.rect = {0, 0, 40, 24};
    item.icon = bar.actions().at(0)->icon();
    QImage image(item.rect.size() * scale, QImage::Format_RGB32);
    image.setDevicePixelRatio(scale);
    QPainter painter(&image);
    bar.style()->drawControl(QStyle::CE_MenuBarItem, &item, &painter, &bar);
    int count = 0;
    for (int y = 0; y < image.height(); y++)
        for (int x = 0; x < image.width(); x++)
            if (image.pixelColor(x, y) == color) count++;
    return count;
}

// What a derived class archives itself, the widgets' tests read.
TEST(Menu, ArchivesComeBackAsTheyWere) {
    auto* const inner = new BMenu("Inner");
    auto* const message = new BMessage(FourCC("open"));
    message->AddPointer("Simulation", nullptr);
    inner->AddItem(new BMenuItem("Open…", message, 'O', B_SHIFT_KEY));
    inner->ItemAt(0)->SetEnabled(false);
    auto* const units = new BPopUpMenu("Number unit menu", true, true);
    units->AddItem(new BMenuItem("Meters", nullptr));
    units->AddSeparatorItem();
    units->AddItem(inner);
    units->ItemAt(0)->SetMarked(true);
    BMessage archive(B_ARCHIVED_OBJECT);
    ASSERT_EQ(BMenuField("Unit menu field", "Unit:", units).Archive(&archive, true), B_OK);

    const std::unique_ptr<BArchivable> object(instantiate_object(&archive));
    auto* const copy = dynamic_cast<BMenuField*>(object.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->Name(), "Unit menu field");
    EXPECT_EQ(copy->Label(), "Unit:");
    auto* const menu = dynamic_cast<BPopUpMenu*>(copy->Menu());
    ASSERT_NE(menu, nullptr);
    EXPECT_TRUE(menu->IsRadioMode());
    EXPECT_TRUE(menu->IsLabelFromMarked());
    EXPECT_EQ(menu->CountItems(), 3);
    EXPECT_EQ(menu->FindMarked(), menu->ItemAt(0));
    EXPECT_NE(dynamic_cast<BSeparatorItem*>(menu->ItemAt(1)), nullptr);
    ASSERT_NE(menu->SubmenuAt(2), nullptr);
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
}

class MenuWindowTest : public WindowFixture {
protected:
    // As a click on it would.
    void Choose(BMenu* menu, int index) {
        window_->ByHand([=] { menu->Part()->Widget()->actions().at(index)->trigger(); });
    }
    [[nodiscard]] std::string FieldText(BMenuField* field) const {
        return WindowServer::Ask(
            [=] { return FindWidget<QComboBox>(field)->currentText().toStdString(); });
    }
};

TEST_F(MenuWindowTest, ChoosingAnItemMarksItAndSendsItsMessage) {
    auto* const menu = new BPopUpMenu("units", true, true);
    menu->AddItem(new UnitItem("Meters", "m"));
    menu->AddItem(new UnitItem("Kilometers", "km"));
    menu->AddSeparatorItem();
    menu->AddItem(new UnitItem("Astronomical Units", "AU"));
    menu->ItemAt(1)->SetMarked(true);
    auto* const field = new BMenuField("field", "", menu);
    Show(field);
    EXPECT_EQ(FieldText(field), "km");
    Choose(menu, 3);
    EXPECT_EQ(menu->FindMarked(), menu->ItemAt(3));
    EXPECT_EQ(FieldText(field), "AU");
    const BMessage received = window_->TakeOne();
    EXPECT_EQ(received.what, kUnit);
    int32 index = -1;
    EXPECT_EQ(received.FindInt32("index", &index), B_OK);
    EXPECT_EQ(index, 3);
    Choose(menu, 3);  // the marked one stays marked
    EXPECT_EQ(menu->FindMarked(), menu->ItemAt(3));
    EXPECT_TRUE(
        WindowServer::Ask([=] { return menu->Part()->Widget()->actions().at(3)->isChecked(); }));

    // Arrow keys go over separators and what is disabled.
    window_->Take();
    window_->Do([=] { menu->ItemAt(1)->SetEnabled(false); });
    window_->ByHand([=] { QTest::keyClick(FindWidget<QComboBox>(field), Qt::Key_Up); });
    EXPECT_EQ(menu->FindMarked(), menu->ItemAt(0));
    EXPECT_EQ(FieldText(field), "m");
    EXPECT_EQ(window_->Take().size(), 1u);
    // A click opens the field's own menu.
    window_->ByHand([=] {
        auto* const popUp = static_cast<QMenu*>(menu->Part()->Widget());
        QTest::mouseClick(FindWidget<QComboBox>(field), Qt::LeftButton);
        ASSERT_TRUE(popUp->isVisible());
        QTest::keyClick(popUp, Qt::Key_Down);
        QTest::keyClick(popUp, Qt::Key_Return);
        EXPECT_FALSE(popUp->isVisible());
    });
    EXPECT_EQ(menu->FindMarked(), menu->ItemAt(3));
}

TEST_F(MenuWindowTest, AScreenReaderIsToldWhatIsChosenAndOpensTheMenu) {
    auto* const menu = new BPopUpMenu("units", true, true);
    menu->AddItem(new UnitItem("Meters", "m"));
    menu->AddItem(new UnitItem("Kilometers", "km"));
    menu->ItemAt(1)->SetMarked(true);
    auto* const field = new BMenuField("field", "", menu);
    field->SetAccessibleName("Unit");
    Show(field);
    // Whether the menu is open after it has been asked for.
    const auto opens = [&] {
        return WindowServer::Ask([&] {
            auto* const told = QAccessible::queryAccessibleInterface(FindWidget<QComboBox>(field));
            told->actionInterface()->doAction(QAccessibleActionInterface::showMenuAction());
            return menu->Part()->Widget()->isVisible();
        });
    };
    window_->ByHand([&] {
        EXPECT_EQ(QAccessible::queryAccessibleInterface(window_->Widget())->role(),
                  QAccessible::Window);
        auto* const told = QAccessible::queryAccessibleInterface(FindWidget<QComboBox>(field));
        EXPECT_EQ(told->role(), QAccessible::ComboBox);
        EXPECT_EQ(told->text(QAccessible::Name), QStringLiteral("Unit km"));
        EXPECT_EQ(told->text(QAccessible::Value), QStringLiteral("km"));
        EXPECT_TRUE(told->state().hasPopup);
        ASSERT_EQ(told->childCount(), 1);
        EXPECT_EQ(told->child(0)->object(), menu->Part()->Widget());
        EXPECT_EQ(told->indexOfChild(told->child(0)), 0);
        EXPECT_EQ(told->indexOfChild(told), -1);
    });
    EXPECT_TRUE(opens());
    window_->ByHand([&] { menu->Part()->Widget()->close(); });
    window_->Do([&] { field->SetEnabled(false); });
    EXPECT_FALSE(opens());
}

// "16" is not 12, which begins with the same digit, in a menu that is open or not.
TEST_F(MenuWindowTest, TypedNumbersAreFoundAsAWhole) {
    auto* const menu = new BPopUpMenu("orders", true, true);
    for (const char* const order : {"2", "4", "12", "16", "20"})
        menu->AddItem(new UnitItem(order, order));
    menu->ItemAt(1)->SetMarked(true);
    auto* const field = new BMenuField("field", "", menu);
    Show(field);
    window_->ByHand([=] { QTest::keyClicks(FindWidget<QComboBox>(field), "16"); });
    EXPECT_EQ(menu->FindMarked(), menu->ItemAt(3));
    for (const auto& [typed, chosen] : {std::pair("20", 4), {"2", 0}, {"16", 3}}) {
        window_->ByHand([=, typed = typed] {
            auto* const popUp = static_cast<QMenu*>(menu->Part()->Widget());
            FindWidget<QComboBox>(field)->showPopup();
            QTest::keyClicks(popUp, typed);
            QTest::keyClick(popUp, Qt::Key_Return);
        });
        EXPECT_EQ(menu->FindMarked(), menu->ItemAt(chosen)) << typed;
    }
}

// However one comes to an item; and what is clicked is what lies below the tip.
TEST_F(MenuWindowTest, ATipTellsOfTheItemThatWouldBeChosen) {
    auto* const bar = new BMenuBar("bar");
    auto* const menu = new BMenu("Examples");
    menu->AddItem(new BMenuItem("Planets", new BMessage(kUnit)));
    menu->AddItem(new BMenuItem("Moons", new BMessage(kUnit)));
    menu->ItemAt(1)->SetToolTip("Two lines\nof it.");
    bar->AddItem(menu);
    Show(bar);
    window_->ByHand([=] {
        auto* const popUp = static_cast<QMenu*>(menu->Part()->Widget());
        popUp->popup({0, 0});
        QTest::keyClick(popUp, Qt::Key_Down);
        EXPECT_EQ(QToolTip::text(), QString());
        QTest::keyClick(popUp, Qt::Key_Down);
        EXPECT_EQ(QToolTip::text(), QStringLiteral("Two lines\nof it."));
        for (const QWidget* const window : QApplication::topLevelWidgets()) {
            if (!window->inherits("QTipLabel")) continue;
            EXPECT_TRUE(window->windowHandle()->flags() & Qt::WindowTransparentForInput);
        }
        popUp->close();
    });
    BMessage archive(B_ARCHIVED_OBJECT);
    ASSERT_EQ(menu->ItemAt(1)->Archive(&archive), B_OK);
    EXPECT_EQ(BMenuItem(&archive).ToolTip(), "Two lines\nof it.");
}

TEST_F(MenuWindowTest, MenuBarsAreUsedByMouseKeysAndTargets) {
    auto* const owner = new TestWindow;
    owner->Show();
    auto* const bar = new BMenuBar("bar");
    auto* const menu = new BMenu("Simulation");
    menu->AddItem(new BMenuItem("Go", new BMessage(FourCC("tgps")), 'g'));
    menu->SetTargetForItems(owner);
    bar->AddItem(menu);
    Show(bar);
    window_->Do([=] { menu->ItemAt(0)->SetLabel("Pause"); });
    window_->ByHand([=, this] {
        QTest::keyClick(window_->Widget(), Qt::Key_G, Qt::ControlModifier);
        auto* const widget = static_cast<QMenuBar*>(bar->Part()->Widget());
        QTest::mouseClick(widget, Qt::LeftButton, {},
                          widget->actionGeometry(widget->actions().at(0)).center());
        auto* const popUp = static_cast<QMenu*>(menu->Part()->Widget());
        ASSERT_TRUE(popUp->isVisible());
        // Its letter, which opening it has marked.
        EXPECT_EQ(popUp->actions().at(0)->text(), QStringLiteral("&Pause"));
        QTest::mouseClick(popUp, Qt::LeftButton, {},
                          popUp->actionGeometry(popUp->actions().at(0)).center());
    });
    owner->Settle();
    EXPECT_EQ(owner->Take().size(), 2u);

    // An item that is removed after it was chosen sends nothing.
    window_->Do([=] {
        WindowServer::Perform([=] { menu->Part()->Widget()->actions().at(0)->trigger(); });
        delete menu->RemoveItem(0);
    });
    owner->Settle();
    EXPECT_TRUE(owner->Take().empty());
    owner->LockAndQuit();
}

// Where a screen has more pixels, the icon keeps its size and has more of them, too.
TEST_F(MenuWindowTest, AnIconIsAsFineAsTheScreen) {
    const auto icon = [](float side, rgb_color color) {
        BBitmap bitmap({0, 0, side - 1, side - 1}, B_RGB32);
        std::vector<uint8> bits;
        for (int i = 0; i < bitmap.Width() * bitmap.RowCount(); i++)
            bits.insert(bits.end(), {color.blue, color.green, color.red, 255});
        bitmap.SetBits(bits.data(), bits.size());
        return bitmap;
    };
    const BBitmap coarse = icon(16, {255, 0, 0, 255});
    const BBitmap fine = icon(32, {0, 0, 255, 255});
    auto* const bar = new BMenuBar("bar");
    auto* const item = new BMenuItem(new BMenu("Orvek"));
    item->SetIcon(&coarse, &fine);
    bar->AddItem(item);
    Show(bar);
    window_->ByHand([&] {
        const auto& widget = static_cast<QMenuBar&>(*bar->Part()->Widget());
        EXPECT_EQ(CountPixels(widget, 1.0, Qt::red), 16 * 16);
        EXPECT_EQ(CountPixels(widget, 1.5, Qt::blue), 24 * 24);
        EXPECT_EQ(CountPixels(widget, 2.0, Qt::blue), 32 * 32);
    });
}

TEST(Bitmap, ColorsOfBothKinds) {
    BBitmap icon({0, 0, 15, 15}, B_CMAP8);
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
