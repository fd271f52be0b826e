// The directory tree's path and key rules, pure: node keys, the levels ExpandPath walks, the
// real path a node reports, the drive nodes' images and texts, and the long form of a path the
// platform's file functions take.
#pragma once
#include <cstdint>
#include <string>
#include <vector>

namespace tarn {

// The key of a folder below `parent_key`: the parent's key, "\" and the name (one "\" only,
// also below a key that ends with one, such as a root given as "C:\").
std::wstring ChildKey(const std::wstring &parent_key, const std::wstring &name);

// The longest path the platform's file functions take, in characters.
constexpr size_t kLongestPath = 32767;

// The keys ExpandPath selects and expands, top first: for a path that is not blank, a "\" is
// added when it does not end with one, the path is split at "\", and level i (1 to the count
// of pieces less one) is the first piece, or the previous level's key, "\" and piece i. A path
// longer than any folder's has no levels.
std::vector<std::wstring> ExpandPathLevels(const std::wstring &path);

// Every occurrence of `find` in `text` replaced by `with`; the text unchanged when `find` is
// empty.
std::wstring ReplaceAll(const std::wstring &text, const std::wstring &find, const std::wstring &with);

// The real path of a node from its texts, top-level first. Below a drive node (`drive_key`,
// "C:") the drive's text is its key, and a drive node itself is its root ("C:\"); then every
// occurrence of the root's text is replaced by the root's real path.
std::wstring NodeRealPath(std::vector<std::wstring> texts, const std::wstring &drive_key, const std::wstring &root_text,
                          const std::wstring &root);

// A drive-list entry ("c: [System]") to its root path ("C:\"), and the drive's image: 1 for
// the diskette drives A: and B:, 3 for D: (taken to be the optical drive), 2 for the others.
std::wstring DriveRootOf(const std::wstring &entry);
int DriveImage(const std::wstring &root);
// The text a drive list shows for a drive: its letter in lower case, a colon, and the
// volume's label in brackets when it has one.
std::wstring DriveEntry(wchar_t letter, const std::wstring &label);

// The form of `path` the platform's wide file functions take at any length: "\\?\C:\..." for
// a drive path, "\\?\UNC\server\share\..." for a network path; other paths (relative ones,
// ones already in that form) unchanged. Forward slashes become back slashes first, as the
// long form does not translate them.
std::wstring ExtendedPath(const std::wstring &path);

} // namespace tarn
