// clsREGISTRY: reads string values from the registry, the only place the library reads
// configuration of its own (the operating-system version).
#pragma once
#include <string>

namespace tarn {

class clsREGISTRY {
public:
    // Reads a REG_SZ or REG_EXPAND_SZ value (at most 255 characters) into `result`. `hive` is
    // the decimal text of a predefined key's handle ("-2147483646" for HKEY_LOCAL_MACHINE).
    // The key is opened with full access, so a key the user may not write yields the default,
    // as does a missing key or value, or a value of another type.
    void StringLoad(const std::wstring &hive, const std::wstring &key_path, const std::wstring &value_name,
                    const std::wstring &default_value, std::wstring &result) const;
};

// The decimal text of HKEY_LOCAL_MACHINE's handle value, as StringLoad takes hives.
extern const wchar_t kHiveLocalMachine[];

} // namespace tarn
