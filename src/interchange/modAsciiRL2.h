#pragma once
// The user's stored defaults, a block file in the per-user folder, and the
// move of settings files of earlier installations into that folder.

#include <cstdint>
#include <string>

#include "interchange/Records.h"

namespace qvrl {

// The defaults file: an existing file named rldef.asc in any case of letters
// (earlier installations brought "rldef.Asc"), else UserDataFolder() + "rldef.asc".
std::string DefaultsFileName();

// Rewrites the defaults file with comments and the scale factor 10000.
void SaveDefaults(const TownRec& town, const WindLoadRec& wind, const SnowLoadRec& snow, int16_t ctrlNorm,
                  const std::string& selectCodes);
// Reads the defaults file when there is one; otherwise the outputs stay as they
// are. An empty or unreadable file raises as ReadRoofBlocks does.
void ReadDefaults(TownRec& town, WindLoadRec& wind, SnowLoadRec& snow, int16_t& ctrlNorm, std::string& selectCodes);

// Moves qvrlAGSUsr.mdb out of the program folder, and rldef.Asc and rl.cfg out
// of the user's profile folder (else the all-users folder), into the per-user
// folder. A file already there is kept and the arriving one is renamed.
void MigrateSettingsFiles();

}  // namespace qvrl
