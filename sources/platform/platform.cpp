#include "platform/platform.h"

#include "platform/bareplatform.h"
#include "platform/deviceinfosource.h"
#include "platform/networkinfosource.h"
#include "platform/networksession.h"
#include "platform/platformscript.h"
#include "platform/positionsource.h"
#include "platform/scriptedplatform.h"
#include "platform/systemplatform.h"

std::unique_ptr<Platform> Platform::system()
{
    return std::make_unique<SystemPlatform>();
}

std::unique_ptr<Platform> Platform::none()
{
    return std::make_unique<BarePlatform>();
}

std::unique_ptr<Platform> Platform::scripted(const QString &file, QString *error)
{
    std::optional<PlatformScript> script = PlatformScript::load(file, error);
    if (!script)
        return nullptr;
    return std::make_unique<ScriptedPlatform>(std::move(*script));
}
