#include "html/Entities.h"

#include "core/ByteScan.h"

namespace qv::html {
namespace {

const Entity* FindEntity(std::string_view text, std::span<const Entity> entities) {
    for (const Entity& entity : entities)
        if (text.starts_with(entity.mark)) return &entity;
    return nullptr;
}

}  // namespace

std::string DecodeEntities(std::string_view text, std::span<const Entity> entities) {
    using Starts = ByteSet<'&', '<'>;
    std::string out;
    out.reserve(text.size());
    std::size_t from = 0;
    ForEachByte(Starts(), text, [&](std::size_t hit) {
        const Entity* const entity = hit < from ? nullptr : FindEntity(text.substr(hit), entities);
        if (!entity) return;
        out.append(text, from, hit - from).append(entity->text);
        from = hit + entity->mark.size();
    });
    return out.append(text, from);
}

}  // namespace qv::html
