#include "Tests/Robot/RobotHands.h"

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QSlider>
#include <QTest>
#include <QTreeView>
#include <QWheelEvent>
#include <map>

namespace {

// Beyond these the robot rather closes windows.
constexpr std::size_t kManyWindows = 20;
constexpr std::size_t kManySimulations = 4;

constexpr const char* kSky = "Picture of the moving bodies";
constexpr const char* kSpace = "Picture of the bodies in space";
constexpr const char* kTimeLine = "Time line";

bool AreMany(const Windows& windows) {
    return windows.size() > kManyWindows || CountSimulations(windows) > kManySimulations;
}

void CollectItems(const QWidget& menu, std::vector<QAction*>* items) {
    for (QAction* const action : menu.actions()) {
        if (!action->isVisible() || action->isSeparator() || !action->isEnabled()) continue;
        if (const auto* const submenu = action->menu<QMenu*>(); submenu != nullptr)
            CollectItems(*submenu, items);
        else
            items->push_back(action);
    }
}

}  // namespace

void RobotHands::Post(std::function<void()> action) {
    QMetaObject::invokeMethod(qApp, std::move(action), Qt::QueuedConnection);
}

void RobotHands::Begin(const std::string& what, QWidget* where) {
    if (where->window()->windowType() != Qt::Popup) QApplication::setActiveWindow(where->window());
    journal_->Note(what + " in " + where->window()->windowTitle().toStdString());
}

template <typename Widget>
Widget* RobotHands::AnyOf(const Windows& windows) {
    const std::vector<Widget*> found = FindUsable<Widget>(windows);
    return found.empty() ? nullptr : dice_->Any(found);
}

QPoint RobotHands::PlaceIn(const QWidget& widget) {
    return {dice_->Number(0, std::max(0, widget.width() - 1)),
            dice_->Number(0, std::max(0, widget.height() - 1))};
}

void RobotHands::Drag(QWidget* widget) {
    QTest::mousePress(widget, Qt::LeftButton, {}, PlaceIn(*widget));
    QTest::mouseMove(widget, PlaceIn(*widget));
    QTest::mouseRelease(widget, Qt::LeftButton, {}, PlaceIn(*widget));
}

// --- The choice ---

void RobotHands::DoSomething() {
    if (dialogs_->AnswerModal()) return;
    const Windows windows = VisibleWindows();
    if (windows.empty()) return journal_->Note("nothing to do");
    if (AreMany(windows) && dice_->Chance(50)) {
        if (!dialogs_->AnswerOne(windows)) Close(dice_->Any(windows));
        return;
    }
    using Use = bool (RobotHands::*)(const Windows&);
    static const std::map<int, Use> kUses{
        {22, &RobotHands::UseMenu},     {32, &RobotHands::PressButton},
        {50, &RobotHands::UseEntry},    {58, &RobotHands::UseChoice},
        {63, &RobotHands::UseSlider},   {70, &RobotHands::UseList},
        {79, &RobotHands::UseSky},      {85, &RobotHands::UseWindow},
        {90, &RobotHands::UseTimeLine}, {102, &RobotHands::UseHands},
    };
    if (dice_->Chance(8) && dialogs_->AnswerOne(windows)) return;
    const auto chosen = kUses.upper_bound(dice_->Number(0, 108));
    const bool isDone = chosen == kUses.end() ? PressKey() : (this->*chosen->second)(windows);
    if (!isDone) PressKey();
}

// --- Menus ---

bool RobotHands::UseMenu(const Windows& windows) {
    auto* const bar = AnyOf<QMenuBar>(windows);
    if (bar == nullptr) return false;
    if (dice_->Chance(30)) {
        // Left open, for the next action.
        QAction* const title =
            bar->actions()[dice_->Number(0, static_cast<int>(bar->actions().size()) - 1)];
        Begin("menu " + TextOf(*title), bar);
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(title).center());
        return true;
    }
    std::vector<QAction*> items;
    CollectItems(*bar, &items);
    if (items.empty()) return false;
    QAction* const item = dice_->Any(items);
    if (!dialogs_->Wants(*item)) return false;
    Begin("item " + TextOf(*item), bar);
    item->trigger();
    return true;
}

// --- Controls ---

bool RobotHands::PressButton(const Windows& windows) {
    auto* const button = AnyOf<QAbstractButton>(windows);
    if (button == nullptr) return false;
    Begin("button " + TextOf(*button), button);
    if (dice_->Chance(80))
        QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
    else
        QTest::keyClick(button, Qt::Key_Space);
    return true;
}

void RobotHands::Fill(QLineEdit* line, const std::string& text, Finish finish) {
    const QPointer<QLineEdit> guard(line);
    line->setFocus();
    line->selectAll();
    QTest::keyClick(line, Qt::Key_Delete);
    // The toolkit's own typist knows no letters beyond ASCII.
    for (const QChar letter : QString::fromStdString(text))
        if (guard != nullptr)
            QTest::sendKeyEvent(QTest::Click, line, Qt::Key_unknown, QString(letter),
                                Qt::NoModifier);
    if (guard == nullptr) return;
    if (finish == Finish::kEnter) QTest::keyClick(line, Qt::Key_Return);
    if (finish == Finish::kTab) QTest::keyClick(line, Qt::Key_Tab);
    if (finish == Finish::kEscape) QTest::keyClick(line, Qt::Key_Escape);
}

bool RobotHands::UseEntry(const Windows& windows) {
    auto* const line = AnyOf<QLineEdit>(windows);
    if (line == nullptr) return false;
    const std::string text = dice_->Text();
    Begin("type \"" + text + "\" into " + line->accessibleName().toStdString(), line);
    Fill(line, text,
         dice_->Any<Finish>(
             {Finish::kEnter, Finish::kEnter, Finish::kTab, Finish::kEscape, Finish::kNothing}));
    return true;
}

bool RobotHands::Type(QWidget* window, const std::string& name, const std::string& text,
                      Finish finish) {
    for (QLineEdit* const line : window->findChildren<QLineEdit*>()) {
        if (line->accessibleName() != QString::fromStdString(name) || !CanBeUsed(line) ||
            line->isReadOnly())
            continue;
        Begin("check: type " + text, line);
        Fill(line, text, finish);
        return true;
    }
    return false;
}

bool RobotHands::UseChoice(const Windows& windows) {
    auto* const box = AnyOf<QComboBox>(windows);
    if (box == nullptr) return false;
    Begin("choice " + box->accessibleName().toStdString(), box);
    box->setFocus();
    if (dice_->Chance(50))
        box->showPopup();
    else
        QTest::keyClick(box, dice_->Chance(50) ? Qt::Key_Down : Qt::Key_Up);
    return true;
}

bool RobotHands::UseSlider(const Windows& windows) {
    auto* const slider = AnyOf<QSlider>(windows);
    if (slider == nullptr) return false;
    Begin("slider " + slider->accessibleName().toStdString(), slider);
    if (dice_->Chance(50)) {
        slider->setFocus();
        QTest::keyClick(slider, dice_->Any<Qt::Key>({Qt::Key_Left, Qt::Key_Right, Qt::Key_PageUp,
                                                     Qt::Key_PageDown, Qt::Key_Home, Qt::Key_End}));
        return true;
    }
    Drag(slider);
    return true;
}

bool RobotHands::UseList(const Windows& windows) {
    auto* const list = AnyOf<QTreeView>(windows);
    if (list == nullptr) return false;
    QWidget* const rows = list->viewport();
    QPoint place = PlaceIn(*rows);
    place.setY(std::min(place.y(), dice_->Number(0, 200)));
    Begin("list", list);
    switch (dice_->Number(0, 7)) {
        case 0:
            QTest::mouseDClick(rows, Qt::LeftButton, {}, place);
            break;
        case 1:
            QTest::keyClick(list, Qt::Key_F2);
            if (auto* const editor = rows->findChild<QLineEdit*>();
                editor != nullptr && CanBeUsed(editor))
                Fill(editor, dice_->Text(), dice_->Chance(70) ? Finish::kEnter : Finish::kNothing);
            break;
        case 2:
        case 3:
        case 4:
            QTest::keyClick(list,
                            dice_->Any<Qt::Key>({Qt::Key_Delete, Qt::Key_Delete, Qt::Key_Return,
                                                 Qt::Key_Return, Qt::Key_Left, Qt::Key_Down}));
            break;
        case 5: {
            QWidget* const header = list->header()->viewport();
            QTest::mouseClick(header, Qt::LeftButton, {}, PlaceIn(*header));
            break;
        }
        default:
            QTest::mouseClick(rows, Qt::LeftButton, {}, place);
    }
    return true;
}

bool RobotHands::UseSky(const Windows& windows) {
    std::vector<QWidget*> skies;
    for (QWidget* const widget : FindUsable<QWidget>(windows))
        if (widget->accessibleName() == kSky) skies.push_back(widget);
    if (skies.empty()) return false;
    QWidget* const sky = dice_->Any(skies);
    Begin("sky", sky);
    switch (dice_->Number(0, 4)) {
        case 0:
            Drag(sky);
            break;
        case 1: {
            const QPointF at = PlaceIn(*sky);
            QWheelEvent wheel(at, sky->mapToGlobal(at), {}, QPoint(0, 120 * dice_->Number(-9, 9)),
                              Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(sky, &wheel);
            break;
        }
        case 2:
            QTest::mouseDClick(sky, Qt::LeftButton, {}, PlaceIn(*sky));
            break;
        case 3:
            QTest::keyClick(
                sky, dice_->Any<Qt::Key>({Qt::Key_Plus, Qt::Key_Minus, Qt::Key_Left, Qt::Key_Up}));
            break;
        default:
            QTest::mouseMove(sky, PlaceIn(*sky));
    }
    return true;
}

// Of one's own hand: pressed where a body may be, led somewhere, perhaps out of the window, and let
// go or given up, with keys in between.
void RobotHands::Gesture(QWidget* picture) {
    const QPointer<QWidget> guard(picture);
    const auto button = dice_->Chance(85) ? Qt::LeftButton : Qt::RightButton;
    const auto with = dice_->Any<Qt::KeyboardModifiers>(
        {Qt::NoModifier, Qt::NoModifier, Qt::ControlModifier, Qt::ShiftModifier});
    // Bodies are mostly about the middle.
    const auto near = [&] {
        return picture->rect().center() + QPoint(dice_->Number(-90, 90), dice_->Number(-90, 90));
    };
    const auto move = [&](QPoint to) {
        QMouseEvent event(QEvent::MouseMove, to, picture->mapToGlobal(to), Qt::NoButton, button,
                          with);
        QCoreApplication::sendEvent(picture, &event);
    };
    const auto press = [&](Qt::Key key) { QTest::keyClick(picture, key, with); };
    const QPoint from = dice_->Chance(50) ? picture->rect().center() : near();
    QTest::mouseClick(picture, Qt::LeftButton, {}, from);
    QTest::mousePress(picture, button, with, from);
    for (int step = dice_->Number(0, 4); step > 0 && guard != nullptr; step--) {
        move(dice_->Chance(10) ? QPoint(-500, 3) : near());
        if (dice_->Chance(20)) press(dice_->Any<Qt::Key>({Qt::Key_X, Qt::Key_Y, Qt::Key_Z}));
        if (dice_->Chance(10)) press(Qt::Key_Escape);
    }
    if (guard != nullptr && dice_->Chance(90)) QTest::mouseRelease(picture, button, with, near());
}

bool RobotHands::UseHands(const Windows& windows) {
    std::vector<QWidget*> pictures;
    for (QWidget* const widget : FindUsable<QWidget>(windows))
        if (widget->accessibleName() == kSky || widget->accessibleName().startsWith(kSpace))
            pictures.push_back(widget);
    if (pictures.empty()) return false;
    QWidget* const picture = dice_->Any(pictures);
    Begin("hands", picture);
    if (dice_->Chance(70)) {
        Gesture(picture);
    } else {
        QTest::keyClick(picture,
                        dice_->Any<Qt::Key>({Qt::Key_X, Qt::Key_Y, Qt::Key_Z, Qt::Key_O, Qt::Key_P,
                                             Qt::Key_Left, Qt::Key_Plus, Qt::Key_Escape}));
    }
    return true;
}

// Seeks, branches, and comes back to now.
bool RobotHands::UseTimeLine(const Windows& windows) {
    std::vector<QWidget*> lines;
    for (QWidget* const widget : FindUsable<QWidget>(windows))
        if (widget->accessibleName() == kTimeLine) lines.push_back(widget);
    if (lines.empty()) return false;
    QWidget* const line = dice_->Any(lines);
    Begin("time line", line);
    switch (dice_->Number(0, 3)) {
        case 0:
            Drag(line);
            break;
        case 1:
            QTest::mouseClick(line, Qt::LeftButton, {}, PlaceIn(*line));
            break;
        case 2:
            QTest::keyClick(
                line,
                dice_->Any<Qt::Key>({Qt::Key_Home, Qt::Key_End, Qt::Key_Left, Qt::Key_Right,
                                     Qt::Key_Period, Qt::Key_Comma, Qt::Key_Escape}),
                dice_->Chance(30) ? Qt::ShiftModifier : Qt::NoModifier);
            break;
        default:
            QTest::keyClick(line, Qt::Key_K, Qt::ControlModifier);
    }
    return true;
}

// --- Windows ---

void RobotHands::Close(QWidget* window) {
    Begin("close", window);
    window->close();
}

bool RobotHands::UseWindow(const Windows& windows) {
    QWidget* const window = dice_->Any(windows);
    const int choice = dice_->Number(0, 9);
    if (choice < 3) {
        if (IsSimulation(window) && CountSimulations(windows) == 1 && !dice_->Chance(10))
            return false;
        Close(window);
    } else if (choice < 6) {
        Begin("resize", window);
        window->resize(dice_->Number(50, 1400), dice_->Number(50, 1000));
    } else if (choice < 7) {
        Begin("move", window);
        window->move(dice_->Number(-300, 1400), dice_->Number(-300, 1000));
    } else {
        Begin("activate", window);
        window->activateWindow();
    }
    return true;
}

bool RobotHands::PressKey() {
    static const std::vector<const char*> kKeys{
        "Ctrl+Z", "Ctrl+Z", "Ctrl+Shift+Z", "Ctrl+G",    "Ctrl+G", "Ctrl+B", "Ctrl+D", "Ctrl+S",
        "Ctrl+T", "Ctrl+E", "Ctrl+Shift+S", "Ctrl+M",    "Ctrl+0", "Ctrl+L", "Ctrl+A", "Tab",
        "Esc",    "Return", "Space",        "Shift+Tab", "Del",    "F2",     "Down",   "Alt+F"};
    QWidget* const window = QApplication::activeWindow();
    // In the toolkit's dialogs a key may remove a file.
    if (window == nullptr || IsToolkitDialog(window)) {
        journal_->Note("no key");
        return true;
    }
    const std::string name = dice_->Any(kKeys);
    const QKeySequence keys(QString::fromStdString(name));
    Begin("key " + name, window);
    QWidget* const focus = window->focusWidget();
    QTest::keyClick(focus == nullptr ? window : focus, keys[0].key(), keys[0].keyboardModifiers());
    return true;
}
