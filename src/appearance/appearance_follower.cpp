#include "appearance/appearance_follower.h"

#include "appearance/palettes.h"

#include <QApplication>

namespace corvandi {

AppearanceFollower::AppearanceFollower(Appearance& appearance)
    : appearance_(appearance)
    , registration_(appearance.onChange([this] { follow(); }))
{
    follow();
}

void AppearanceFollower::follow()
{
    // An empty palette gives the application that of its theme back.
    QApplication::setPalette(QPalette());
    const QPalette platform = QApplication::palette();
    const QPalette wanted = paletteFor(appearance_.colorScheme(), platform);
    if (wanted != platform)
        QApplication::setPalette(wanted);
}

} // namespace corvandi
