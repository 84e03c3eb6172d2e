#include "core/data/settings.h"

#include "core/hotkey/key_names.h"
#include "ports/key_codes.h"

#include <QLatin1String>

namespace corvandi {

QString rawValue(InsertionMethod method)
{
    switch (method) {
    case InsertionMethod::type:
        return QStringLiteral("type");
    case InsertionMethod::paste:
        return QStringLiteral("paste");
    }
    return {};
}

std::optional<InsertionMethod> insertionMethod(const QString& raw)
{
    for (const InsertionMethod method : allInsertionMethods) {
        if (rawValue(method) == raw)
            return method;
    }
    return std::nullopt;
}

namespace {

namespace keys {
constexpr QLatin1String hotkeyKeyCode("hotkeyKeyCode");
constexpr QLatin1String hotkeyOption("hotkeyOption");
constexpr QLatin1String hotkeyCommand("hotkeyCommand");
constexpr QLatin1String hotkeyShift("hotkeyShift");
constexpr QLatin1String hotkeyControl("hotkeyControl");
constexpr QLatin1String autoPunctuation("autoPunctuation");
constexpr QLatin1String removeDisfluencies("removeDisfluencies");
constexpr QLatin1String cleanUpSentences("cleanUpSentences");
constexpr QLatin1String saveHistory("saveHistory");
constexpr QLatin1String insertion("insertion");
} // namespace keys

std::map<QString, DefaultsValue> registeredDefaults()
{
    return {
        {keys::hotkeyKeyCode, int64_t{virtual_key::space}},
        {keys::hotkeyOption, true},
        {keys::hotkeyCommand, false},
        {keys::hotkeyShift, false},
        {keys::hotkeyControl, false},
        {keys::autoPunctuation, true},
        {keys::removeDisfluencies, false},
        {keys::cleanUpSentences, false},
        {keys::saveHistory, true},
        {keys::insertion, rawValue(InsertionMethod::type)},
    };
}

InsertionMethod readInsertion(const UserDefaults& defaults)
{
    const std::optional<QString> stored = defaults.string(keys::insertion);
    return insertionMethod(stored.value_or(QString())).value_or(InsertionMethod::type);
}

} // namespace

Settings::Settings(UserDefaults& defaults)
    : defaults_(defaults)
{
    defaults_.registerDefaults(registeredDefaults());
    hotkeyKeyCode_ = defaults_.integer(keys::hotkeyKeyCode);
    hotkeyOption_ = defaults_.boolean(keys::hotkeyOption);
    hotkeyCommand_ = defaults_.boolean(keys::hotkeyCommand);
    hotkeyShift_ = defaults_.boolean(keys::hotkeyShift);
    hotkeyControl_ = defaults_.boolean(keys::hotkeyControl);
    autoPunctuation_ = defaults_.boolean(keys::autoPunctuation);
    removeDisfluencies_ = defaults_.boolean(keys::removeDisfluencies);
    cleanUpSentences_ = defaults_.boolean(keys::cleanUpSentences);
    saveHistory_ = defaults_.boolean(keys::saveHistory);
    insertion_ = readInsertion(defaults_);

    for (const Signal changed :
         {&Settings::hotkeyKeyCodeChanged, &Settings::hotkeyOptionChanged, &Settings::hotkeyCommandChanged,
          &Settings::hotkeyShiftChanged, &Settings::hotkeyControlChanged})
        connect(this, changed, this, &Settings::hotkeyDescriptionChanged);
}

QString Settings::hotkeyDescription() const
{
    QString description;
    if (hotkeyControl_)
        description += u'⌃';
    if (hotkeyOption_)
        description += u'⌥';
    if (hotkeyShift_)
        description += u'⇧';
    if (hotkeyCommand_)
        description += u'⌘';
    return description + KeyCodes::name(hotkeyKeyCode_);
}

template<class T>
void Settings::assign(T& property, T value, const QString& key, const DefaultsValue& stored, Signal changed)
{
    const bool isChange = property != value;
    property = value;
    defaults_.set(key, stored);
    if (isChange)
        Q_EMIT(this->*changed)();
}

void Settings::setHotkeyKeyCode(int64_t keyCode)
{
    assign(hotkeyKeyCode_, keyCode, keys::hotkeyKeyCode, keyCode, &Settings::hotkeyKeyCodeChanged);
}

void Settings::setHotkeyOption(bool isRequired)
{
    assign(hotkeyOption_, isRequired, keys::hotkeyOption, isRequired, &Settings::hotkeyOptionChanged);
}

void Settings::setHotkeyCommand(bool isRequired)
{
    assign(hotkeyCommand_, isRequired, keys::hotkeyCommand, isRequired, &Settings::hotkeyCommandChanged);
}

void Settings::setHotkeyShift(bool isRequired)
{
    assign(hotkeyShift_, isRequired, keys::hotkeyShift, isRequired, &Settings::hotkeyShiftChanged);
}

void Settings::setHotkeyControl(bool isRequired)
{
    assign(hotkeyControl_, isRequired, keys::hotkeyControl, isRequired, &Settings::hotkeyControlChanged);
}

void Settings::setAutoPunctuation(bool isOn)
{
    assign(autoPunctuation_, isOn, keys::autoPunctuation, isOn, &Settings::autoPunctuationChanged);
}

void Settings::setRemoveDisfluencies(bool isOn)
{
    assign(removeDisfluencies_, isOn, keys::removeDisfluencies, isOn, &Settings::removeDisfluenciesChanged);
}

void Settings::setCleanUpSentences(bool isOn)
{
    assign(cleanUpSentences_, isOn, keys::cleanUpSentences, isOn, &Settings::cleanUpSentencesChanged);
}

void Settings::setSaveHistory(bool isOn)
{
    assign(saveHistory_, isOn, keys::saveHistory, isOn, &Settings::saveHistoryChanged);
}

void Settings::setInsertion(InsertionMethod method)
{
    assign(insertion_, method, keys::insertion, rawValue(method), &Settings::insertionChanged);
}

} // namespace corvandi
