#include "platform/platform.h"

#include "platform/deviceinfosource.h"
#include "platform/networkinfosource.h"
#include "platform/networksession.h"
#include "platform/positionsource.h"
#include "platform/scripted/platformscript.h"
#include "platform/scripted/scriptedplatform.h"
#include "platform/system/bareplatform.h"
#include "platform/system/systemplatform.h"

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
