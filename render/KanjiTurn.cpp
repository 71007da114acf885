// SPDX-License-Identifier: MIT
#include "render/KanjiTurn.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace qovelmor {

namespace {

constexpr std::u16string_view keptUpright = u"()｟｠「」『』〈〉《》«»{}〔〕〘〙【】〖〗[]‘’“”〝〟'"
                                            u"→←↑↓⇨⇦⇧⇩☞↗↖↘↙⇄↔⇒⇔▶◀▷◁⤴⤵"
                                            u"ー〜゠-–—‐¦|‖¶†‡§&#…‥・";
static_assert(keptUpright.size() == 75);

} // namespace

bool isTurnedKanji(char16_t character)
{
    return character >= 0x100 && keptUpright.find(character) == std::u16string_view::npos;
}

} // namespace qovelmor
