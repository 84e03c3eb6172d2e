#pragma once

#include "base/worker.h"
#include "ports/system_log.h"
#include "ports/user_defaults.h"

#include <map>
#include <memory>

namespace corvandi {

/// The preferences in QSettings' INI format.
///
/// The file is read once, at construction; answers come from memory. A change is written at once by a
/// thread of its own, so that `set` never waits for the disk; changes that come while a write is under way
/// are written together. Destruction waits until everything that was set has been written or has failed, for
/// half a minute at most, and logs when that was too short. The file does not exist before the first change.
///
/// Stored text is understood as follows. Whole numbers: decimal digits with an optional sign that fit
/// into 64 bits. Truth values: "true", "yes", "on" in any letter case, and whole numbers other than 0;
/// all else is false. A list (a bare comma in a line edited by hand) is no value at all.
class QtUserDefaults : public UserDefaults {
public:
    /// `log` outlives this object and its last write, and is written to from two threads.
    explicit QtUserDefaults(SystemLog& log, const QString& path = defaultPath());
    ~QtUserDefaults() override;
    QtUserDefaults(const QtUserDefaults&) = delete;
    QtUserDefaults& operator=(const QtUserDefaults&) = delete;

    /// $XDG_CONFIG_HOME/Corvandi/Corvandi.conf, with ~/.config when the variable is not set.
    [[nodiscard]] static QString defaultPath();

    void registerDefaults(const std::map<QString, DefaultsValue>& defaults) override;
    [[nodiscard]] int64_t integer(const QString& key) const override;
    [[nodiscard]] bool boolean(const QString& key) const override;
    [[nodiscard]] std::optional<QString> string(const QString& key) const override;
    void set(const QString& key, const DefaultsValue& value) override;

private:
    struct ChangedFile;

    SystemLog& log_;
    /// Shared with the worker.
    std::shared_ptr<ChangedFile> file_;
    std::map<QString, QString> stored_;
    std::map<QString, QString> registered_;
    Worker writer_;
};

} // namespace corvandi
