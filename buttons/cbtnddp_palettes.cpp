#include "buttons/cbtnddp_palettes.h"

#include <cwchar>
#include <stdexcept>

#include "foundation/hls.h"

namespace tarn {

namespace {

constexpr const wchar_t *kBaseNames[] = {
    L"RED",      L"YELLOW",  L"GREEN",      L"CYAN",     L"BLUE",     L"MAGENTA",   L"WHITE",    L"GRAY",
    L"CHROME",   L"BLACK",   L"ORANGE",     L"CHARCOAL", L"SILVER",   L"TITANIUM",  L"DARK GRAY", L"COPPER",
    L"GOLD",     L"LIME",    L"TURQUOISE",  L"TEAL",     L"LAVENDER", L"FUSCHIA",   L"PINK",     L"TOPAZ",
    L"LEMON",    L"JADE",    L"AQUA",       L"AZURE",    L"SAPPHIRE", L"VIOLET",    L"CRIMSON",  L"EBONY",
    L"EARTH",    L"BRONZE",  L"TOURMALINE", L"BERYL",    L"EMERALD",  L"CITRINE",   L"INDIGO",   L"COBALT",
    L"AMETHYST", L"PLATINUM", L"NICKEL",    L"MIDNIGHT"};

constexpr const wchar_t *kPrefixes[] = {L"DARK ", L"LIGHT ", L"PASTEL ", L"BARLEY ", L"DUSKY ",
                                        L"DEEP ", L"EARTH ", L"SOFT ",   L"CLOUDY "};

// Where each chromatic base name sits on the hue circle; a name means the same hue in every
// palette.
struct HueName {
    const wchar_t *name;
    int32_t hue;
};
constexpr HueName kHues[] = {
    {L"RED", 0},          {L"COPPER", 12},    {L"EARTH", 15},    {L"ORANGE", 18},   {L"BRONZE", 22},
    {L"TOPAZ", 25},       {L"GOLD", 28},      {L"CITRINE", 33},  {L"LEMON", 37},    {L"YELLOW", 40},
    {L"LIME", 60},        {L"GREEN", 80},     {L"EMERALD", 88},  {L"JADE", 96},     {L"BERYL", 104},
    {L"TURQUOISE", 112},  {L"CYAN", 120},     {L"TEAL", 124},    {L"AQUA", 128},    {L"AZURE", 140},
    {L"SAPPHIRE", 152},   {L"BLUE", 160},     {L"COBALT", 164},  {L"INDIGO", 172},  {L"VIOLET", 180},
    {L"AMETHYST", 186},   {L"LAVENDER", 190}, {L"MAGENTA", 200}, {L"FUSCHIA", 208}, {L"TOURMALINE", 216},
    {L"PINK", 224},       {L"CRIMSON", 233},
};

// A tone: the luminance and saturation a prefix stands for, the same in every palette. The
// unprefixed tone is the pure colour.
struct Tone {
    const wchar_t *prefix;
    int32_t luminance, saturation;
};
constexpr Tone kTones[] = {
    {L"", 120, 240},         {L"PASTEL ", 200, 240}, {L"LIGHT ", 165, 240}, {L"DARK ", 75, 240},
    {L"DEEP ", 45, 240},     {L"SOFT ", 150, 120},   {L"CLOUDY ", 190, 60}, {L"BARLEY ", 175, 140},
    {L"DUSKY ", 100, 90},    {L"EARTH ", 70, 100},
};

// The neutral names, by luminance; the grey column stands at hue 120 with no saturation.
struct Grey {
    const wchar_t *name;
    int32_t luminance;
};
constexpr Grey kGreys[] = {
    {L"WHITE", 240},   {L"PLATINUM", 225}, {L"SILVER", 200},   {L"CHROME", 180},   {L"NICKEL", 160},
    {L"TITANIUM", 140}, {L"GRAY", 120},    {L"DARK GRAY", 90}, {L"CHARCOAL", 60},  {L"EBONY", 35},
    {L"MIDNIGHT", 20}, {L"BLACK", 0},
};
constexpr int32_t kGreyHue = 120;

struct PaletteDef {
    const wchar_t *name;
    std::vector<const wchar_t *> hues;  // base names, left to right
    std::vector<const wchar_t *> tones; // prefixes, top to bottom
    std::vector<const wchar_t *> greys; // one per tone, or none
};

const std::vector<PaletteDef> &definitions()
{
    static const std::vector<PaletteDef> defs = {
        // The pure colours first, the lighter tones below them, then the darker.
        {L"Standard",
         {L"RED", L"YELLOW", L"GREEN", L"CYAN", L"BLUE", L"MAGENTA"},
         {L"", L"LIGHT ", L"PASTEL ", L"DARK ", L"DEEP "},
         {L"GRAY", L"SILVER", L"WHITE", L"DARK GRAY", L"BLACK"}},
        {L"Rainbow",
         {L"RED", L"ORANGE", L"YELLOW", L"LIME", L"GREEN", L"TURQUOISE", L"AZURE", L"BLUE", L"VIOLET", L"MAGENTA",
          L"PINK"},
         {L"LIGHT ", L"", L"DARK "},
         {L"WHITE", L"GRAY", L"BLACK"}},
        {L"Gems",
         {L"TOPAZ", L"CITRINE", L"EMERALD", L"JADE", L"BERYL", L"SAPPHIRE", L"AMETHYST", L"TOURMALINE"},
         {L"LIGHT ", L"", L"DEEP "},
         {L"PLATINUM", L"SILVER", L"EBONY"}},
        {L"Spectrum",
         {L"RED", L"ORANGE", L"YELLOW", L"GREEN", L"TEAL", L"BLUE", L"VIOLET", L"MAGENTA"},
         {L"PASTEL ", L"LIGHT ", L"", L"DARK ", L"DEEP "},
         {L"WHITE", L"SILVER", L"GRAY", L"CHARCOAL", L"BLACK"}},
        {L"Metals",
         {L"COPPER", L"BRONZE", L"GOLD", L"COBALT"},
         {L"SOFT ", L"DUSKY ", L"EARTH "},
         {L"CHROME", L"NICKEL", L"TITANIUM"}},
        {L"Pastels",
         {L"PINK", L"LAVENDER", L"AZURE", L"AQUA", L"LIME", L"LEMON"},
         {L"PASTEL ", L"CLOUDY ", L"SOFT "},
         {L"WHITE", L"PLATINUM", L"SILVER"}},
        {L"Earth",
         {L"CRIMSON", L"COPPER", L"EARTH", L"GOLD", L"LIME", L"JADE"},
         {L"BARLEY ", L"DUSKY ", L"DARK ", L"DEEP "},
         {L"NICKEL", L"GRAY", L"CHARCOAL", L"EBONY"}},
        {L"Ocean",
         {L"EMERALD", L"BERYL", L"TURQUOISE", L"CYAN", L"TEAL", L"AQUA", L"AZURE", L"SAPPHIRE", L"BLUE", L"COBALT"},
         {L"LIGHT ", L"", L"DARK "},
         {L"WHITE", L"NICKEL", L"MIDNIGHT"}},
        {L"Flowers",
         {L"CRIMSON", L"PINK", L"TOURMALINE", L"FUSCHIA", L"MAGENTA", L"LAVENDER", L"AMETHYST", L"VIOLET", L"INDIGO"},
         {L"PASTEL ", L"LIGHT ", L"", L"DARK "},
         {L"WHITE", L"SILVER", L"GRAY", L"EBONY"}},
        {L"Sunset",
         {L"CRIMSON", L"RED", L"COPPER", L"ORANGE", L"TOPAZ", L"GOLD", L"CITRINE", L"LEMON", L"YELLOW"},
         {L"LIGHT ", L"", L"DARK ", L"DEEP "},
         {L"WHITE", L"GRAY", L"CHARCOAL", L"BLACK"}},
        {L"Muted",
         {L"RED", L"YELLOW", L"GREEN", L"CYAN", L"BLUE", L"MAGENTA"},
         {L"CLOUDY ", L"SOFT ", L"DUSKY ", L"EARTH "},
         {L"PLATINUM", L"TITANIUM", L"DARK GRAY", L"CHARCOAL"}},
        {L"Full",
         {L"RED", L"ORANGE", L"GOLD", L"YELLOW", L"LIME", L"GREEN", L"TURQUOISE", L"CYAN", L"AZURE", L"BLUE",
          L"INDIGO", L"VIOLET", L"MAGENTA", L"PINK"},
         {L"PASTEL ", L"LIGHT ", L"", L"DARK ", L"DEEP "},
         {L"WHITE", L"SILVER", L"GRAY", L"DARK GRAY", L"BLACK"}},
    };
    return defs;
}

template <class T, size_t N> const T &lookup(const T (&table)[N], const wchar_t *key, const wchar_t *T::*field)
{
    for (const T &entry : table)
        if (std::wcscmp(entry.*field, key) == 0) return entry;
    throw std::logic_error("palette names a word outside its tables");
}

} // namespace

int32_t Palette::find(Rgb colour) const
{
    for (size_t i = 0; i < cells.size(); ++i)
        if (cells[i].colour == colour) return static_cast<int32_t>(i);
    return -1;
}

Palette MakePalette(int32_t number)
{
    if (number < 0 || number >= kPaletteCount) throw std::out_of_range("no such palette");
    const PaletteDef &def = definitions()[static_cast<size_t>(number)];
    if (!def.greys.empty() && def.greys.size() != def.tones.size()) throw std::logic_error("a grey for every tone");
    Palette p;
    p.number = number;
    p.rows = static_cast<int32_t>(def.tones.size());
    p.columns = static_cast<int32_t>(def.hues.size() + (def.greys.empty() ? 0 : 1));
    p.cells.reserve(static_cast<size_t>(p.rows) * static_cast<size_t>(p.columns));
    for (size_t row = 0; row < def.tones.size(); ++row) {
        const Tone &tone = lookup(kTones, def.tones[row], &Tone::prefix);
        for (const wchar_t *base : def.hues) {
            const HueName &hue = lookup(kHues, base, &HueName::name);
            p.cells.push_back({HlsToRgb(hue.hue, tone.luminance, tone.saturation), tone.prefix + std::wstring(base)});
        }
        if (!def.greys.empty()) {
            const Grey &grey = lookup(kGreys, def.greys[row], &Grey::name);
            p.cells.push_back({HlsToRgb(kGreyHue, grey.luminance, 0), grey.name});
        }
    }
    return p;
}

std::wstring PaletteName(int32_t number)
{
    if (number < 0 || number >= kPaletteCount) return L"";
    return definitions()[static_cast<size_t>(number)].name;
}

std::span<const wchar_t *const> ColourBaseNames() { return kBaseNames; }
std::span<const wchar_t *const> ColourPrefixes() { return kPrefixes; }

} // namespace tarn
