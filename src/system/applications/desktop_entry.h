#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace corvandi {

/// Calls `visit(key, value)` for each assignment in the group of this name of a desktop-style key file
/// (UTF-8 lines, "[group]", "key=value", comments behind "#"), with blanks around both cut off.
template<class Visitor>
void forEachKey(const QByteArray& content, const QByteArray& group, Visitor visit)
{
    bool inGroup = false;
    for (const QByteArray& rawLine : content.split('\n')) {
        const QByteArray line = rawLine.trimmed();
        if (line.startsWith('['))
            inGroup = line == '[' + group + ']';
        const auto separator = line.indexOf('=');
        if (inGroup && separator > 0 && !line.startsWith('#'))
            visit(line.left(separator).trimmed(), QString::fromUtf8(line.mid(separator + 1).trimmed()));
    }
}

/// The items of a list value ("a;b;c;").
[[nodiscard]] inline QStringList listItems(const QString& value)
{
    return value.split(QLatin1Char(';'), Qt::SkipEmptyParts);
}

/// What one desktop file says about an application, as far as it helps to tell applications apart.
struct DesktopEntry {
    /// The file's name below its applications folder, "/" as "-", without the suffix.
    QString id;
    /// What menus call it, in the language that was asked for; empty when the file does not say.
    QString name;
    /// What its icon is called in the theme, or the path of a file; empty when it has none.
    QString icon;
    /// The class that its windows bear; often empty.
    QString startupWmClass;
    /// The file name of the program that is started, without folder; empty when there is none.
    QString executable;
    /// A program, as a path or a name, without which the application does not count as installed; mostly
    /// empty.
    QString requiredProgram;
    QStringList categories;
    QStringList mimeTypes;
    /// The desktops whose menus offer it; when empty, all do but those of `notShownIn`.
    QStringList onlyShownIn;
    QStringList notShownIn;
    /// Not offered in menus: a helper or a second entry of something else.
    bool noDisplay = false;
    /// Its windows are those of a terminal, so it is never the frontmost application itself.
    bool runsInTerminal = false;
    /// Stands for "there is no such application", whatever folders of less precedence hold.
    bool hidden = false;
    /// The required program is not there. Not a matter of the file's content.
    bool isUnusable = false;

    /// Whether the menu of a session of these desktops (the most specific first) offers it.
    [[nodiscard]] bool isInMenu(const QStringList& desktops) const;
};

/// Reads the main group of a desktop file; nothing when it does not describe an application. Keys that
/// are missing or malformed are left empty. The name is taken in the first of `locales` (as in "de_AT", see
/// `desktopLocales`) in which there is one, else as it is without any.
[[nodiscard]] std::optional<DesktopEntry> parseDesktopEntry(const QString& id, const QByteArray& content,
                                                            const QStringList& locales = {});

} // namespace corvandi
