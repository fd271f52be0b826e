// tlbtool: build-time helper run under Wine on the compiled type library.
//
//   tlbtool rename  in.tlb out.tlb renames.txt
//       Renames names inside the library in place. IDL cannot spell enumeration members with
//       spaces ("Button Flat"), which hosts show in their property sheets; the IDL spells them
//       with underscores and each line "Old=New" of renames.txt renames one. The new name must
//       take the same padded room in the name table, which is always so for '_' -> ' '.
//   tlbtool manifest in.tlb out.manifest x86|amd64 dllname
//       Writes the side-by-side assembly manifest: every creatable class with its ProgIDs and
//       the type library, so that a client can create the controls with nothing registered.
#include <windows.h>
#include <oleauto.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

namespace {

int fail(const char *what)
{
    std::fprintf(stderr, "tlbtool: %s\n", what);
    return 1;
}

bool read_file(const char *path, std::vector<BYTE> &out)
{
    std::ifstream f(path, std::ios::binary);
    if (!f) return false;
    out.assign(std::istreambuf_iterator<char>(f), std::istreambuf_iterator<char>());
    return true;
}

bool write_file(const char *path, const void *data, size_t size)
{
    std::ofstream f(path, std::ios::binary | std::ios::trunc);
    f.write(static_cast<const char *>(data), static_cast<std::streamsize>(size));
    return static_cast<bool>(f);
}

int32_t get32(const std::vector<BYTE> &d, size_t at)
{
    int32_t v;
    std::memcpy(&v, &d.at(at + 3) - 3, 4);
    return v;
}

void put32(std::vector<BYTE> &d, size_t at, int32_t v) { std::memcpy(&d.at(at + 3) - 3, &v, 4); }

// The MSFT layout this needs: the header (0x54 bytes, then 4 bytes per type info, plus 4 when
// a help DLL is named), then the segment directory; segment 6 is the name hash table and
// segment 7 the name table, each entry: hreftype, next-in-bucket, length|flags|hash (4 bytes),
// then the name padded to 4 bytes.
int rename(const char *in, const char *out, const char *list)
{
    std::vector<BYTE> d;
    if (!read_file(in, d)) return fail("cannot read the type library");
    if (d.size() < 0x54 || std::memcmp(d.data(), "MSFT", 4) != 0) return fail("not an MSFT type library");
    const int32_t lcid = get32(d, 12), flags = get32(d, 20), ntypes = get32(d, 32);
    const size_t dir = 0x54 + ((flags & 0x100) ? 4 : 0) + 4 * static_cast<size_t>(ntypes);
    const size_t hash_at = static_cast<size_t>(get32(d, dir + 16 * 6)), hash_len = static_cast<size_t>(get32(d, dir + 16 * 6 + 4));
    const size_t names_at = static_cast<size_t>(get32(d, dir + 16 * 7)), names_len = static_cast<size_t>(get32(d, dir + 16 * 7 + 4));
    const int buckets = static_cast<int>(hash_len / 4);

    std::ifstream lines(list);
    std::string line;
    int renamed = 0;
    while (std::getline(lines, line)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        if (line.empty() || line[0] == '#') continue;
        size_t eq = line.find('=');
        if (eq == std::string::npos) return fail(("bad line: " + line).c_str());
        std::string from = line.substr(0, eq), to = line.substr(eq + 1);
        bool done = false;
        for (size_t off = 0; off < names_len && !done;) {
            size_t e = names_at + off;
            size_t len = d.at(e + 8);
            size_t room = 12 + ((len + 3) & ~size_t(3));
            if (len == from.size() && std::memcmp(&d.at(e + 12), from.data(), len) == 0) {
                if (12 + ((to.size() + 3) & ~size_t(3)) != room) return fail(("no room to rename " + from).c_str());
                int old_hash = (get32(d, e + 8) >> 16) & 0xFFFF;
                int new_hash = static_cast<int>(LHashValOfNameSysA(static_cast<SYSKIND>(flags & 0xF), lcid, to.c_str()) & 0xFFFF);
                // Unlink the entry from its old hash bucket...
                int ob = old_hash & 0x7F, next = get32(d, e + 4);
                if (get32(d, hash_at + 4 * ob) == static_cast<int32_t>(off)) put32(d, hash_at + 4 * ob, next);
                else
                    for (int q = get32(d, hash_at + 4 * ob); q != -1; q = get32(d, names_at + q + 4))
                        if (get32(d, names_at + q + 4) == static_cast<int32_t>(off)) {
                            put32(d, names_at + q + 4, next);
                            break;
                        }
                // ...write the new name and hash, and link it into its new bucket.
                std::memset(&d.at(e + 12), 0x57, room - 12);
                std::memcpy(&d.at(e + 12), to.data(), to.size());
                d.at(e + 8) = static_cast<BYTE>(to.size());
                d.at(e + 10) = static_cast<BYTE>(new_hash & 0xFF);
                d.at(e + 11) = static_cast<BYTE>((new_hash >> 8) & 0xFF);
                int nb = new_hash & 0x7F;
                if (nb < buckets) {
                    put32(d, e + 4, get32(d, hash_at + 4 * nb));
                    put32(d, hash_at + 4 * nb, static_cast<int32_t>(off));
                }
                done = true;
                ++renamed;
            }
            off += room;
        }
        if (!done) return fail(("name not found: " + from).c_str());
    }
    if (!write_file(out, d.data(), d.size())) return fail("cannot write the type library");

    // The result must load, and the new names must be found.
    wchar_t wide[MAX_PATH];
    MultiByteToWideChar(CP_ACP, 0, out, -1, wide, MAX_PATH);
    ITypeLib *lib = nullptr;
    if (FAILED(LoadTypeLibEx(wide, REGKIND_NONE, &lib))) return fail("the renamed library does not load");
    lib->Release();
    std::printf("tlbtool: %d name(s) renamed\n", renamed);
    return 0;
}

std::string narrow(const wchar_t *w)
{
    char buf[512];
    WideCharToMultiByte(CP_UTF8, 0, w ? w : L"", -1, buf, sizeof buf, nullptr, nullptr);
    return buf;
}

std::string guid_text(const GUID &g)
{
    wchar_t buf[64];
    StringFromGUID2(g, buf, 64);
    return narrow(buf);
}

std::string xml_escape(const std::string &s)
{
    std::string r;
    for (char c : s) {
        if (c == '&') r += "&amp;";
        else if (c == '<') r += "&lt;";
        else if (c == '>') r += "&gt;";
        else if (c == '"') r += "&quot;";
        else r += c;
    }
    return r;
}

int manifest(const char *in, const char *out, const char *arch, const char *dll)
{
    wchar_t wide[MAX_PATH];
    MultiByteToWideChar(CP_ACP, 0, in, -1, wide, MAX_PATH);
    ITypeLib *lib = nullptr;
    if (FAILED(LoadTypeLibEx(wide, REGKIND_NONE, &lib))) return fail("cannot load the type library");
    TLIBATTR *la = nullptr;
    lib->GetLibAttr(&la);
    std::string libid = guid_text(la->guid);
    std::ostringstream x;
    x << "<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?>\n"
      << "<assembly xmlns=\"urn:schemas-microsoft-com:asm.v1\" manifestVersion=\"1.0\">\n"
      << "  <assemblyIdentity type=\"win32\" name=\"tarnctls\" version=\"1.0.0.0\" processorArchitecture=\"" << arch
      << "\"/>\n"
      << "  <file name=\"" << dll << "\">\n";
    for (UINT i = 0; i < lib->GetTypeInfoCount(); ++i) {
        ITypeInfo *info = nullptr;
        if (FAILED(lib->GetTypeInfo(i, &info))) continue;
        TYPEATTR *ta = nullptr;
        info->GetTypeAttr(&ta);
        if (ta->typekind == TKIND_COCLASS && (ta->wTypeFlags & TYPEFLAG_FCANCREATE)) {
            BSTR name = nullptr, doc = nullptr;
            lib->GetDocumentation(static_cast<INT>(i), &name, &doc, nullptr, nullptr);
            std::string n = narrow(name);
            x << "    <comClass clsid=\"" << guid_text(ta->guid) << "\" threadingModel=\"Apartment\" progid=\"TarnControls."
              << n << "\" tlbid=\"" << libid << "\" description=\"" << xml_escape(narrow(doc)) << "\">\n"
              << "      <progid>TarnControls." << n << ".1</progid>\n"
              << "    </comClass>\n";
            SysFreeString(name);
            SysFreeString(doc);
        }
        info->ReleaseTypeAttr(ta);
        info->Release();
    }
    x << "    <typelib tlbid=\"" << libid << "\" version=\"" << la->wMajorVerNum << "." << la->wMinorVerNum
      << "\" helpdir=\"\"/>\n"
      << "  </file>\n"
      << "</assembly>\n";
    lib->ReleaseTLibAttr(la);
    lib->Release();
    std::string text = x.str();
    return write_file(out, text.data(), text.size()) ? 0 : fail("cannot write the manifest");
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 5 && !std::strcmp(argv[1], "rename")) return rename(argv[2], argv[3], argv[4]);
    if (argc == 6 && !std::strcmp(argv[1], "manifest")) return manifest(argv[2], argv[3], argv[4], argv[5]);
    std::fprintf(stderr, "usage: tlbtool rename in.tlb out.tlb renames.txt\n"
                         "       tlbtool manifest in.tlb out.manifest x86|amd64 dllname\n");
    return 2;
}
