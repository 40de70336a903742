#include "platform/choice/platformchoice.h"
#include "platform/deviceinfosource.h"
#include "platform/machine/bareplatform.h"
#include "platform/networkinfosource.h"
#include "platform/networksession.h"
#include "platform/platform.h"
#include "platform/position/positionedplatform.h"
#include "platform/positionsource.h"
#include "platform/scripted/platformscript.h"
#include "platform/scripted/scriptedplatform.h"
#include "platform/system/systemplatform.h"

namespace velometer {

namespace {

std::unique_ptr<Platform> createDevice(const PlatformChoice &choice, QString *error)
{
    switch (choice.device) {
    case PlatformChoice::Device::System: break;
    case PlatformChoice::Device::Scripted: return Platform::scripted(choice.script, error);
    case PlatformChoice::Device::None: return Platform::none();
    }
    return Platform::system();
}

} // namespace

std::unique_ptr<Platform> Platform::create(const PlatformChoice &choice, QString *error)
{
    std::unique_ptr<Platform> device = createDevice(choice, error);
    if (!device || choice.position.source == PositionChoice::Source::Platform) {
        return device;
    }
    return std::make_unique<PositionedPlatform>(std::move(device), choice.position);
}

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
    if (!script) {
        return nullptr;
    }
    return std::make_unique<ScriptedPlatform>(std::move(*script));
}

} // namespace velometer
