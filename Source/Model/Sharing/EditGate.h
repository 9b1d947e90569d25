// Who is asked before the user edits what the focus epoch records, so that another epoch may come
// into focus first. False: that was lost, and nothing is to be edited. A higher floor implements
// it. Called on any thread that holds no lock of the document.
#pragma once

class EditGate {
public:
    virtual ~EditGate() = default;

    virtual bool BeforeEdit() = 0;

protected:
    EditGate() = default;
    EditGate(const EditGate&) = default;
    EditGate& operator=(const EditGate&) = default;
};
