// sxs_status: build-time helper, run under Wine after the DLL links, in the DLL's architecture.
//
//   sxs_status manifest.manifest tarnctls.dll
//
// Completes the side-by-side manifest from what the built objects themselves answer, so that a
// host activating them without registration reads the same as from a registered object:
//   - each comClass gets miscStatusContent, the object's IOleObject::GetMiscStatus for the
//     content aspect (as the registry's MiscStatus\1 holds it; other aspects stay 0, as the
//     objects answer them);
//   - each property page a control names (ISpecifyPropertyPages) that the DLL serves gets a
//     comClass of its own, so a property frame can create it without registration.
// Running it again gives the same manifest.
#include <windows.h>
#include <ocidl.h>
#include <olectl.h>

#include <cstdio>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using GetClassObject = HRESULT(WINAPI *)(REFCLSID, REFIID, void **);

int fail(const char *what)
{
    std::fprintf(stderr, "sxs_status: %s\n", what);
    return 1;
}

std::string guid_text(const GUID &g)
{
    wchar_t w[64];
    StringFromGUID2(g, w, 64);
    char a[64];
    WideCharToMultiByte(CP_UTF8, 0, w, -1, a, sizeof a, nullptr, nullptr);
    return a;
}

// OLEMISC flags by the names manifests use.
std::string misc_names(DWORD misc)
{
    static const struct {
        DWORD flag;
        const char *name;
    } kNames[] = {
        {OLEMISC_RECOMPOSEONRESIZE, "recomposeonresize"}, {OLEMISC_ONLYICONIC, "onlyiconic"},
        {OLEMISC_INSERTNOTREPLACE, "insertnotreplace"}, {OLEMISC_STATIC, "static"},
        {OLEMISC_CANTLINKINSIDE, "cantlinkinside"}, {OLEMISC_CANLINKBYOLE1, "canlinkbyole1"},
        {OLEMISC_ISLINKOBJECT, "islinkobject"}, {OLEMISC_INSIDEOUT, "insideout"},
        {OLEMISC_ACTIVATEWHENVISIBLE, "activatewhenvisible"},
        {OLEMISC_RENDERINGISDEVICEINDEPENDENT, "renderingisdeviceindependent"},
        {OLEMISC_INVISIBLEATRUNTIME, "invisibleatruntime"}, {OLEMISC_ALWAYSRUN, "alwaysrun"},
        {OLEMISC_ACTSLIKEBUTTON, "actslikebutton"}, {OLEMISC_ACTSLIKELABEL, "actslikelabel"},
        {OLEMISC_NOUIACTIVATE, "nouiactivate"}, {OLEMISC_ALIGNABLE, "alignable"},
        {OLEMISC_SIMPLEFRAME, "simpleframe"}, {OLEMISC_SETCLIENTSITEFIRST, "setclientsitefirst"},
        {OLEMISC_IMEMODE, "imemode"}, {OLEMISC_IGNOREACTIVATEWHENVISIBLE, "ignoreactivatewhenvisible"},
        {OLEMISC_WANTSTOMENUMERGE, "wantstomenumerge"}, {OLEMISC_SUPPORTSMULTILEVELUNDO, "supportsmultilevelundo"},
    };
    std::string out;
    for (const auto &n : kNames) {
        if (!(misc & n.flag)) continue;
        if (!out.empty()) out += ',';
        out += n.name;
    }
    return out;
}

// What one class answers: its misc status, and the pages it names.
bool ask(GetClassObject get, const CLSID &clsid, DWORD &misc, std::vector<CLSID> &pages)
{
    IClassFactory *factory = nullptr;
    if (FAILED(get(clsid, IID_IClassFactory, reinterpret_cast<void **>(&factory)))) return false;
    IOleObject *object = nullptr;
    HRESULT hr = factory->CreateInstance(nullptr, IID_IOleObject, reinterpret_cast<void **>(&object));
    factory->Release();
    if (FAILED(hr)) return false;
    misc = 0;
    object->GetMiscStatus(DVASPECT_CONTENT, &misc);
    ISpecifyPropertyPages *specify = nullptr;
    if (SUCCEEDED(object->QueryInterface(IID_ISpecifyPropertyPages, reinterpret_cast<void **>(&specify)))) {
        CAUUID list{};
        if (SUCCEEDED(specify->GetPages(&list))) pages.assign(list.pElems, list.pElems + list.cElems);
        CoTaskMemFree(list.pElems);
        specify->Release();
    }
    object->Release();
    return true;
}

// The value of attribute `name` in `tag`, or "".
std::string attribute(const std::string &tag, const std::string &name)
{
    size_t at = tag.find(" " + name + "=\"");
    if (at == std::string::npos) return std::string();
    at += name.size() + 3;
    return tag.substr(at, tag.find('"', at) - at);
}

void drop_attribute(std::string &tag, const std::string &name)
{
    size_t at = tag.find(" " + name + "=\"");
    if (at == std::string::npos) return;
    size_t end = tag.find('"', at + name.size() + 3);
    tag.erase(at, end + 1 - at);
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 3) {
        std::fprintf(stderr, "usage: sxs_status manifest dll\n");
        return 2;
    }
    std::ifstream in(argv[1]);
    if (!in) return fail("cannot read the manifest");
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    in.close();

    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    HMODULE dll = LoadLibraryA(argv[2]);
    if (!dll) return fail("cannot load the DLL");
    auto get = reinterpret_cast<GetClassObject>(reinterpret_cast<void *>(GetProcAddress(dll, "DllGetClassObject")));
    if (!get) return fail("the DLL has no DllGetClassObject");

    std::set<std::string> listed;
    std::vector<CLSID> pages;
    size_t file_end = lines.size();
    for (size_t i = 0; i < lines.size(); ++i) {
        std::string &line = lines[i];
        if (line.find("</file>") != std::string::npos) file_end = i;
        if (line.find("<comClass ") == std::string::npos) continue;
        std::string clsid_text = attribute(line, "clsid");
        listed.insert(clsid_text);
        CLSID clsid{};
        std::wstring wide(clsid_text.begin(), clsid_text.end());
        if (FAILED(CLSIDFromString(wide.c_str(), &clsid))) return fail(("bad clsid " + clsid_text).c_str());
        DWORD misc = 0;
        std::vector<CLSID> named;
        if (!ask(get, clsid, misc, named)) continue; // no OLE object: nothing to say
        pages.insert(pages.end(), named.begin(), named.end());
        drop_attribute(line, "miscStatusContent");
        std::string names = misc_names(misc);
        if (!names.empty()) line.insert(line.find(" threadingModel="), " miscStatusContent=\"" + names + "\"");
    }
    if (file_end == lines.size()) return fail("the manifest has no </file>");

    // The library's own pages (the stock ones come with the system).
    std::vector<std::string> added;
    for (const CLSID &page : pages) {
        std::string text = guid_text(page);
        if (listed.count(text)) continue;
        IClassFactory *factory = nullptr;
        if (FAILED(get(page, IID_IClassFactory, reinterpret_cast<void **>(&factory)))) continue;
        factory->Release();
        listed.insert(text);
        added.push_back("    <comClass clsid=\"" + text + "\" threadingModel=\"Apartment\"/>");
    }
    lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(file_end), added.begin(), added.end());

    std::ostringstream out;
    for (const std::string &line : lines) out << line << "\n";
    std::ofstream write(argv[1], std::ios::binary | std::ios::trunc);
    write << out.str();
    if (!write) return fail("cannot write the manifest");
    std::printf("sxs_status: %zu page class(es) added\n", added.size());
    return 0;
}
