#include <iostream>

#include "commands.h"

namespace qvrl::cli {

bool StopOnDataFailure(const StoreFailure& f, const char* command, bool json) {
    if (f.Kind != StoreFailureKind::Data) return false;
    std::cerr << "qvroofload " << command << ": " << f.Message() << "\n";
    if (json)
        std::cout << nlohmann::ordered_json{{"error",
                                             {{"number", f.Error.Number},
                                              {"file", f.Error.File},
                                              {"description", f.Error.Description}}}}
                         .dump(2)
                  << "\n";
    return true;
}

int WarnOnCorrections(const StoreFailure& f, const char* command, int status) {
    if (f.Kind != StoreFailureKind::Corrections) return status;
    std::cerr << "qvroofload " << command
              << ": warning: your corrections were left out, the values shown are the shipped ones: " << f.Message()
              << "\n";
    return status == 0 ? 1 : status;
}

}  // namespace qvrl::cli
