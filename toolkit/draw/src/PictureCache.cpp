#include "draw/PictureCache.h"

#include "draw/ResourceArchive.h"

#include <cstring>

namespace Sorel {

CBitmap* CPictureCache::getBitmap(const char* name) {
    for (const Record& record : records_)
        if (std::strcmp(record.name, name) == 0) return record.picture.get();

    CResourceArchive& archive = CResourceArchive::instance();
    archive.open(archive_.data(), archive_.size());
    Counted<CBitmap> picture;
    if (archive.exists(name)) picture = Counted<CBitmap>::make(std::string(name));
    archive.close();
    if (!picture) return nullptr;

    Record& record = records_.emplace_back(Record{picture, {}});
    std::strncpy(record.name, name, kNameBytes - 1);
    return record.picture.get();
}

} // namespace Sorel
