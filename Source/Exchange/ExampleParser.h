// Reads the text of an example, one statement a line; Examples/README.md describes the form. Owned
// by the caller, used on one thread, one text after the other.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Exchange/ExampleLine.h"
#include "Exchange/ExampleText.h"

class ExampleParser {
public:
    explicit ExampleParser(const ProgramResources& resources) : line_(resources) {}

    // For bodies alone, without the epoch that a document needs.
    void SetNeedsEpoch(bool needsEpoch) { needsEpoch_ = needsEpoch; }
    // False when something is wrong: Line() and Reason() then say where and what.
    [[nodiscard]] bool Parse(std::string_view text, ExampleText* result);
    [[nodiscard]] int Line() const { return lineNumber_; }
    [[nodiscard]] const std::string& Reason() const { return line_.Reason(); }

private:
    using Quantity = ExampleLine::Quantity;
    using Kind = ExampleSystem::Kind;
    struct Statement;
    static const Statement kStatements[];

    bool ParseLine(std::string_view text);

    // Statements about the whole.
    bool ReadTime();
    bool ReadYesOrNo(bool* value);
    bool ReadCutoff();
    bool ReadNatural();
    bool ReadPicture();
    bool ReadMention(ExampleMention* mention);
    bool ReadTurning();
    bool ReadCamera();
    bool ReadShow();

    // Those that open and close a system.
    bool Open(Kind kind);
    bool ReadEnd();
    void Close();
    void CloseLeaf();

    // Those about the system that is open.
    bool ReadMass();
    bool ReadSeed();
    bool ReadSpeeds();
    bool ReadPlace(std::optional<ThreeVector>* place, Quantity quantity);
    bool ReadOrbit();
    bool ReadElements(KeplerOrbit* orbit);
    bool ReadAngle(double* radians);
    bool ReadColorOrOff(bool* on, rgb_color* color);
    [[nodiscard]] ExampleSystem& Current() { return open_.back(); }

    ExampleLine line_;
    int lineNumber_ = 0;
    bool needsEpoch_ = true;
    ExampleText text_;
    // The systems that are open, outermost first; only the last can be other than a group.
    std::vector<ExampleSystem> open_;
};
