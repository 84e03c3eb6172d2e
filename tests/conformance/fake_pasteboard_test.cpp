#include "conformance/pasteboard_suite.h"
#include "conformance/virtual_time.h"
#include "support/fake_pasteboard.h"

namespace corvandi::testing {
namespace {

class FakePasteboardDriver : public OnVirtualTime<PasteboardDriver> {
public:
    [[nodiscard]] Pasteboard& pasteboard() override { return pasteboard_; }
    void copyElsewhere(const QString& text) override { pasteboard_.copyFromOutside(text); }
    void copyPictureElsewhere() override
    {
        pasteboard_.takeOverFromOutside({{QStringLiteral("public.png"), QStringLiteral("PNG")}});
    }
    void copySecretElsewhere() override
    {
        pasteboard_.takeOverFromOutside({{pasteboard_type::concealed, QString()}});
    }
    void copyInAProgramThatHangs() override
    {
        pasteboard_.copyFromOutside(QStringLiteral("never given"));
        pasteboard_.ownerAnswers = false;
    }
    [[nodiscard]] std::optional<QString> textSeenElsewhere() override { return pasteboard_.text(); }
    [[nodiscard]] bool isConcealedElsewhere() override { return pasteboard_.isMarked(); }

private:
    FakePasteboard pasteboard_;
};

INSTANTIATE_TEST_SUITE_P(Fake, PasteboardSuite, over<FakePasteboardDriver>("Fake"));

} // namespace
} // namespace corvandi::testing
