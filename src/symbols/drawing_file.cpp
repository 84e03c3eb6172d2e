#include "symbols/drawing_file.h"

#include <QFile>

#include <stdexcept>

// What a static library has in resources is registered on demand only. The macro declares a function
// in the namespace that it stands in, and means a global one: so not even an unnamed one is right here.
static void registerDrawings()
{
    Q_INIT_RESOURCE(symbols);
}

namespace corvandi {

QByteArray drawingFile(const QString& name)
{
    registerDrawings();
    QFile file(QStringLiteral(":/corvandi/symbols/%1.svg").arg(name));
    if (!file.open(QIODevice::ReadOnly))
        throw std::logic_error("no drawing named " + name.toStdString());
    return file.readAll();
}

} // namespace corvandi
