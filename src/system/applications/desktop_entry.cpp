#include "system/applications/desktop_entry.h"

#include <QFileInfo>
#include <QProcess>

namespace corvandi {
namespace {

/// The program in a command line such as "env LANG=C /usr/bin/editor %U".
QString programOf(const QString& commandLine)
{
    QStringList words = QProcess::splitCommand(commandLine);
    if (!words.isEmpty() && QFileInfo(words.first()).fileName() == QLatin1String("env")) {
        words.removeFirst();
        while (!words.isEmpty() && words.first().contains(QLatin1Char('=')))
            words.removeFirst();
    }
    return words.isEmpty() ? QString() : QFileInfo(words.first()).fileName();
}

QChar escapedCharacter(QChar character)
{
    switch (character.unicode()) {
    case 's':
        return QLatin1Char(' ');
    case 'n':
        return QLatin1Char('\n');
    case 't':
        return QLatin1Char('\t');
    case 'r':
        return QLatin1Char('\r');
    default:
        return character;
    }
}

/// A value of text with its escapes ("\s" for a blank and so on) carried out.
QString unescaped(const QString& value)
{
    QString text;
    bool isEscaped = false;
    for (const QChar character : value) {
        if (isEscaped)
            text += escapedCharacter(character);
        else if (character != QLatin1Char('\\'))
            text += character;
        isEscaped = !isEscaped && character == QLatin1Char('\\');
    }
    return text;
}

/// Finds the name in the language that stands first in the user's list.
class NameChoice {
public:
    explicit NameChoice(const QStringList& locales)
        : locales_(locales)
        , rank_(locales.size() + 1)
    {
    }

    void offer(const QByteArray& key, const QString& value)
    {
        const qsizetype rank = rankOf(key);
        if (rank < 0 || rank >= rank_)
            return;
        rank_ = rank;
        name_ = value;
    }
    [[nodiscard]] QString name() const { return unescaped(name_); }

private:
    /// Negative for what is no name, or one in another language.
    [[nodiscard]] qsizetype rankOf(const QByteArray& key) const
    {
        if (key == "Name")
            return locales_.size();
        if (!key.startsWith("Name[") || !key.endsWith(']'))
            return -1;
        return locales_.indexOf(QString::fromLatin1(key.mid(5).chopped(1)));
    }

    const QStringList& locales_;
    qsizetype rank_;
    QString name_;
};

} // namespace

bool DesktopEntry::isInMenu(const QStringList& desktops) const
{
    if (noDisplay || hidden || isUnusable)
        return false;
    for (const QString& desktop : desktops) {
        if (onlyShownIn.contains(desktop))
            return true;
        if (notShownIn.contains(desktop))
            return false;
    }
    return onlyShownIn.isEmpty();
}

std::optional<DesktopEntry> parseDesktopEntry(const QString& id, const QByteArray& content,
                                              const QStringList& locales)
{
    DesktopEntry entry;
    entry.id = id;
    bool isApplication = false;
    NameChoice names(locales);
    forEachKey(content, "Desktop Entry", [&](const QByteArray& key, const QString& value) {
        const bool isTrue = value == QLatin1String("true");
        names.offer(key, value);
        if (key == "Type")
            isApplication = value == QLatin1String("Application");
        else if (key == "StartupWMClass")
            entry.startupWmClass = value;
        else if (key == "Exec")
            entry.executable = programOf(value);
        else if (key == "TryExec")
            entry.requiredProgram = value;
        else if (key == "Icon")
            entry.icon = value;
        else if (key == "OnlyShowIn")
            entry.onlyShownIn = listItems(value);
        else if (key == "NotShowIn")
            entry.notShownIn = listItems(value);
        else if (key == "Categories")
            entry.categories = listItems(value);
        else if (key == "MimeType")
            entry.mimeTypes = listItems(value);
        else if (key == "NoDisplay")
            entry.noDisplay = isTrue;
        else if (key == "Terminal")
            entry.runsInTerminal = isTrue;
        else if (key == "Hidden")
            entry.hidden = isTrue;
    });
    if (!isApplication && !entry.hidden)
        return std::nullopt;
    entry.name = names.name();
    return entry;
}

} // namespace corvandi
