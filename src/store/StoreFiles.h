#pragma once
// Where a database of the table store lies. The shipped files in the program
// folder are derived from data/sql and replaced by every build or install;
// whatever a user imports lives in a file of the same name in the per-user
// folder, which a rebuild never touches.

#include <string>

namespace qvrl {

// The shipped file of that name, in the program folder.
std::string ShippedStoreFile(const std::string& name);

// The user's own file of that name, in the per-user folder (it may not exist).
std::string UserStoreFile(const std::string& name);

// The file a look-up opens: the one chosen by SetStoreFileOverride, else the
// user's own where it exists, else the shipped one.
std::string StoreFile(const std::string& name);

// The file a look-up of shipped-only tables opens (those no import writes:
// the live load catalogue, the pressure coefficients): the chosen one, else
// the shipped one, so that a user's copy made by an older release neither
// lacks tables added since nor hides rows corrected since.
std::string ShippedDataFile(const std::string& name);

// The file an import writes: the chosen one, else the user's own, made on
// first use as a copy of the shipped file (schema and shipped rows) so that
// every look-up still finds what the shipped file holds. Raises the store's
// error naming the file when it cannot be made.
std::string WritableStoreFile(const std::string& name);

// Points every use of `name` at `path` for the rest of the process (the
// commands' --db); an empty path goes back to the rule above. Connections the
// modules hold are dropped so the next look-up opens the new file.
void SetStoreFileOverride(const std::string& name, const std::string& path);

}  // namespace qvrl
