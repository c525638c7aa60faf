#include "support/CTrace.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "support/ModuleState.h"
#include "support/errors.h"
#include "support/modLowLevel.h"

namespace qvrl {

namespace {

bool SameFile(const struct stat& a, const struct stat& b) { return a.st_dev == b.st_dev && a.st_ino == b.st_ino; }

}  // namespace

CTrace::~CTrace() {
    if (open_) {
        try {
            CloseLogFile();
        } catch (...) {
            // a destructor must not throw; the entry is lost
        }
    }
}

int16_t CTrace::OpenLogFile(const std::string& fileName, bool append) {
    if (open_) return -99;
    const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | (append ? O_APPEND : O_TRUNC);
    const int fd = ::open(fileName.c_str(), flags, 0644);
    if (fd < 0) {
        const int e = errno;
        Raise(e == ENOENT || e == ENOTDIR ? 76 : 75, "CTrace.OpenLogFile",
              (e == ENOENT || e == ENOTDIR ? "Path not found: " : "Path/File access error: ") + fileName);
    }
    fd_ = fd;
    append_ = append;
    fileName_ = fileName;
    open_ = true;
    pending_.clear();
    return 1;
}

int CTrace::RotateIfFull(int fd) {
    // Other processes append too, so the estimate is re-measured at least
    // every kTraceRecheck bytes of our own; between, a look costs a syscall
    // for nothing.
    ModuleState& st = State();
    if (st.TraceSizeFile != fileName_) {
        st.TraceSizeFile = fileName_;
        st.TraceSizeSeen = -1;
    }
    const int64_t written = st.TraceBytesSince + static_cast<int64_t>(pending_.size());
    if (st.TraceSizeSeen >= 0 && written < kTraceRecheck && st.TraceSizeSeen + written <= kTraceLogLimit) {
        st.TraceBytesSince = written;
        return fd;
    }
    struct stat mine {};
    if (::fstat(fd, &mine) != 0) return fd;
    st.TraceSizeSeen = mine.st_size;
    st.TraceBytesSince = static_cast<int64_t>(pending_.size());
    if (mine.st_size <= kTraceLogLimit) return fd;
    st.TraceSizeSeen = 0;
    // Whoever holds the lock of the full file renames it; a second process
    // that waited for it then finds a new file under the name and only
    // writes there, so one rotation never moves the other's fresh file.
    while (::flock(fd, LOCK_EX) != 0)
        if (errno != EINTR) return fd;
    struct stat named {};
    if (::stat(fileName_.c_str(), &named) == 0 && SameFile(mine, named))
        (void)::rename(fileName_.c_str(), (fileName_ + ".1").c_str());
    const int fresh = ::open(fileName_.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644);
    ::flock(fd, LOCK_UN);
    if (fresh < 0) return fd;  // the entry goes to the old file rather than nowhere
    ::close(fd);
    return fresh;
}

int CTrace::Flush(int fd) {
    if (append_) fd = RotateIfFull(fd);
    // One write, so that the entries of several processes never interleave.
    size_t done = 0;
    while (done < pending_.size()) {
        const ssize_t n = ::write(fd, pending_.data() + done, pending_.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            pending_.clear();
            ::close(fd);
            Raise(75, "CTrace.Trace", "Path/File access error");
        }
        done += static_cast<size_t>(n);
    }
    pending_.clear();
    return fd;
}

int16_t CTrace::CloseLogFile() {
    if (!open_) return -99;
    open_ = false;
    const int fd = fd_;
    fd_ = -1;
    ::close(Flush(fd));
    return 0;
}

int16_t CTrace::Trace(const std::string& name, const std::optional<Variant>& value, const std::string& prefix,
                      bool lineEnd) {
    if (!open_) return -99;
    int16_t step = 0;
    if (!Trim(prefix).empty()) {
        pending_ += UCase(prefix) + ": ";
        step = 1;
    }
    if (!Trim(name).empty()) {
        std::string text;
        if (value && !value->isEmpty() && !value->isNull()) text = Trim(value->toString());
        pending_ += name + "=" + text + " ";
        step = 2;
    }
    if (lineEnd) {
        pending_ += "\n";
        step = 3;
    }
    return step;
}

std::string TraceFileName() { return UserDataFolder() + "rlTrace.log"; }

int16_t WriteTrace(const std::string& name, const std::optional<Variant>& value, const std::string& prefix,
                   bool lineEnd, bool withTime) {
    // A log that cannot be written costs its entry, never the call it traces.
    try {
        CTrace t;
        t.OpenLogFile(TraceFileName(), true);
        if (withTime) t.Trace("Now", Variant(FormatDate(Now(), "yyyy.mm.dd hh:mm:ss")), {}, false);
        t.Trace(name, value, prefix, lineEnd);
        t.CloseLogFile();
    } catch (...) {
    }
    return 0;
}

}  // namespace qvrl
