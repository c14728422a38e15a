#pragma once

#include <arborium/base/KbString.h>

#include <cstdint>
#include <string>
#include <string_view>

/// Files and paths. A path that is not Unicode is handed to the system as its bytes where these are
/// UTF-8, else as the UTF-8 of its characters.
class ARBORIUM_API KbFileHelper {
public:
    /// What became of a file that was to be read.
    enum class Status {
        Ok,
        NotFound,
        NotRegular, ///< A directory, device, pipe or socket.
        TooLarge,
        Failed ///< Not permitted, or the device failed.
    };

    /// 1 if the path can be used, else 0; `mode` 0 asks for existence, else the sum of 4 (read),
    /// 2 (write) and 1 (execute).
    static int isAccessible(const KbString& path, int mode = 0);
    /// Links are followed. FALSE where nothing of that name exists.
    static bool isRegularFile(const KbString& path);
    static bool isDirectory(const KbString& path);

    /// With "/" for every backslash.
    static KbString toUnixPath(const KbString& path);
    /// Replaces a leading "~" (alone or before "/") by the home directory and each $NAME and ${NAME} by
    /// that preference or environment value. What is not set stays as written. No shell is involved.
    static KbString expandString(const KbString& text);
    /// The bytes that the system knows the path by.
    static std::string toNative(const KbString& path);

    /// What stands in front of the last "/"; "." where there is none, "/" for a name in the root.
    static KbString getDirectory(const KbString& path);
    /// What stands behind the last "/"; empty for a path that ends in one.
    static KbString getFileName(const KbString& path);
    /// Whether it begins with "/".
    static bool isAbsolute(const KbString& path);
    /// `name` below `directory`, with one "/" between them; `name` itself if it is absolute or
    /// `directory` is empty.
    static KbString join(const KbString& directory, const KbString& name);
    /// The absolute path without links, "." and ".."; empty where nothing of that name exists.
    static KbString getRealPath(const KbString& path);

    /// Reads a regular file of at most `limit` bytes. `bytes` changes only with `Ok`. Never waits on
    /// a pipe.
    static Status readWholeFile(const KbString& path, std::uint64_t limit, std::string& bytes);
    /// Replaces the file as one step: a temporary file beside it is written, flushed to the device and
    /// renamed. On failure the former file is as it was, and `*error` says why.
    static bool writeFileAtomically(const KbString& path, std::string_view bytes,
                                    KbString* error = nullptr);
};
