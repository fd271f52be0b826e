// Calls the grid tests make through the real DLL's dispatch interface.
#pragma once
#include <string>

#include "host/container.h"
#include "host/dispatch.h"

namespace tarn::test {

inline constexpr wchar_t kGridProgId[] = L"TarnControls.grid";

inline std::wstring text(host::Hosted &g, long row, long col)
{
    return host::as_string(g.call(L"CellTextRead", {host::I4(row), host::I4(col)}));
}
inline long number(host::Hosted &g, const wchar_t *method) { return static_cast<long>(host::as_integer(g.call(method))); }

} // namespace tarn::test
