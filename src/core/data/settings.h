#pragma once

#include "ports/user_defaults.h"

#include <QObject>
#include <QString>

#include <array>
#include <optional>

namespace corvandi {

/// How dictated text gets into the application: by synthetic keystrokes or through the clipboard.
enum class InsertionMethod { type, paste };

/// Every method, in the order in which they are offered.
inline constexpr std::array allInsertionMethods{InsertionMethod::type, InsertionMethod::paste};

/// The text that stands for the method wherever it is stored: "type" or "paste".
[[nodiscard]] QString rawValue(InsertionMethod method);
/// The method with exactly this raw value (letter case counts); nothing for any other text.
[[nodiscard]] std::optional<InsertionMethod> insertionMethod(const QString& rawValue);

/// The user's preferences: one instance, created at start-up and shared by reference.
///
/// Construction registers the defaults and reads every value once; later changes of the store by other
/// processes are not seen. Every assignment writes through to the store at once, changed or not, and
/// a property's signal follows only when its value really changed (the store holds it by then). A
/// missing value reads as its default, one of the wrong type as 0 or false, an unknown insertion
/// method as `type`.
///
/// The hotkey is a virtual key code with exactly the modifiers whose flags are set; any combination can
/// be stored here.
///
/// Thread: main thread only. The store outlives this object.
class Settings : public QObject {
    Q_OBJECT

public:
    explicit Settings(UserDefaults& defaults);

    /// A virtual key code; 49, the Space bar, by default.
    [[nodiscard]] int64_t hotkeyKeyCode() const { return hotkeyKeyCode_; }
    /// On by default, as the only modifier.
    [[nodiscard]] bool hotkeyOption() const { return hotkeyOption_; }
    [[nodiscard]] bool hotkeyCommand() const { return hotkeyCommand_; }
    [[nodiscard]] bool hotkeyShift() const { return hotkeyShift_; }
    [[nodiscard]] bool hotkeyControl() const { return hotkeyControl_; }
    /// The hotkey as it is shown: the symbols of its modifiers (Control, Option, Shift, Command) and the
    /// key's name, such as "⌥Space".
    [[nodiscard]] QString hotkeyDescription() const;
    /// Whether the transcript keeps its punctuation; on by default.
    [[nodiscard]] bool autoPunctuation() const { return autoPunctuation_; }
    /// Whether filler words are taken out; off by default.
    [[nodiscard]] bool removeDisfluencies() const { return removeDisfluencies_; }
    /// Whether a language model rewrites the transcript; off by default.
    [[nodiscard]] bool cleanUpSentences() const { return cleanUpSentences_; }
    /// Whether finished dictations are recorded in the history; on by default.
    [[nodiscard]] bool saveHistory() const { return saveHistory_; }
    /// `type` by default.
    [[nodiscard]] InsertionMethod insertion() const { return insertion_; }

    void setHotkeyKeyCode(int64_t keyCode);
    void setHotkeyOption(bool isRequired);
    void setHotkeyCommand(bool isRequired);
    void setHotkeyShift(bool isRequired);
    void setHotkeyControl(bool isRequired);
    void setAutoPunctuation(bool isOn);
    void setRemoveDisfluencies(bool isOn);
    void setCleanUpSentences(bool isOn);
    void setSaveHistory(bool isOn);
    void setInsertion(InsertionMethod method);

Q_SIGNALS:
    void hotkeyKeyCodeChanged();
    void hotkeyOptionChanged();
    void hotkeyCommandChanged();
    void hotkeyShiftChanged();
    void hotkeyControlChanged();
    /// Follows each change of one of the five above.
    void hotkeyDescriptionChanged();
    void autoPunctuationChanged();
    void removeDisfluenciesChanged();
    void cleanUpSentencesChanged();
    void saveHistoryChanged();
    void insertionChanged();

private:
    using Signal = void (Settings::*)();
    template<class T>
    void assign(T& property, T value, const QString& key, const DefaultsValue& stored, Signal changed);

    UserDefaults& defaults_;
    int64_t hotkeyKeyCode_ = 0;
    bool hotkeyOption_ = false;
    bool hotkeyCommand_ = false;
    bool hotkeyShift_ = false;
    bool hotkeyControl_ = false;
    bool autoPunctuation_ = false;
    bool removeDisfluencies_ = false;
    bool cleanUpSentences_ = false;
    bool saveHistory_ = false;
    InsertionMethod insertion_ = InsertionMethod::type;
};

} // namespace corvandi
