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
    for (std::size_t hit = Starts::Find(text, 0); hit < text.size();) {
        const Entity* const entity = FindEntity(text.substr(hit), entities);
        if (entity) {
            out.append(text, from, hit - from).append(entity->text);
            from = hit + entity->mark.size();
        }
        hit = Starts::Find(text, entity ? from : hit + 1);
    }
    return out.append(text, from);
}

}  // namespace qv::html
