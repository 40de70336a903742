#include "ui/map/mapprovider.h"

#include "ui/map/outlineprovider.h"
#include "ui/map/tilesource.h"
#include "utils/deployment.h"

using namespace Qt::StringLiterals;

namespace velometer {

QStringList MapProvider::available()
{
    return {u"tiles"_s, u"outline"_s};
}

std::unique_ptr<MapProvider> MapProvider::create(const QString &name)
{
    if (name == "tiles"_L1) {
        return std::make_unique<TileSource>(Deployment::current(), TileSource::cacheDirectory());
    }
    if (name == "outline"_L1) {
        return std::make_unique<OutlineProvider>();
    }
    return nullptr;
}

} // namespace velometer
