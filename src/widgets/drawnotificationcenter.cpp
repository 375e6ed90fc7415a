#include "widgets/drawnotificationcenter.h"

DrawNotificationCenter &DrawNotificationCenter::defaultCenter()
{
    static DrawNotificationCenter center;
    return center;
}
