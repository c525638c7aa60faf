#pragma once
// Replacing a file the user owns without ever leaving it empty or half
// written: the new bytes go to a temporary file beside it, which is renamed
// over the old one. A read-modify-write holds a lock for its whole length, so
// that a second writer of the same file waits and then sees the first one's
// result.

#include <sys/stat.h>
#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qvrl {

// The file a rewrite of path replaces: a symbolic link is followed to the file
// it names, which is replaced in its own folder. Raises 75 when that is not a
// regular file (a folder, a FIFO, a device, a link that names nothing), 70 when
// the process may not open it for writing (a write-protected file), 76 when
// the folder is missing. A file that does not exist yet is fine.
//
// Write protection is what the system says for an open for writing, so root,
// who may write any file in place, may rewrite a file of mode 444 as well:
// the rewrite grants no more and no less than an in-place write would.
std::string CheckRewriteTarget(const std::string& path);

// One read-modify-write of a file. The constructor checks the target as
// above and takes an exclusive advisory lock on ".NAME.lock" beside it (the
// file itself is replaced by each rename, so it cannot carry the lock); it
// then removes the temporary files that a killed writer left. Read the file
// only after that. Commit replaces it in one rename. The lock file goes away
// with the last writer; one left by a killed writer is taken over by the next.
class FileRewrite {
public:
    // A new file gets newMode, or 0666 less the umask when none is given.
    explicit FileRewrite(const std::string& path, std::optional<mode_t> newMode = std::nullopt);
    FileRewrite(const FileRewrite&) = delete;
    FileRewrite& operator=(const FileRewrite&) = delete;
    ~FileRewrite();

    // The regular file that is replaced.
    const std::string& Target() const { return target_; }
    // The file existed when the lock was taken.
    bool Exists() const { return exists_; }
    // Writes bytes as the file's new content. An existing file keeps its mode
    // and owner; where the owner cannot be kept (a file of another user that
    // is open to a group), the file is left alone and 70 is raised. On failure
    // the old file stays as it was and no temporary file is left: 61 when the
    // disk is full, 70 when access is denied, else 75. Once only.
    void Commit(std::string_view bytes);

private:
    std::string target_;
    std::string lockName_;
    int lockFd_ = -1;
    bool exists_ = false;
    bool committed_ = false;
    struct stat old_ {};
    std::optional<mode_t> newMode_;
};

// A FileRewrite with nothing to read: the whole new content at once.
void ReplaceFile(const std::string& path, std::string_view bytes, std::optional<mode_t> newMode = std::nullopt);

// Tests only: make the following rewrites fail once failAfterBytes bytes are
// written, as a full disk would (-1: never; a text no longer than that is
// written whole), or at the rename. Reset with the module state.
void SetFileWriteFault(int64_t failAfterBytes, bool failAtRename);
// Flush to disk before the rename (on unless switched off).
void SetFileWriteSync(bool on);

}  // namespace qvrl
