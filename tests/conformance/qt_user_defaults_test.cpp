#include "conformance/user_defaults_suite.h"
#include "support/recording_log.h"
#include "system/preferences/qt_user_defaults.h"

#include <QTemporaryDir>

namespace corvandi::testing {
namespace {

class QtUserDefaultsDriver : public UserDefaultsDriver {
public:
    QtUserDefaultsDriver() { defaults_.emplace(log_, path()); }

    [[nodiscard]] UserDefaults& defaults() override { return *defaults_; }
    void restart() override
    {
        defaults_.reset();
        defaults_.emplace(log_, path());
    }

private:
    [[nodiscard]] QString path() const { return folder_.filePath(QStringLiteral("Corvandi.conf")); }

    RecordingLog log_;
    QTemporaryDir folder_;
    std::optional<QtUserDefaults> defaults_;
};

INSTANTIATE_TEST_SUITE_P(Adapters, UserDefaultsSuite, over<QtUserDefaultsDriver>("Qt"));

} // namespace
} // namespace corvandi::testing
