// The program in another language: which one it takes, and that its windows have room for it. In
// every language, what the keyboard can reach says what it is.
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <cstdlib>

#include "Application/Language.h"
#include "Platform/Interface/Server/WindowServer.h"
#include "Tests/Application/AppDriver.h"
#include "Tests/Application/WindowHand.h"
#include "Tests/Platform/TestFolder.h"

namespace {

class LanguageTest : public testing::Test {
protected:
    void SetUp() override { SetLocale(nullptr, nullptr, nullptr); }
    void TearDown() override { SetLocale(nullptr, nullptr, nullptr); }

    static void SetLocale(const char* all, const char* messages, const char* lang) {
        const std::pair<const char*, const char*> values[] = {
            {"LC_ALL", all}, {"LC_MESSAGES", messages}, {"LANG", lang}};
        for (const auto& [name, value] : values)
            value == nullptr ? unsetenv(name) : setenv(name, value, 1);
    }

    static void Opens(const char* window, const char* item, const char* opened) {
        EXPECT_TRUE(AppDriver::WaitUntil([=] { return WindowHand::CanChoose(window, item); }))
            << item;
        WindowHand::Choose(window, item);
        EXPECT_TRUE(AppDriver::WaitUntil([=] { return WindowHand::Count(opened) == 1; })) << item;
    }

    const TestFolder folder_;
};

using Names = std::vector<std::string>;

std::string Describe(const QWidget& widget) {
    const QByteArray text = widget.property("text").toString().toUtf8();
    return (widget.window()->windowTitle() + ": ").toStdString() +
           widget.metaObject()->className() + " \"" + text.toStdString() + '"';
}

// Visible widgets of which this holds, as the failure tells them.
template <typename Condition>
Names Faulty(Condition isFaulty) {
    return WindowServer::Ask([&] {
        Names names;
        for (const QWidget* const widget : QApplication::allWidgets())
            if (widget->isVisible() && isFaulty(*widget)) names.push_back(Describe(*widget));
        return names;
    });
}

bool IsClipped(const QWidget& widget) {
    const auto* const label = qobject_cast<const QLabel*>(&widget);
    const bool isShown = label != nullptr
                             ? !label->wordWrap() && !label->text().isEmpty()
                             : qobject_cast<const QAbstractButton*>(&widget) != nullptr;
    const bool mayShrink = widget.sizePolicy().horizontalPolicy() == QSizePolicy::Ignored;
    return isShown && !mayShrink && widget.width() < widget.minimumSizeHint().width();
}

bool IsNameless(const QWidget& widget) {
    if ((widget.focusPolicy() & Qt::TabFocus) == 0 || widget.focusProxy() != nullptr) return false;
    QAccessibleInterface* const told =
        QAccessible::queryAccessibleInterface(const_cast<QWidget*>(&widget));
    return told == nullptr || told->text(QAccessible::Name).trimmed().isEmpty();
}

void ExpectNone(const Names& names, const char* fault) {
    for (const std::string& name : names)
        ADD_FAILURE() << name << ' ' << fault;
}

}  // namespace

TEST_F(LanguageTest, TheFirstOfTheLocalesVariablesCounts) {
    EXPECT_EQ(Language::Wanted(), Names{});
    SetLocale(nullptr, nullptr, "de_AT.UTF-8@euro");
    EXPECT_EQ(Language::Wanted(), (Names{"de_AT", "de"}));
    SetLocale(nullptr, "de", "fr_FR.UTF-8");
    EXPECT_EQ(Language::Wanted(), Names{"de"});
    SetLocale("", "de", nullptr);
    EXPECT_EQ(Language::Wanted(), Names{"de"});
    for (const char* const own :
         {"C", "POSIX", "C.UTF-8", "en_GB.UTF-8", "../de", "/de", "_", "."}) {
        SetLocale(own, "de", "de");
        EXPECT_EQ(Language::Wanted(), Names{}) << own;
    }
    ProgramResources resources;
    SetLocale("xx_YY", nullptr, nullptr);
    EXPECT_EQ(Language::Translate(&resources), "") << "there is no such translation";
    SetLocale("de_CH.UTF-8", nullptr, nullptr);
    EXPECT_EQ(Language::Translate(&resources), "de");
}

TEST_F(LanguageTest, WindowsHaveRoomForItAndSayWhatTheyHold) {
    ProgramResources german;
    setenv("LC_ALL", "de_DE.UTF-8", 1);
    ASSERT_EQ(Language::Translate(&german), "de");
    AppDriver app(folder_.Path(), {WriteDocument(folder_.Path() + "/system")},
                  SimApp::Welcome::kNone, german);
    WindowHand::WaitFor("Projektion: system");
    const std::pair<const char*, const char*> windows[] = {
        {"Körper/Gruppieren…", "Körper gruppieren"},
        {"Körper/Spur & Scheibe…", "Darstellung: system"},
        {"Simulation/Animation…", "Animation: system"},
        {"Simulation/Epochen…", "Epochen: system"},
        {"Simulation/Laufen bis…", "Laufen bis"},
        {"Neue Anzeige/Raum", "Raum: system"},
        {"Neue Anzeige/Diagramm", "Diagramm: system"},
        {"Orvek/Beispiele…", "Beispiele"},
        {"Orvek/Über Orvek…", "Über Orvek"},
    };
    for (const auto& [item, window] : windows) {
        Opens("system", item, window);
    }
    for (const auto& [item, window] : {std::pair{"Anzeige/Maßstab…", "Maßstab der Anzeige wählen"},
                                       {"Anzeige/Achse…", "Unterdrückte Achse wählen"},
                                       {"Ansicht/Länge der Spuren/Andere…", "Länge der Spuren"}}) {
        Opens("Projektion: system", item, window);
    }
    ExpectNone(Faulty(IsClipped), "is cut off");
    ExpectNone(Faulty(IsNameless), "has no name");
}
