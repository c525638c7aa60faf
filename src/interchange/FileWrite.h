#pragma once
// Replacing a file the user owns without ever leaving it empty or half
// written: the new bytes go to a temporary file beside it, which is renamed
// over the old one.

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace qvrl {

// Writes bytes to path as one step. An existing file keeps its permissions
// (and its owner where the process may set it); a new file gets newMode, or
// 0666 less the umask when none is given. A symbolic link is followed, so the
// file it names is replaced. On failure the old file stays as it was, no
// temporary file is left, and the error is raised: 76 when the folder is
// missing, 61 when the disk is full, 70 when access is denied, else 75.
void ReplaceFile(const std::string& path, std::string_view bytes, std::optional<mode_t> newMode = std::nullopt);

// Tests only: make the following rewrites fail once failAfterBytes bytes are
// written, as a full disk would (-1: never; a text no longer than that is
// written whole), or at the rename. Reset with the module state.
void SetFileWriteFault(int64_t failAfterBytes, bool failAtRename);
// Flush to disk before the rename (on unless switched off).
void SetFileWriteSync(bool on);

}  // namespace qvrl
