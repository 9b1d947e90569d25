#include "Tests/Model/TestDocument.h"

#include <gtest/gtest.h>

#include "Model/Commands/LockingCommand.h"
#include "Model/Epochs/EpochCursor.h"

status_t TestCalculator::Archive(BMessage* into, bool deep) const {
    const status_t status = AbCalculator::Archive(into, deep);
    return status == B_OK ? into->AddInt32("Segment", segmentLength) : status;
}

TestDocument::TestDocument() : genesis(new Epoch), portal(&chain, &root) {
    root.SetName("");
    genesis->SetName("Genesis");
    root.AddChild(genesis);
    MassSystem* system = genesis->RootSystem();
    system->AddChild(NewBody("Sun", 0, 1024.0, {}));
    auto* pair = NewComposite("Pair", 1);
    pair->AddChild(NewBody("Light", 2, 1.0, {}));
    pair->AddChild(NewBody("Heavy", 3, 3.0, {4.0, 0.0, 0.0}));
    system->AddChild(pair);
    system->AddChild(NewBody("Rock", 4, 0.5, {-8.0, 2.0, 0.0}));
    portal.SetCalculator(&calculator);
    portal.SetEpochTo(genesis);
}

void TestDocument::Run(LCommand* command) {
    (new LockingCommand(command, &portal, true))->Execute();
}

std::vector<AbEpoch*> TestDocument::Epochs() const {
    std::vector<AbEpoch*> epochs;
    for (EpochCursor cursor(portal.RootEpoch()); cursor.GetEpoch(); cursor.Increment())
        epochs.push_back(cursor.GetEpoch());
    return epochs;
}

std::string TestDocument::Snapshot() const {
    std::string bytes;
    for (AbEpoch* epoch : Epochs()) {
        BMessage record;
        EXPECT_EQ(epoch->Archive(&record, false), B_OK);
        record.RemoveName("Calc");
        bytes += Bytes(record) + "children " + std::to_string(epoch->CountChildren());
        if (epoch == portal.FocusEpoch()) bytes += "focus";
    }
    return bytes + std::to_string(portal.FocusSystem()->ID());
}

Body* NewBody(const char* name, int64 id, double m, ThreeVector position) {
    auto* body = new Body(name, id, {1, 2, 3, 255}, {4, 5, 6, 255}, kOriginID);
    body->SetM(m);
    body->SetPosition(position);
    return body;
}

CompositeSystem* NewComposite(const char* name, int64 id) {
    return new CompositeSystem(name, id, DEFAULT_TRAIL_DISC_COLOR, DEFAULT_TRAIL_DISC_COLOR,
                               kOriginID);
}

std::string Bytes(const BMessage& record) {
    std::vector<std::byte> bytes;
    EXPECT_EQ(record.Flatten(&bytes), B_OK);
    return std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

std::string DeepArchive(const BArchivable& object) {
    BMessage record(FourCC("ARCV"));
    EXPECT_EQ(object.Archive(&record, true), B_OK);
    return Bytes(record);
}

std::string FieldNames(const BMessage& record) {
    std::string names, name;
    int32 count = 0;
    for (int32 i = 0; record.GetInfo(B_ANY_TYPE, i, &name, nullptr, &count) == B_OK; i++)
        names += name + '*' + std::to_string(count) + ' ';
    return names;
}
