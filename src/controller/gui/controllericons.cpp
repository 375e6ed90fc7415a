#include "controller/gui/controllericons.h"

// The icons live in this static library's resource, which the linker would drop unless
// something refers to it. Outside any namespace, as the registration function is global.
static void registerControllerIcons()
{
    static const bool registered = [] {
        Q_INIT_RESOURCE(controller);
        return true;
    }();
    Q_UNUSED(registered);
}

namespace ControllerIcons {

QString path(const char *name)
{
    registerControllerIcons();
    return QStringLiteral(":/controller/") + QLatin1String(name) + QStringLiteral(".svg");
}

} // namespace ControllerIcons
