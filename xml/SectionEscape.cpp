#include "xml/SectionEscape.h"

#include <array>

#include "core/ByteScan.h"

namespace qv {
namespace {

struct Entity {
    char character;
    std::string_view text;
};
constexpr std::array<Entity, 5> kEntities = {
    {{'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'\n', "&#10;"}, {'\r', "&#13;"}}};

constexpr auto kEscapes = [] {
    std::array<std::string_view, 256> table{};
    for (const Entity& entity : kEntities) table[static_cast<unsigned char>(entity.character)] = entity.text;
    return table;
}();

using Specials = ByteSet<'&', '<', '>', '\n', '\r'>;

const Entity* EntityAt(std::string_view text) {
    for (const Entity& entity : kEntities)
        if (text.starts_with(entity.text)) return &entity;
    return nullptr;
}

}  // namespace

bool NeedsEscapes(std::string_view text) {
    return FindByte(Specials(), text) != text.size();
}

void AppendSectionText(std::string& out, std::string_view text) {
    std::size_t from = 0;
    ForEachByte(Specials(), text, [&](std::size_t i) {
        out.append(text, from, i - from).append(kEscapes[static_cast<unsigned char>(text[i])]);
        from = i + 1;
    });
    out.append(text, from);
}

// One pass is enough: escapes do not overlap, and replacing one creates another only for "&amp;", which is replaced
// last.
std::string SectionTextOf(std::string_view escaped) {
    std::string out;
    std::size_t from = 0;
    for (std::size_t hit = escaped.find('&'); hit != escaped.npos;) {
        const Entity* const entity = EntityAt(escaped.substr(hit));
        if (entity) {
            (out.append(escaped, from, hit - from)) += entity->character;
            from = hit + entity->text.size();
        }
        hit = escaped.find('&', entity ? from : hit + 1);
    }
    return out.append(escaped, from);
}

}  // namespace qv
