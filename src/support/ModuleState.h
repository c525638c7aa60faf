#pragma once
// The one home of process-wide state. Whatever lives as long as the process
// and is shared by all objects is a named member here; nothing else keeps
// globals. Objects are used from one thread at a time.

#include <cstdint>
#include <map>
#include <memory>
#include <string>

namespace qvrl {

class CLocLite;
class Database;
class Platform;
struct CpeTextRows;

struct ModuleState {
    // User interface services; headless unless a host installs another.
    std::shared_ptr<Platform> platform;
    // Set once a host or a command chose the platform (SetPlatform).
    bool PlatformChosen = false;

    // Language objects: the active language and the German fallback. Created
    // by the first object that needs texts.
    std::unique_ptr<CLocLite> locActive;
    std::unique_ptr<CLocLite> locFallback;
    int32_t nextLanguageHandle = 1;

    // Set of selectable standards, as "_1_3_".
    std::string SelectableCodesCtrl;
    bool UseBauforschungsbericht = false;
    // Version of the block file last read.
    int16_t FileVersion = 0;
    // Rewrites of the user's files (interchange/FileWrite.h): flush to disk
    // before the rename; benchmarks switch it off.
    bool FileWriteSync = true;
    // Test faults for those rewrites: fail once this many bytes are written
    // (-1 never), or at the rename.
    int64_t FileWriteFailAfter = -1;
    bool FileWriteFailAtRename = false;
    // Norm codes the snow and wind zone tables are opened for (modSLZMdb,
    // modWLZMdb), each module its own; 0 until one is set.
    int16_t SlzNorm = 0;
    int16_t WlzNorm = 0;
    // Once a database could not be opened in place, copies in the temporary
    // folder are used for the rest of the process.
    bool CopyToTemp = false;
    // The last database OpenDB could not open, with the store's error number
    // and a text naming the file; 0 when none since it was last cleared.
    int32_t StoreOpenErrorNumber = 0;
    std::string StoreOpenErrorFile;
    std::string StoreOpenErrorText;
    // Folders once found (modLowLevel): the data folder beside the library,
    // and the per-user folder made or found for the environment it came from,
    // so that a look-up does not probe the disk for them again.
    std::string ProgramFolderFound;
    std::string UserFolderMade;
    // The trace log's size as this process last saw it, and what it appended
    // since: the log is measured again only when that could pass the limit.
    std::string TraceSizeFile;
    int64_t TraceSizeSeen = -1;
    int64_t TraceBytesSince = 0;
    // Database files chosen by name for this process (store/StoreFiles.h).
    std::map<std::string, std::string> StoreFileOverrides;
    // modWindCpMdb: qvrlcpe.txt stands beside the component and replaces the
    // store; settled anew by each InitCpeMdb.
    bool UseCpeTxt = false;
    // modWindCpMdb: the rows of qvrlcpe.txt as last read, with the size and
    // time stamp they were read at.
    std::shared_ptr<const CpeTextRows> CpeText;

    // QVTextBox: the decimal character of the shown numbers (Format itself
    // always writes "."), and what all boxes share while one validates.
    char DecimalChar = '.';
    bool QVTextBoxValidating = false;
    std::string QVTextBoxValidateName;
    bool QVTextBoxError = false;

    // Database connections, each held by the module that opened it and kept
    // until the process ends or its owner drops it.
    std::shared_ptr<Database> CpeDb;         // modWindCpMdb: qvrl.mdb
    std::shared_ptr<Database> FigureDb;      // modWindUK: qvrl.mdb
    std::shared_ptr<Database> SlzDb;         // modSLZMdb: qvrlslz.mdb or qvrlslz_dibt.mdb
    std::shared_ptr<Database> WlzDb;         // modWLZMdb: qvrlwlz.mdb or qvrlwlz_dibt.mdb
    std::shared_ptr<Database> AGSDb;         // modAGSMdb: qvrl.mdb
    std::shared_ptr<Database> AGSUsrDb;      // modAGSMdb: qvrlAGSUsr.mdb
    std::shared_ptr<Database> AGSDbEN;       // modAGSMdb_1: qvrl.mdb
    std::shared_ptr<Database> AGSUsrDbEN;    // modAGSMdb_1: qvrlAGSUsr.mdb
    std::shared_ptr<Database> LiveLoadDb;    // modLiveLoadMDB: qvrl.mdb

    ModuleState();
    ~ModuleState();
};

// The process's state.
ModuleState& State();
// Back to a fresh process (tests).
void ResetModuleState();
// The platform in use; never null.
Platform& CurrentPlatform();
void SetPlatform(std::shared_ptr<Platform> p);

}  // namespace qvrl
