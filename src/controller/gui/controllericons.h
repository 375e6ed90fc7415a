#pragma once

#include <QString>

// The controller's own icons: SVG resources of this module, ":/controller/<name>.svg".
namespace ControllerIcons {
// The resource path of an icon, with the module's resources registered.
QString path(const char *name);
}
