// Tells what is wrong with a document: with the form of its record, and with the epochs made from
// it. No state; the caller has the tree to itself.
#pragma once

#include <memory>
#include <vector>

#include "DocumentError.h"

class AbEpoch;
class BMessage;

// Looks at every nested record: those who make objects of records leave out what is damaged.
DocumentError CheckRecord(const BMessage& record);

// The first fault in visiting order: no epoch at all; a time, position, velocity, mass or radius
// that is not finite. A calculator state that does not fit is none: the calculator leaves it.
DocumentError CheckEpochs(const std::vector<std::unique_ptr<AbEpoch>>& topLevel);
