#include "foundation/registry.h"

#include "foundation/handles.h"

#include <cstdint>
#include <cwchar>

namespace tarn {

const wchar_t kHiveLocalMachine[] = L"-2147483646";

namespace {

HKEY hive_from_text(const std::wstring &text)
{
    wchar_t *end = nullptr;
    long long v = std::wcstoll(text.c_str(), &end, 10);
    if (text.empty() || (end && *end) || v < INT32_MIN || v > UINT32_MAX) return nullptr;
    // Predefined keys are 32-bit values sign-extended to a pointer, as the headers define them.
    return reinterpret_cast<HKEY>(static_cast<LONG_PTR>(static_cast<LONG>(static_cast<uint32_t>(v))));
}

} // namespace

void clsREGISTRY::StringLoad(const std::wstring &hive, const std::wstring &key_path, const std::wstring &value_name,
                             const std::wstring &default_value, std::wstring &result) const
{
    try {
        HKEY raw = nullptr;
        HKEY root = hive_from_text(hive);
        if (!root || RegOpenKeyExW(root, key_path.c_str(), 0, KEY_ALL_ACCESS, &raw) != ERROR_SUCCESS) {
            result = default_value;
            return;
        }
        unique_hkey key(raw);
        wchar_t buffer[256];
        std::wmemset(buffer, L' ', 255);
        buffer[255] = 0;
        DWORD type = 0, size = 255 * sizeof(wchar_t);
        LONG rc = RegQueryValueExW(key.get(), value_name.c_str(), nullptr, &type, reinterpret_cast<BYTE *>(buffer), &size);
        if (rc != ERROR_SUCCESS || (type != REG_SZ && type != REG_EXPAND_SZ)) {
            result = default_value;
            return;
        }
        size_t chars = size / sizeof(wchar_t);
        if (chars == 0) result.assign(buffer, 255); // nothing returned: the whole buffer
        else result.assign(buffer, chars - 1);      // the terminating zero dropped
    } catch (...) {
        result = default_value;
    }
}

} // namespace tarn
