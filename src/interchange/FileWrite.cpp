#include "interchange/FileWrite.h"

#include <fcntl.h>
#include <sys/file.h>
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

std::string TempPrefix(const fs::path& target) { return "." + target.filename().string() + ".tmp-"; }

std::string TempNameFor(const fs::path& target, unsigned attempt) {
    static std::atomic<unsigned> counter{0};
    const std::string leaf = TempPrefix(target) + std::to_string(::getpid()) + "-" + std::to_string(counter++) +
                             "-" + std::to_string(attempt);
    return (target.parent_path() / leaf).string();
}

// Only a writer that holds the lock makes temporary files, so one found by
// the holder was left by a writer that died.
void RemoveStaleTemps(const fs::path& target) {
    const std::string prefix = TempPrefix(target);
    const fs::path dir = target.parent_path().empty() ? fs::path(".") : target.parent_path();
    std::error_code ec;
    for (fs::directory_iterator it(dir, ec), end; !ec && it != end; it.increment(ec)) {
        const std::string name = it->path().filename().string();
        if (!name.starts_with(prefix) || name.size() == prefix.size()) continue;
        // The rest must be our pid-counter-attempt, so that ".a.tmp-1.tmp-…" of a file "a.tmp-1" is spared.
        if (name.find_first_not_of("0123456789-", prefix.size()) != std::string::npos) continue;
        ::unlink(it->path().c_str());
    }
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

const char* KindOf(mode_t mode) {
    if (S_ISDIR(mode)) return "a folder";
    if (S_ISFIFO(mode)) return "a FIFO";
    if (S_ISCHR(mode) || S_ISBLK(mode)) return "a device";
    if (S_ISSOCK(mode)) return "a socket";
    return "not a regular file";
}

// A symbolic link is followed to the end; one that names nothing is refused
// rather than made to name a new file.
fs::path Resolve(const std::string& pathText) {
    const fs::path path(pathText);
    struct stat ls {};
    if (::lstat(path.c_str(), &ls) != 0 || !S_ISLNK(ls.st_mode)) return path;
    std::error_code ec;
    fs::path real = fs::canonical(path, ec);
    if (ec)
        Raise(err::FileAccess, pathText,
              "'" + pathText + "' is a symbolic link to nothing; it was not replaced");
    return real;
}

// Whether the target exists, with its status. Raises what CheckRewriteTarget documents.
bool Inspect(const fs::path& target, const std::string& shown, struct stat& st) {
    if (::stat(target.c_str(), &st) != 0) {
        const int e = errno;
        if (e != ENOENT) RaiseWrite(e, shown);
        const fs::path dir = target.parent_path().empty() ? fs::path(".") : target.parent_path();
        struct stat ds {};
        if (::stat(dir.c_str(), &ds) != 0 || !S_ISDIR(ds.st_mode)) RaiseWrite(ENOENT, shown);
        return false;
    }
    if (!S_ISREG(st.st_mode))
        Raise(err::FileAccess, shown,
              "'" + shown + "' is " + KindOf(st.st_mode) + ", not a regular file; it was not replaced");
    if (::faccessat(AT_FDCWD, target.c_str(), W_OK, AT_EACCESS) != 0) {
        const int e = errno;
        if (e == EACCES || e == EPERM || e == EROFS)
            Raise(70, shown, "Permission denied: '" + shown + "' is write-protected; it was not changed");
        RaiseWrite(e, shown);
    }
    // Only a privileged process may give the new file another user's ownership.
    if (st.st_uid != ::geteuid() && ::geteuid() != 0)
        Raise(70, shown,
              "Permission denied: '" + shown + "' belongs to another user, and a rewrite would take it over; "
              "it was not changed");
    return true;
}

}  // namespace

std::string CheckRewriteTarget(const std::string& path) {
    const fs::path target = Resolve(path);
    struct stat st {};
    (void)Inspect(target, path, st);
    return target.string();
}

FileRewrite::FileRewrite(const std::string& path, std::optional<mode_t> newMode) : newMode_(newMode) {
    const fs::path target = Resolve(path);
    target_ = target.string();
    (void)Inspect(target, path, old_);

    lockName_ = (target.parent_path() / ("." + target.filename().string() + ".lock")).string();
    for (;;) {
        const int fd = ::open(lockName_.c_str(), O_RDONLY | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666);
        if (fd < 0) RaiseWrite(errno, path);
        int rc;
        while ((rc = ::flock(fd, LOCK_EX)) != 0 && errno == EINTR) {
        }
        if (rc != 0) {
            const int e = errno;
            ::close(fd);
            RaiseWrite(e, path);
        }
        // The holder before us may have removed the lock file: then ours is a
        // lock on nothing, and the one now under that name counts.
        struct stat held {}, named {};
        if (::fstat(fd, &held) == 0 && ::stat(lockName_.c_str(), &named) == 0 && held.st_dev == named.st_dev &&
            held.st_ino == named.st_ino) {
            lockFd_ = fd;
            break;
        }
        ::close(fd);
    }
    try {
        // What we saw before waiting may have changed meanwhile.
        exists_ = Inspect(target, path, old_);
        RemoveStaleTemps(target);
    } catch (...) {
        ::unlink(lockName_.c_str());
        ::close(lockFd_);
        lockFd_ = -1;
        throw;
    }
}

FileRewrite::~FileRewrite() {
    if (lockFd_ < 0) return;
    ::unlink(lockName_.c_str());
    ::close(lockFd_);
}

void FileRewrite::Commit(std::string_view bytes) {
    if (committed_) Raise(err::FileAccess, target_, "'" + target_ + "' was already rewritten");
    committed_ = true;
    const fs::path target(target_);

    TempFile tmp;
    for (unsigned attempt = 0; tmp.fd < 0; ++attempt) {
        const std::string name = TempNameFor(target, attempt);
        // Open to others only once the final permissions are set.
        const mode_t createMode = exists_ || newMode_ ? 0600 : 0666;
        const int fd = ::open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, createMode);
        if (fd >= 0) {
            tmp.fd = fd;
            tmp.name = name;
        } else if (errno != EEXIST || attempt >= 100) {
            RaiseWrite(errno, target_);
        }
    }
    if (exists_) {
        if ((old_.st_uid != ::geteuid() || old_.st_gid != ::getegid()) &&
            ::fchown(tmp.fd, old_.st_uid, old_.st_gid) != 0 && old_.st_uid != ::geteuid())
            Raise(70, target_, "Permission denied: the owner of '" + target_ + "' cannot be kept; it was not changed");
        if (::fchmod(tmp.fd, old_.st_mode & 07777) != 0) RaiseWrite(errno, target_);
    } else if (newMode_) {
        if (::fchmod(tmp.fd, *newMode_ & 07777) != 0) RaiseWrite(errno, target_);
    }

    WriteAll(tmp.fd, bytes, target_);
    if (State().FileWriteSync && ::fsync(tmp.fd) != 0) RaiseWrite(errno, target_);
    const int fd = tmp.fd;
    tmp.fd = -1;
    if (::close(fd) != 0) RaiseWrite(errno, target_);

    if (State().FileWriteFailAtRename) RaiseWrite(EIO, target_);
    if (::rename(tmp.name.c_str(), target.c_str()) != 0) RaiseWrite(errno, target_);
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

void ReplaceFile(const std::string& path, std::string_view bytes, std::optional<mode_t> newMode) {
    FileRewrite rewrite(path, newMode);
    rewrite.Commit(bytes);
}

void SetFileWriteFault(int64_t failAfterBytes, bool failAtRename) {
    State().FileWriteFailAfter = failAfterBytes;
    State().FileWriteFailAtRename = failAtRename;
}

void SetFileWriteSync(bool on) { State().FileWriteSync = on; }

}  // namespace qvrl
