#include "inputs/dlst_paths.h"

#include <algorithm>
#include <cwctype>

#include "foundation/strings.h"

namespace tarn {

std::wstring ChildKey(const std::wstring &parent_key, const std::wstring &name)
{
    if (!parent_key.empty() && parent_key.back() == L'\\') return parent_key + name;
    return parent_key + L'\\' + name;
}

std::vector<std::wstring> ExpandPathLevels(const std::wstring &path)
{
    std::vector<std::wstring> levels;
    if (Trim(path).empty() || path.size() > kLongestPath) return levels;
    std::wstring p = path;
    if (p.back() != L'\\') p += L'\\';
    // The pieces of a split at "\": the text ends with one, so the last piece is empty.
    std::vector<std::wstring> pieces;
    size_t start = 0;
    for (size_t i = 0; i <= p.size(); ++i) {
        if (i == p.size() || p[i] == L'\\') {
            pieces.push_back(p.substr(start, i - start));
            start = i + 1;
        }
    }
    std::wstring key;
    for (size_t i = 0; i + 1 < pieces.size(); ++i) {
        key = i == 0 ? pieces[0] : key + L'\\' + pieces[i];
        levels.push_back(key);
    }
    return levels;
}

std::wstring ReplaceAll(const std::wstring &text, const std::wstring &find, const std::wstring &with)
{
    if (find.empty()) return text;
    std::wstring out;
    size_t at = 0;
    for (size_t hit; (hit = text.find(find, at)) != std::wstring::npos; at = hit + find.size()) {
        out.append(text, at, hit - at);
        out += with;
    }
    out.append(text, at, std::wstring::npos);
    return out;
}

std::wstring NodeRealPath(std::vector<std::wstring> texts, const std::wstring &drive_key, const std::wstring &root_text,
                          const std::wstring &root)
{
    if (texts.empty()) return {};
    if (!drive_key.empty()) {
        if (texts.size() == 1) return drive_key + L'\\';
        texts[0] = drive_key;
    }
    std::wstring path;
    for (size_t i = 0; i < texts.size(); ++i) path += (i ? L"\\" : L"") + texts[i];
    return ReplaceAll(path, root_text, root);
}

std::wstring DriveRootOf(const std::wstring &entry)
{
    if (entry.empty()) return {};
    return std::wstring(1, static_cast<wchar_t>(std::towupper(entry[0]))) + L":\\";
}

int DriveImage(const std::wstring &root)
{
    if (root == L"A:\\" || root == L"B:\\") return 1;
    if (root == L"D:\\") return 3;
    return 2;
}

std::wstring DriveEntry(wchar_t letter, const std::wstring &label)
{
    std::wstring entry(1, static_cast<wchar_t>(std::towlower(letter)));
    entry += L':';
    if (!label.empty()) entry += L" [" + label + L"]";
    return entry;
}

std::wstring ExtendedPath(const std::wstring &path)
{
    std::wstring p = path;
    std::replace(p.begin(), p.end(), L'/', L'\\');
    if (p.rfind(L"\\\\?\\", 0) == 0 || p.rfind(L"\\\\.\\", 0) == 0) return p;
    if (p.size() >= 3 && std::iswalpha(p[0]) && p[1] == L':' && p[2] == L'\\') return L"\\\\?\\" + p;
    if (p.size() > 2 && p[0] == L'\\' && p[1] == L'\\') return L"\\\\?\\UNC\\" + p.substr(2);
    return p;
}

} // namespace tarn
