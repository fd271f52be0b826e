// tlbtool: build-time helper run under Wine on the compiled type library.
//
//   tlbtool members in.tlb out.tlb enum_members.txt
//       Gives every enumeration member its published name and its helpstring, from the list
//       (IdlName | published name | helpstring). widl refuses both: IDL cannot spell names with
//       spaces ("Button Flat"), which hosts show in their property sheets, and takes no
//       helpstring on a member. A renamed name must take the same padded room in the name
//       table, which is always so for '_' -> ' ' or '-'. A member with no line fails.
//   tlbtool manifest in.tlb out.manifest x86|amd64 dllname version
//       Writes the side-by-side assembly manifest: every creatable class with its ProgIDs and
//       the type library, so that a client can create the controls with nothing registered.
#include <windows.h>
#include <oleauto.h>

#include <cstdio>
#include <cstring>
#include <fstream>
#include <map>
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

// The MSFT layout this needs. The header (0x54 bytes, 4 more when a help DLL is named), one
// 4-byte offset per type info, then the directory of 15 segments (offset, length, two more
// words each): 0 the type info records (0x64 bytes each), 6 the name hash table, 7 the name
// table, 8 the string table. Name entries: hreftype, next-in-bucket, length|flags|hash (4
// bytes), the name padded to 4 bytes. Strings: a 16-bit length and the text, padded with 'W'
// to 4 bytes. Each type info's members live after the segments at its record's memoffset:
// the records' byte count, the records, then one array each of member ids, name offsets and
// record offsets. An enumeration member's record is 0x14 bytes; 0x1C with its help context
// and helpstring.
struct Msft {
    std::vector<BYTE> d;
    size_t dir = 0, infos = 0;
    int ntypes = 0, lcid = 0, flags = 0;

    bool load(const char *path)
    {
        if (!read_file(path, d) || d.size() < 0x54 || std::memcmp(d.data(), "MSFT", 4) != 0) return false;
        lcid = get32(d, 12);
        flags = get32(d, 20);
        ntypes = get32(d, 32);
        dir = 0x54 + ((flags & 0x100) ? 4 : 0) + 4 * static_cast<size_t>(ntypes);
        infos = static_cast<size_t>(seg_at(0));
        return true;
    }
    int32_t seg_at(int s) const { return get32(d, dir + 16 * s); }
    int32_t seg_len(int s) const { return get32(d, dir + 16 * s + 4); }
    size_t info(int i) const { return infos + 0x64 * static_cast<size_t>(i); }
    int32_t memoffset(int i) const { return get32(d, info(i) + 4); }
    int members(int i) const
    {
        int32_t c = get32(d, info(i) + 0x18);
        return (c & 0xFFFF) + ((c >> 16) & 0xFFFF);
    }
    std::string name(int32_t off) const
    {
        size_t e = static_cast<size_t>(seg_at(7) + off);
        return std::string(reinterpret_cast<const char *>(&d.at(e + 12)), d.at(e + 8));
    }

    // Replaces `old_len` bytes at `at` with `bytes`; every file offset past them (segments,
    // members' blocks) moves with the difference.
    void splice(size_t at, size_t old_len, const std::vector<BYTE> &bytes)
    {
        const int32_t delta = static_cast<int32_t>(bytes.size()) - static_cast<int32_t>(old_len);
        d.erase(d.begin() + static_cast<ptrdiff_t>(at), d.begin() + static_cast<ptrdiff_t>(at + old_len));
        d.insert(d.begin() + static_cast<ptrdiff_t>(at), bytes.begin(), bytes.end());
        for (int s = 0; s < 15; ++s)
            if (seg_at(s) != -1 && static_cast<size_t>(seg_at(s)) >= at + old_len)
                put32(d, dir + 16 * s, seg_at(s) + delta);
        infos = static_cast<size_t>(seg_at(0));
        for (int i = 0; i < ntypes; ++i)
            if (old_len == 0 ? static_cast<size_t>(memoffset(i)) >= at : static_cast<size_t>(memoffset(i)) >= at + old_len)
                put32(d, info(i) + 4, memoffset(i) + delta);
    }

    // Adds strings at the end of the string table; their offsets in it.
    std::vector<int32_t> add_strings(const std::vector<std::string> &texts)
    {
        std::vector<BYTE> bytes;
        std::vector<int32_t> at;
        for (const std::string &t : texts) {
            at.push_back(seg_len(8) + static_cast<int32_t>(bytes.size()));
            size_t room = (t.size() + 5) & ~size_t(3);
            size_t start = bytes.size();
            bytes.resize(start + room, 0x57);
            bytes[start] = static_cast<BYTE>(t.size() & 0xFF);
            bytes[start + 1] = static_cast<BYTE>(t.size() >> 8);
            std::memcpy(&bytes[start + 2], t.data(), t.size());
        }
        const size_t end = static_cast<size_t>(seg_at(8) + seg_len(8));
        // Segments that start where the string table ends move; the table itself grows.
        splice(end, 0, bytes);
        put32(d, dir + 16 * 8 + 4, seg_len(8) + static_cast<int32_t>(bytes.size()));
        return at;
    }
};

struct Member {
    std::string published, help;
};

// Renames one name in place (same padded room), rehashing and relinking it.
bool rename_entry(Msft &m, int32_t off, const std::string &to)
{
    std::vector<BYTE> &d = m.d;
    const size_t hash_at = static_cast<size_t>(m.seg_at(6)), names_at = static_cast<size_t>(m.seg_at(7));
    const int buckets = m.seg_len(6) / 4;
    size_t e = names_at + static_cast<size_t>(off);
    size_t len = d.at(e + 8);
    size_t room = 12 + ((len + 3) & ~size_t(3));
    if (12 + ((to.size() + 3) & ~size_t(3)) != room) return false;
    int old_hash = (get32(d, e + 8) >> 16) & 0xFFFF;
    int new_hash = static_cast<int>(LHashValOfNameSysA(static_cast<SYSKIND>(m.flags & 0xF), m.lcid, to.c_str()) & 0xFFFF);
    // Unlink the entry from its old hash bucket...
    int ob = old_hash & 0x7F, next = get32(d, e + 4);
    if (get32(d, hash_at + 4 * ob) == off) put32(d, hash_at + 4 * ob, next);
    else
        for (int q = get32(d, hash_at + 4 * ob); q != -1; q = get32(d, names_at + q + 4))
            if (get32(d, names_at + q + 4) == off) {
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
        put32(d, hash_at + 4 * nb, off);
    }
    return true;
}

std::string trim(const std::string &s)
{
    size_t b = s.find_first_not_of(" \t\r"), e = s.find_last_not_of(" \t\r");
    return b == std::string::npos ? std::string() : s.substr(b, e - b + 1);
}

int members(const char *in, const char *out, const char *list)
{
    Msft m;
    if (!m.load(in)) return fail("cannot read the type library (not MSFT?)");

    std::map<std::string, Member> table;
    std::ifstream lines(list);
    std::string line;
    while (std::getline(lines, line)) {
        line = trim(line);
        if (line.empty() || line[0] == '#') continue;
        size_t a = line.find('|'), b = a == std::string::npos ? a : line.find('|', a + 1);
        if (b == std::string::npos) return fail(("bad line: " + line).c_str());
        table[trim(line.substr(0, a))] = {trim(line.substr(a + 1, b - a - 1)), trim(line.substr(b + 1))};
    }

    // Every enumeration member, by its name offset, in the order of the library.
    struct Found {
        int info;
        int index;
        int32_t name;
    };
    std::vector<Found> found;
    for (int i = 0; i < m.ntypes; ++i) {
        if ((get32(m.d, m.info(i)) & 0xF) != TKIND_ENUM || m.memoffset(i) < 0) continue;
        const size_t block = static_cast<size_t>(m.memoffset(i));
        const int n = m.members(i);
        const size_t names = block + 4 + static_cast<size_t>(get32(m.d, block)) + 4 * static_cast<size_t>(n);
        for (int k = 0; k < n; ++k) found.push_back({i, k, get32(m.d, names + 4 * static_cast<size_t>(k))});
    }
    std::vector<std::string> helps;
    for (const Found &f : found) {
        auto it = table.find(m.name(f.name));
        if (it == table.end()) return fail(("no line in the member list for " + m.name(f.name)).c_str());
        helps.push_back(it->second.help);
    }
    const std::vector<int32_t> strings = m.add_strings(helps);

    // Each enumeration's member block again, its records grown by the help context and string.
    size_t next = 0;
    for (int i = 0; i < m.ntypes; ++i) {
        if ((get32(m.d, m.info(i)) & 0xF) != TKIND_ENUM || m.memoffset(i) < 0) continue;
        const size_t block = static_cast<size_t>(m.memoffset(i));
        const int n = m.members(i);
        const size_t records = block + 4, infolen = static_cast<size_t>(get32(m.d, block));
        const size_t arrays = records + infolen;
        std::vector<BYTE> grown(4);
        std::vector<int32_t> offsets;
        for (int k = 0; k < n; ++k) {
            const size_t rec = records + static_cast<size_t>(get32(m.d, arrays + 4 * (2 * static_cast<size_t>(n) + k)));
            const int32_t head = get32(m.d, rec);
            if ((head & 0xFF) != 0x14) return fail("an enumeration member record of an unknown size");
            offsets.push_back(static_cast<int32_t>(grown.size() - 4));
            size_t at = grown.size();
            grown.resize(at + 0x1C);
            std::memcpy(&grown[at], &m.d.at(rec), 0x14);
            put32(grown, at, (head & ~0xFF) | 0x1C);
            put32(grown, at + 0x14, 0);                 // help context
            put32(grown, at + 0x18, strings.at(next++)); // helpstring
        }
        put32(grown, 0, static_cast<int32_t>(grown.size() - 4));
        size_t at = grown.size();
        grown.resize(at + 8 * static_cast<size_t>(n));
        std::memcpy(&grown[at], &m.d.at(arrays), 8 * static_cast<size_t>(n)); // ids and names
        for (int k = 0; k < n; ++k) {
            grown.resize(grown.size() + 4);
            put32(grown, grown.size() - 4, offsets[static_cast<size_t>(k)]);
        }
        m.splice(block, 4 + infolen + 12 * static_cast<size_t>(n), grown);
    }

    // Names with spaces and hyphens, which IDL cannot spell.
    int renamed = 0;
    for (const Found &f : found) {
        const std::string idl = m.name(f.name);
        const std::string &to = table[idl].published;
        if (to == idl) continue;
        if (!rename_entry(m, f.name, to)) return fail(("no room to rename " + idl).c_str());
        ++renamed;
    }
    if (!write_file(out, m.d.data(), m.d.size())) return fail("cannot write the type library");

    // The result must load, and every member must read back with its name and helpstring.
    wchar_t wide[MAX_PATH];
    MultiByteToWideChar(CP_ACP, 0, out, -1, wide, MAX_PATH);
    ITypeLib *lib = nullptr;
    if (FAILED(LoadTypeLibEx(wide, REGKIND_NONE, &lib))) return fail("the finished library does not load");
    int checked = 0;
    for (UINT i = 0; i < lib->GetTypeInfoCount(); ++i) {
        ITypeInfo *info = nullptr;
        TYPEATTR *ta = nullptr;
        if (FAILED(lib->GetTypeInfo(i, &info))) continue;
        info->GetTypeAttr(&ta);
        for (WORD k = 0; ta->typekind == TKIND_ENUM && k < ta->cVars; ++k) {
            VARDESC *vd = nullptr;
            BSTR name = nullptr, doc = nullptr;
            info->GetVarDesc(k, &vd);
            info->GetDocumentation(vd->memid, &name, &doc, nullptr, nullptr);
            if (doc && *doc) ++checked;
            SysFreeString(name);
            SysFreeString(doc);
            info->ReleaseVarDesc(vd);
        }
        info->ReleaseTypeAttr(ta);
        info->Release();
    }
    lib->Release();
    if (checked != static_cast<int>(found.size())) return fail("a member's helpstring does not read back");
    std::printf("tlbtool: %d enumeration member(s) described, %d renamed\n", checked, renamed);
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

int manifest(const char *in, const char *out, const char *arch, const char *dll, const char *version)
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
      << "  <assemblyIdentity type=\"win32\" name=\"tarnctls\" version=\"" << version << "\" processorArchitecture=\"" << arch
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
    if (argc == 5 && !std::strcmp(argv[1], "members")) return members(argv[2], argv[3], argv[4]);
    if (argc == 7 && !std::strcmp(argv[1], "manifest")) return manifest(argv[2], argv[3], argv[4], argv[5], argv[6]);
    std::fprintf(stderr, "usage: tlbtool members in.tlb out.tlb enum_members.txt\n"
                         "       tlbtool manifest in.tlb out.manifest x86|amd64 dllname version\n");
    return 2;
}
