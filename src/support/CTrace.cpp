#include "support/CTrace.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

#include "support/errors.h"
#include "support/modLowLevel.h"

namespace qvrl {

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
    open_ = true;
    pending_.clear();
    return 1;
}

void CTrace::Flush(int fd) {
    size_t done = 0;
    while (done < pending_.size()) {
        const ssize_t n = ::write(fd, pending_.data() + done, pending_.size() - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            pending_.clear();
            Raise(75, "CTrace.Trace", "Path/File access error");
        }
        done += static_cast<size_t>(n);
    }
    pending_.clear();
}

int16_t CTrace::CloseLogFile() {
    if (!open_) return -99;
    open_ = false;
    const int fd = fd_;
    fd_ = -1;
    try {
        Flush(fd);
    } catch (...) {
        ::close(fd);
        throw;
    }
    ::close(fd);
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
    CTrace t;
    t.OpenLogFile(TraceFileName(), true);
    if (withTime) t.Trace("Now", Variant(FormatDate(Now(), "yyyy.mm.dd hh:mm:ss")), {}, false);
    t.Trace(name, value, prefix, lineEnd);
    t.CloseLogFile();
    return 0;
}

}  // namespace qvrl
