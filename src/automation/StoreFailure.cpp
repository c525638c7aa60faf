#include "automation/StoreFailure.h"

#include "location/modAGSMdb.h"

namespace qvrl {

std::string StoreFailure::Message() const {
    if (Kind == StoreFailureKind::None) return {};
    std::string text = Error.Description;
    if (text.find(Error.File) == std::string::npos) text = Error.File + ": " + text;
    return "error " + std::to_string(Error.Number) + ": " + text;
}

StoreFailure LastStoreFailure() {
    StoreFailure f;
    f.Error = LastStoreOpenError();
    if (f.Error.Number == 0) return f;
    // The store keeps the last failure only; a look-up opens the corrections
    // after the shipped file, so a failure of the shipped file is never hidden
    // behind one of the corrections.
    f.Kind = f.Error.File == UserTownDbPath() ? StoreFailureKind::Corrections : StoreFailureKind::Data;
    return f;
}

}  // namespace qvrl
