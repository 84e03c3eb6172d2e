#include "platform/linux/pasteboard/clipboard_content.h"

#include "platform/pasteboard.h"

namespace corvandi {
namespace {

// Qt offers "text/plain" under the classic X11 names as well, but not under this one, which programs
// that speak MIME types ask for first.
const QString utf8Text = QStringLiteral("text/plain;charset=utf-8");
const QString managerHint = QStringLiteral("x-kde-passwordManagerHint");

} // namespace

bool ClipboardContent::addForm(const QString& value, const QString& type)
{
    if (type == pasteboard_type::string) {
        setText(value);
        setData(utf8Text, value.toUtf8());
        return true;
    }
    if (type == pasteboard_type::concealed) {
        setData(type, value.toUtf8());
        setData(managerHint, QByteArrayLiteral("secret"));
        return true;
    }
    return false;
}

std::optional<QString> ClipboardContent::plainText() const
{
    return hasFormat(QStringLiteral("text/plain")) ? std::optional(text()) : std::nullopt;
}

} // namespace corvandi
