#pragma once

#include <QString>
#include <QUuid>

namespace corvandi {

/// One replacement: when I say this, write that.
struct VocabRule {
    /// Identity of the rule; stays when the texts are edited.
    QUuid id;
    /// The word or phrase as the recogniser writes it. May be empty; the rule then never applies.
    QString from;
    /// What it is to become.
    QString to;

    friend bool operator==(const VocabRule&, const VocabRule&) = default;
};

} // namespace corvandi
