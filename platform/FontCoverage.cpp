// SPDX-License-Identifier: MIT
#include "platform/FontCoverage.h"

#include <fontconfig/fontconfig.h>

#include <memory>

namespace qovelmor {

namespace {

template <auto release>
struct Releases
{
    void operator()(auto *object) const { release(object); }
};
using Characters = std::unique_ptr<FcCharSet, Releases<FcCharSetDestroy>>;
using Pattern = std::unique_ptr<FcPattern, Releases<FcPatternDestroy>>;
using Properties = std::unique_ptr<FcObjectSet, Releases<FcObjectSetDestroy>>;
using Fonts = std::unique_ptr<FcFontSet, Releases<FcFontSetDestroy>>;

Fonts fontsCovering(char32_t character)
{
    const Characters characters(FcCharSetCreate());
    FcCharSetAddChar(characters.get(), character);
    const Pattern wanted(FcPatternCreate());
    FcPatternAddCharSet(wanted.get(), FC_CHARSET, characters.get());
    const Properties names(FcObjectSetBuild(FC_FAMILY, nullptr));
    return Fonts(FcFontList(nullptr, wanted.get(), names.get()));
}

void addNames(QSet<QString> &families, FcPattern *font)
{
    FcChar8 *name = nullptr;
    for (int i = 0; FcPatternGetString(font, FC_FAMILY, i, &name) == FcResultMatch; ++i)
        families.insert(QString::fromUtf8(reinterpret_cast<const char *>(name)));
}

// The toolkit's names for what the font system chooses by the user's language.
struct GenericFamily
{
    const char *systemName;
    const char *name;
};
constexpr GenericFamily genericFamilies[] = {
    {"serif", "Serif"}, {"sans-serif", "Sans Serif"}, {"monospace", "Monospace"}};

bool isCoveredByChoice(const char *systemName, char32_t character)
{
    const Pattern wanted(FcNameParse(reinterpret_cast<const FcChar8 *>(systemName)));
    FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result = FcResultNoMatch;
    const Pattern chosen(FcFontMatch(nullptr, wanted.get(), &result));
    FcCharSet *characters = nullptr; // the font's own
    return chosen != nullptr &&
           FcPatternGetCharSet(chosen.get(), FC_CHARSET, 0, &characters) == FcResultMatch &&
           FcCharSetHasChar(characters, character) != FcFalse;
}

} // namespace

QSet<QString> fontFamiliesCovering(char32_t character)
{
    QSet<QString> families;
    const Fonts fonts = fontsCovering(character);
    for (int i = 0; fonts != nullptr && i < fonts->nfont; ++i)
        addNames(families, fonts->fonts[i]);
    for (const auto &[systemName, name] : genericFamilies) {
        if (isCoveredByChoice(systemName, character))
            families.insert(QString::fromLatin1(name));
    }
    return families;
}

} // namespace qovelmor
