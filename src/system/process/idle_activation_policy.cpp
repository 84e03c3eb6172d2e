#include "system/process/idle_activation_policy.h"

#include <QPixmapCache>

#include <malloc.h>

namespace corvandi {

void IdleActivationPolicy::set(ActivationMode mode)
{
    if (mode != ActivationMode::accessory)
        return;
    QPixmapCache::clear();
    malloc_trim(0);
}

} // namespace corvandi
