#include "conformance/event_loop_time.h"
#include "conformance/pasteboard_suite.h"
#include "session/x11/clipboard/pasteboard_fixture.h"

#include <stdexcept>

namespace corvandi::testing {
namespace {

class X11PasteboardDriver : public OnEventLoop<PasteboardDriver> {
public:
    [[nodiscard]] Pasteboard& pasteboard() override { return pasteboard_; }
    void copyElsewhere(const QString& text) override { own(QStringLiteral("UTF8_STRING"), text); }
    void copyPictureElsewhere() override { own(QStringLiteral("image/png"), QStringLiteral("PNG")); }
    void copySecretElsewhere() override
    {
        own(QStringLiteral("x-kde-passwordManagerHint"), QStringLiteral("secret"));
    }
    void copyInAProgramThatHangs() override
    {
        own(QStringLiteral("UTF8_STRING"), QStringLiteral("never given"));
        owner_->send(SIGSTOP);
    }
    [[nodiscard]] std::optional<QString> textSeenElsewhere() override
    {
        const auto seen = asSeenByOthers(QStringLiteral("UTF8_STRING"));
        // An owner without text may also give an empty one.
        return seen.value_or(QByteArray()).isEmpty() ? std::nullopt : std::optional(QString::fromUtf8(*seen));
    }
    [[nodiscard]] bool isConcealedElsewhere() override
    {
        return formsSeenByOthers().contains("x-kde-passwordManagerHint");
    }

private:
    /// The former owner goes when the next one has the clipboard, so that it never is without one.
    void own(const QString& form, const QString& content)
    {
        auto next = std::make_unique<Peer>(QStringList{QStringLiteral("own"), form, content});
        if (!next->isReady())
            throw std::runtime_error("the other program does not get the clipboard");
        owner_ = std::move(next);
    }

    QtMainQueue queue_;
    X11Pasteboard pasteboard_{queue_};
    std::unique_ptr<Peer> owner_;
};

INSTANTIATE_TEST_SUITE_P(Adapters, PasteboardSuite, over<X11PasteboardDriver>("X11"));

} // namespace
} // namespace corvandi::testing
