#pragma once

#include <QString>

namespace corvandi {

/// Where the distribution's package puts the English model.
[[nodiscard]] QString installedModelFolder();

/// Tells a person what to do when the model is not there.
[[nodiscard]] QString modelMissingDescription();

/// The files of a model that lies in one folder.
struct ModelFiles {
    explicit ModelFiles(const QString& folder);

    QString acousticModel;
    QString dictionary;
    QString languageModel;

    /// Whether the files are there; says nothing about what is in them.
    [[nodiscard]] bool arePresent() const;
    /// Reads the files and finds what the recognition library does not check but relies on: truncated
    /// or overwritten ones. Throws `Error` naming the first bad file.
    void verify() const;

private:
    [[nodiscard]] QString acousticFile(const char* name) const;
};

} // namespace corvandi
