#include "foundation/strings.h"

namespace tarn {

std::wstring StringPiece(const std::wstring &text, const std::wstring &delimiter, int32_t index)
{
    const long long wanted = index; // index - 1 must not overflow for the smallest index
    long long count = 0;
    size_t start = 0;
    for (size_t pos = 0; pos < text.size(); ++pos) {
        if (delimiter.size() != 1 || text[pos] != delimiter[0]) continue;
        ++count;
        if (count == wanted - 1) start = pos + 1;
        if (count == wanted) return text.substr(start, pos - start);
    }
    if (count == wanted - 1) return text.substr(start);
    return L"0";
}

int32_t StringWordCount(const std::wstring &text, const std::wstring &delimiter)
{
    if (text.empty()) return 0;
    if (delimiter.empty()) return 1;
    int32_t pieces = 1;
    for (size_t pos = text.find(delimiter); pos != std::wstring::npos;
         pos = text.find(delimiter, pos + delimiter.size()))
        ++pieces;
    return pieces;
}

std::wstring Trim(const std::wstring &text)
{
    size_t b = text.find_first_not_of(L' ');
    if (b == std::wstring::npos) return L"";
    size_t e = text.find_last_not_of(L' ');
    return text.substr(b, e - b + 1);
}

} // namespace tarn
