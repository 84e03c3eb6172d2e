#pragma once

#include "shell/updates/update_source.h"

#include <utility>

namespace corvandi::testing {

/// A place of updates that answers when the test says so.
class FakeUpdateSource : public UpdateSource {
public:
    bool configured = true;
    int feedRequests = 0;
    int packageRequests = 0;
    int openings = 0;
    int packagesAlive = 0;

    [[nodiscard]] bool isConfigured() const override { return configured; }
    [[nodiscard]] std::unique_ptr<Registration> fetchFeed(FeedHandler handler) override
    {
        ++feedRequests;
        return pending(feed_, std::move(handler));
    }
    [[nodiscard]] std::unique_ptr<Registration> fetchPackage(const Release& release, ProgressHandler progress,
                                                             PackageHandler handler) override
    {
        ++packageRequests;
        requested = release.version.text();
        progress_ = std::move(progress);
        return pending(package_, std::move(handler));
    }

    /// Whether something is waited for: neither answered nor cancelled.
    [[nodiscard]] bool isFetchingFeed() const { return bool(feed_); }
    [[nodiscard]] bool isFetchingPackage() const { return bool(package_); }
    [[nodiscard]] bool isOpening() const { return bool(opened_); }

    void answerFeed(const UpdateResult<Release>& result) { std::exchange(feed_, {})(result); }
    void advance(DownloadProgress progress) { progress_(progress); }
    void completePackage() { std::exchange(package_, {})(std::make_unique<Package>(*this)); }
    void failPackage(const UpdateFailure& failure) { std::exchange(package_, {})(failure); }
    void answerOpening(const std::optional<UpdateFailure>& failure) { std::exchange(opened_, {})(failure); }

    QString requested;

private:
    template<class Handler>
    class Pending : public Registration {
    public:
        explicit Pending(Handler& slot)
            : slot_(slot)
        {
        }
        ~Pending() override { slot_ = {}; }

    private:
        Handler& slot_;
    };

    class Package : public UpdatePackage {
    public:
        explicit Package(FakeUpdateSource& source)
            : source_(source)
        {
            ++source_.packagesAlive;
        }
        ~Package() override { --source_.packagesAlive; }
        [[nodiscard]] std::unique_ptr<Registration> open(Opened opened) override
        {
            ++source_.openings;
            return pending(source_.opened_, std::move(opened));
        }

    private:
        FakeUpdateSource& source_;
    };

    template<class Handler>
    static std::unique_ptr<Registration> pending(Handler& slot, Handler handler)
    {
        slot = std::move(handler);
        return std::make_unique<Pending<Handler>>(slot);
    }

    FeedHandler feed_;
    ProgressHandler progress_;
    PackageHandler package_;
    UpdatePackage::Opened opened_;
};

} // namespace corvandi::testing
