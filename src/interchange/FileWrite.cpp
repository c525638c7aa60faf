#include "interchange/FileWrite.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <filesystem>
#include <system_error>

#include "support/ModuleState.h"
#include "support/errors.h"

namespace fs = std::filesystem;

namespace qvrl {

namespace {

[[noreturn]] void RaiseWrite(int e, const std::string& path) {
    switch (e) {
    case ENOENT:
    case ENOTDIR: Raise(err::PathNotFound, path, ErrorDescription(err::PathNotFound) + " ('" + path + "')");
    case ENOSPC:
    case EDQUOT: Raise(61, path, "Disk full ('" + path + "')");
    case EACCES:
    case EPERM:
    case EROFS: Raise(70, path, "Permission denied ('" + path + "')");
    default: Raise(err::FileAccess, path, ErrorDescription(err::FileAccess) + " ('" + path + "')");
    }
}

// Removes the temporary file on every way out that is not a successful rename.
class TempFile {
public:
    TempFile() = default;
    TempFile(const TempFile&) = delete;
    TempFile& operator=(const TempFile&) = delete;
    ~TempFile() {
        if (fd >= 0) ::close(fd);
        if (!name.empty()) ::unlink(name.c_str());
    }
    int fd = -1;
    std::string name;
};

std::string TempNameFor(const fs::path& target, unsigned attempt) {
    static std::atomic<unsigned> counter{0};
    const fs::path dir = target.parent_path();
    const std::string leaf = "." + target.filename().string() + ".tmp" + std::to_string(::getpid()) + "-" +
                             std::to_string(counter++) + "-" + std::to_string(attempt);
    return (dir.empty() ? fs::path(leaf) : dir / leaf).string();
}

void WriteAll(int fd, std::string_view bytes, const std::string& path) {
    const int64_t failAfter = State().FileWriteFailAfter;
    size_t limit = bytes.size();
    if (failAfter >= 0 && static_cast<uint64_t>(failAfter) < bytes.size()) limit = static_cast<size_t>(failAfter);
    size_t done = 0;
    while (done < limit) {
        const ssize_t n = ::write(fd, bytes.data() + done, limit - done);
        if (n < 0) {
            if (errno == EINTR) continue;
            RaiseWrite(errno, path);
        }
        done += static_cast<size_t>(n);
    }
    if (limit < bytes.size()) RaiseWrite(ENOSPC, path);  // the test fault: as if the disk ran full
}

}  // namespace

void ReplaceFile(const std::string& pathText, std::string_view bytes, std::optional<mode_t> newMode) {
    fs::path target(pathText);
    std::error_code ec;
    if (fs::is_symlink(target, ec)) {
        const fs::path real = fs::weakly_canonical(target, ec);
        if (!ec) target = real;
    }

    struct stat old {};
    const bool exists = ::stat(target.c_str(), &old) == 0;
    if (exists && S_ISDIR(old.st_mode)) RaiseWrite(EISDIR, pathText);

    TempFile tmp;
    for (unsigned attempt = 0; tmp.fd < 0; ++attempt) {
        const std::string name = TempNameFor(target, attempt);
        // Open to others only once the final permissions are set.
        const mode_t createMode = exists || newMode ? 0600 : 0666;
        const int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, createMode);
        if (fd >= 0) {
            tmp.fd = fd;
            tmp.name = name;
        } else if (errno != EEXIST || attempt >= 100) {
            RaiseWrite(errno, pathText);
        }
    }
    if (exists) {
        if (old.st_uid != ::geteuid() || old.st_gid != ::getegid())
            (void)::fchown(tmp.fd, old.st_uid, old.st_gid);  // only a privileged process may; the mode still holds
        if (::fchmod(tmp.fd, old.st_mode & 07777) != 0) RaiseWrite(errno, pathText);
    } else if (newMode) {
        if (::fchmod(tmp.fd, *newMode & 07777) != 0) RaiseWrite(errno, pathText);
    }

    WriteAll(tmp.fd, bytes, pathText);
    if (State().FileWriteSync && ::fsync(tmp.fd) != 0) RaiseWrite(errno, pathText);
    const int fd = tmp.fd;
    tmp.fd = -1;
    if (::close(fd) != 0) RaiseWrite(errno, pathText);

    if (State().FileWriteFailAtRename) RaiseWrite(EIO, pathText);
    if (::rename(tmp.name.c_str(), target.c_str()) != 0) RaiseWrite(errno, pathText);
    tmp.name.clear();

    if (State().FileWriteSync) {
        // Make the rename itself durable; a folder that cannot be opened only costs that.
        const fs::path dir = target.parent_path().empty() ? fs::path(".") : target.parent_path();
        const int dfd = ::open(dir.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (dfd >= 0) {
            (void)::fsync(dfd);
            ::close(dfd);
        }
    }
}

void SetFileWriteFault(int64_t failAfterBytes, bool failAtRename) {
    State().FileWriteFailAfter = failAfterBytes;
    State().FileWriteFailAtRename = failAtRename;
}

void SetFileWriteSync(bool on) { State().FileWriteSync = on; }

}  // namespace qvrl
