#pragma once
// The trace log. An entry is gathered in memory and reaches the file in one
// append when the log is closed, so that entries of several processes never
// interleave. A log appended to past kTraceLogLimit bytes is first renamed to
// NAME.1 (the one older file kept), and the entry starts a new one.

#include <cstdint>
#include <optional>
#include <string>

#include "support/vb.h"

namespace qvrl {

constexpr int64_t kTraceLogLimit = 10 * 1024 * 1024;
// How much a process appends before it measures the log again.
constexpr int64_t kTraceRecheck = 64 * 1024;

class CTrace {
public:
    CTrace() = default;
    CTrace(const CTrace&) = delete;
    CTrace& operator=(const CTrace&) = delete;
    ~CTrace();

    // 1; -99 if already open. A file that cannot be opened is error 75
    // (76 when its folder is missing).
    int16_t OpenLogFile(const std::string& fileName, bool append);
    // 0; -99 if not open.
    int16_t CloseLogFile();
    // The last step taken (1 prefix, 2 name and value, 3 line end), 0 if none; -99 if not open.
    int16_t Trace(const std::string& name, const std::optional<Variant>& value, const std::string& prefix,
                  bool lineEnd);

private:
    // Both return the file the entry went to, which the caller closes.
    int Flush(int fd);
    int RotateIfFull(int fd);
    int fd_ = -1;
    bool open_ = false;
    bool append_ = false;
    std::string fileName_;
    std::string pending_;
};

// The file every trace goes to.
std::string TraceFileName();

// One entry, standing alone: opens the log for appending, writes, closes.
// Returns 0; a log that cannot be written loses the entry and raises nothing.
int16_t WriteTrace(const std::string& name, const std::optional<Variant>& value = std::nullopt,
                   const std::string& prefix = {}, bool lineEnd = false, bool withTime = false);

}  // namespace qvrl
