#include "Model/Systems/MassSystem.h"

#include <algorithm>

#include "Platform/Application/FieldTable.h"

namespace {

// Of no system. Stands for what was stored as a provisional identifier, so that readers refuse it
// as reserved.
constexpr int64 kUnusedID = -4;

}  // namespace

struct MassSystem::Fields {
    static constexpr FieldTable kTable{
        Field<&MassSystem::id_>{
            .name = "ID",
            .meaning = "0 and up, the same body in every epoch; -3: an epoch's root",
            .missing = kNoSystemID,
            .whenMissing = "a new one"},
    };
};

MassSystem::MassSystem(int64 id) : id_(id) {}

MassSystem::MassSystem(BMessage* archive) : BArchivable(archive) {
    Fields::kTable.Read(*archive, this);
    if (id_ <= kLastProvisionalID) id_ = kUnusedID;
}

status_t MassSystem::Archive(BMessage* into, bool deep) const {
    const status_t status = BArchivable::Archive(into, deep);
    return status == B_OK ? Fields::kTable.Write(*this, into) : status;
}

void MassSystem::DescribeFields(FieldDescriptions* into) {
    Fields::kTable.Describe(into);
}

int64 MassSystem::MaxSystemID() const {
    int64 largest = std::max(id_, kNoSystemID);
    for (int32 i = 0; i < CountChildren(); i++)
        largest = std::max(largest, ChildAt(i)->MaxSystemID());
    return largest;
}

int32 MassSystem::CountBodies() const {
    int32 count = 0;
    for (int32 i = 0; i < CountChildren(); i++)
        count += ChildAt(i)->CountBodies();
    return count;
}

int64 MassSystem::ID() const {
    return id_;
}
