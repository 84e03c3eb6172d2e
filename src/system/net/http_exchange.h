#pragma once

#include "base/main_queue.h"

#include <QByteArray>
#include <QEventLoop>
#include <QIODevice>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QObject>
#include <QThreadPool>
#include <QUrl>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <utility>

namespace corvandi {

/// Work on a thread of a pool, whose result goes to the main thread. Destroying the task tells the work to
/// stop, without waiting for it, and the result is dropped.
///
/// Thread: main thread only, except the work itself.
template<class Result>
class BackgroundTask {
public:
    using Work = std::function<Result(const std::stop_token&)>;
    /// Runs once, later, on the main thread; it may destroy the task.
    using Done = std::function<void(Result)>;

    /// `queue` outlives the pool.
    BackgroundTask(QThreadPool& pool, MainQueue& queue, Work work, Done done)
        : done_(std::make_shared<Done>(std::move(done)))
    {
        // The work holds `done` weakly, so that what it has captured goes on the main thread.
        pool.start([&queue, work = std::move(work), stop = stop_.get_token(), done = std::weak_ptr(done_)] {
            if (stop.stop_requested())
                return;
            auto result = std::make_shared<Result>(work(stop));
            queue.async([done, result] {
                if (const auto call = done.lock())
                    (*call)(std::move(*result));
            });
        });
    }
    ~BackgroundTask() { stop_.request_stop(); }
    BackgroundTask(const BackgroundTask&) = delete;
    BackgroundTask& operator=(const BackgroundTask&) = delete;

private:
    std::stop_source stop_;
    std::shared_ptr<Done> done_;
};

/// The event loop of background work, which ends when the work is told to stop.
///
/// Thread: the one that created it; the stop may be requested from any.
class StoppableLoop {
public:
    explicit StoppableLoop(const std::stop_token& stop)
        : onStop_(stop, Quit{&loop_})
    {
    }

    /// Runs until `quit` or the stop, even if that came first.
    void run() { loop_.exec(); }
    /// From a callback inside `run`, or ahead of it.
    void quit() { Quit{&loop_}(); }

private:
    struct Quit {
        QEventLoop* loop;
        // Posted: a loop that has not begun would miss the call.
        void operator()() const { QMetaObject::invokeMethod(loop, &QEventLoop::quit, Qt::QueuedConnection); }
    };

    QEventLoop loop_;
    std::stop_callback<Quit> onStop_;
};

/// How a request has ended.
struct HttpEnd {
    enum class Kind {
        /// 200, and either all of the answer or as much as was wanted.
        answered,
        /// Another status.
        status,
        /// Nobody listens at the address.
        unreachable,
        /// There was a connection, but no whole answer.
        brokenOff,
    };
    Kind kind = Kind::brokenOff;
    /// 0 when the server has sent none.
    int status = 0;
    friend bool operator==(const HttpEnd&, const HttpEnd&) = default;
};

/// One request to a server on this machine, sent once and straight to it: no proxy, no redirections, no
/// second attempt with what was posted. Destroying it closes the connection.
///
/// Thread: that of the network, whose event loop must run. Bounded memory, whatever the server sends.
class HttpExchange : public QObject {
public:
    /// Takes the next bytes of the answer; false when no more are wanted.
    using Sink = std::function<bool(const QByteArray&)>;
    /// Called once, later. It must not destroy the exchange.
    using Finished = std::function<void(const HttpEnd&)>;

    /// Fetches what is at `url`.
    HttpExchange(QNetworkAccessManager& network, const QUrl& url, Sink sink, Finished finished);
    /// Posts a JSON document to `url`.
    HttpExchange(QNetworkAccessManager& network, const QUrl& url, const QByteArray& json, Sink sink,
                 Finished finished);
    ~HttpExchange() override;

    /// How it has ended; nothing while it has not.
    [[nodiscard]] const std::optional<HttpEnd>& ended() const { return end_; }

private:
    void watch(QNetworkReply* reply);
    void headersArrived();
    void bytesArrived();
    void replyFinished();
    [[nodiscard]] HttpEnd failure() const;
    void end(const HttpEnd& end);

    Sink sink_;
    Finished finished_;
    /// What is posted; read by the reply.
    std::unique_ptr<QIODevice> body_;
    std::unique_ptr<QNetworkReply> reply_;
    std::optional<HttpEnd> end_;
};

/// A network that reaches this machine only, directly.
[[nodiscard]] std::unique_ptr<QNetworkAccessManager> makeLoopbackNetwork();

} // namespace corvandi
