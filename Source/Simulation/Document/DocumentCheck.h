// Tells what is wrong with a document: with the form of its records, and with an epoch made from
// one. No state; the caller has the tree to itself.
#pragma once

#include "Simulation/Document/DocumentError.h"

class AbEpoch;
class BMessage;

// Look at every nested record: those who make objects of records leave out what is damaged. Of a
// document without its epochs and what is kept of its runs, and of an epoch without its children
// and the calculator's state.
DocumentError CheckRecord(const BMessage& record);
// Of what is kept of runs, all of it.
DocumentError CheckHistory(const BMessage& record);
DocumentError CheckEpochRecord(const BMessage& archive);

// The first fault: a time, position, velocity, mass or radius that is not finite; an
// identifier that is reserved, too large or that of another system of the epoch. Provisional
// identifiers are none.
DocumentError CheckEpoch(const AbEpoch& epoch);
