// What a user does to entries, done to the real widgets. On the tests' thread; a widget is named by
// what a screen reader says of it. The window must be shown.
#pragma once

#include <string>

class BView;

class EntryHand {
public:
    // `view` is not owned.
    explicit EntryHand(const BView* view) : view_(view) {}

    // The window around the view has the keyboard.
    static void WaitUntilActive(const BView* view);

    // Into a line, over what is there; nothing is entered.
    void Type(const std::string& line, const std::string& text) const;
    // Behind what is typed already.
    void Add(const std::string& line, const std::string& text) const;
    // Types, and presses the Enter key.
    void Enter(const std::string& line, const std::string& text) const;
    // Does not wait until the key is pressed.
    void PressEnterSoon(const std::string& line) const;
    void Escape(const std::string& line) const;
    // Where the keyboard is: in a field of the window or in none.
    void PressKey(char key) const;
    [[nodiscard]] std::string Text(const std::string& line) const;
    [[nodiscard]] bool IsEnabled(const std::string& widget) const;
    // The line is marked as holding what could not be taken, and says why.
    [[nodiscard]] bool IsRefused(const std::string& line) const;
    [[nodiscard]] std::string Hint() const;

    // A menu or list.
    void Choose(const std::string& field, const std::string& text) const;
    [[nodiscard]] std::string Chosen(const std::string& field) const;
    [[nodiscard]] int CountChoices(const std::string& field) const;
    void Click(const std::string& button) const;

    // Takes the knob, moves it over these places and leaves it there, held.
    void Grab(const std::string& slider, int over, int to) const;
    void LetGo(const std::string& slider) const;
    // Presses a right-arrow key, which repeats itself while it is held down.
    void HoldRightArrow(const std::string& slider, int repeats) const;
    [[nodiscard]] int Knob(const std::string& slider) const;

    // The colour dialog that is open: shows this colour; ends.
    static void TryColor(unsigned rgb);
    static void EndColorDialog(bool isAccepted);

private:
    const BView* const view_;
};
