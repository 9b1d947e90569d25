// Asks what a film is to be like, has it recorded, and shows how far that is. Made by the display;
// closing it ends it, and what is not recorded yet. Rules as for BWindow.
#pragma once

#include <initializer_list>
#include <memory>
#include <string>

#include "Displays/Film/FilmPainter.h"
#include "Displays/Film/FilmRecorder.h"
#include "Platform/Interface/Handles/BWindow.h"

class BButton;
class BChoiceField;
class BFilePanel;
class BGroupView;
class BStringView;
class BView;
class EpochPortal;
class NumberTextControl;
class RunHistory;
struct DisplayContext;

class FilmWindow : public BWindow {
public:
    static constexpr uint32 kNamed = FourCC("flnm");

    // What is recorded, and how it looks. Portal and history are not owned.
    struct Subject {
        EpochPortal* portal;
        const RunHistory* history;
        FilmRuns runs;
        FilmView view;
        double pace;       // s of the simulation in a second, at first
        std::string name;  // that is proposed
    };

    FilmWindow(Subject subject, const DisplayContext& context);
    ~FilmWindow() override;

    void MessageReceived(BMessage* message) override;

private:
    enum class Form { kPngs, kMp4 };

    void AddRow(BGroupView* column, BView* field, int32 label);
    void AddButtons(BGroupView* column);
    // What is typed; false: it is nothing, and the user is told why.
    [[nodiscard]] bool TakeTyped();
    [[nodiscard]] double PaceUnit() const;
    [[nodiscard]] FilmPlan Plan() const;
    void ShowLength();
    void RequestName();
    void Record(const BMessage& place);
    void ShowEnd(int error);
    void Say(int32 text, std::initializer_list<std::string_view> values);

    const Subject subject_;
    const DisplayContext& context_;
    NumberTextControl* const pace_;
    NumberTextControl* const rate_;
    BChoiceField* const height_;
    BChoiceField* const form_;
    BStringView* const news_;
    BButton* record_ = nullptr;
    double pacePerSecond_;
    int32 framesPerSecond_ = FilmPlan::kUsualRate;
    int64 pixels_ = 0;  // of the height; 0: as in the display
    Form chosenForm_ = Form::kPngs;
    std::string path_;
    std::unique_ptr<BFilePanel> panel_;
    std::unique_ptr<FilmRecorder> recorder_;
};
