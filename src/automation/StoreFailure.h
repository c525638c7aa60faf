#pragma once
// What a command tells its user after look-ups in the table store. The
// look-ups themselves end softly, in an empty list or record, when a file
// cannot be opened; the store keeps that failure (LastStoreOpenError), and
// this says what it means for the answer.

#include <string>

#include "store/modDAO.h"

namespace qvrl {

enum class StoreFailureKind {
    None,         // every file opened
    Corrections,  // only the user's town corrections: the shipped rows stand, uncorrected
    Data,         // a file the answer rests on: the answer is empty or wrong
};

struct StoreFailure {
    StoreFailureKind Kind = StoreFailureKind::None;
    StoreOpenError Error;
    // "error N: <description naming the file>", empty for None.
    std::string Message() const;
};

// The failure kept since the last ClearStoreOpenError, classified.
StoreFailure LastStoreFailure();

}  // namespace qvrl
