// The properties a property sheet can edit on an object, read from its type information:
// readable and writable, not hidden or restricted, without parameters. The kind tells how to
// show and edit each; colours are recognised both as 32-bit unsigned values and by stdole's
// alias name OLE_COLOR, enumerations with their members.
#pragma once
#include <oaidl.h>

#include <string>
#include <vector>

namespace tarn {

enum class PropertyKind { Text, Number, Boolean, Color, Enumeration, Font, Picture };

struct EnumMember {
    std::wstring name;
    LONG value;
};

struct PropertyInfo {
    DISPID id = DISPID_UNKNOWN;
    std::wstring name;
    PropertyKind kind = PropertyKind::Text;
    VARTYPE vt = VT_BSTR;             // the type a put takes (after aliases)
    bool by_ref = false;              // objects set with putref only
    std::vector<EnumMember> members;  // Enumeration
};

// The editable properties of the interface `info` describes (either half of a dual one), in
// declaration order. Unreadable type information gives what could be read.
std::vector<PropertyInfo> EditableProperties(ITypeInfo *info);
// The same for an object, through IDispatch::GetTypeInfo.
std::vector<PropertyInfo> EditableProperties(IUnknown *object);

} // namespace tarn
