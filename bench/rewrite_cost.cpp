// What rewriting costs beside the model's own work: what a look at the model holds up the main thread,
// what the way to the server and back adds to a rewrite, and what questions leave behind that are given
// up. The server is this program's own; needs no display:
//
//   cmake --preset release && ninja -C build/release rewrite_cost && build/release/bench/rewrite_cost
//
// Exits with 1 when a bound is not kept.

#include "system/language_model/chat_server_model.h"
#include "system/process/qt_main_queue.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QEventLoop>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

namespace corvandi::bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int looks = 200;
constexpr int rewrites = 200;
constexpr int abandoned = 1000;
constexpr Milliseconds allowedForATurn{1};
constexpr Milliseconds allowedForTheWay{5};

/// A model server that answers at once, one connection after the other, on a thread of its own. It notes
/// when it has a whole question and when it has written the answer.
class Server {
public:
    Server()
        : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0))
    {
        sockaddr_in address{};
        address.sin_family = AF_INET;
        address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
        socklen_t size = sizeof(address);
        auto* generic = reinterpret_cast<sockaddr*>(&address);
        if (::bind(socket_, generic, size) != 0 || ::listen(socket_, 64) != 0 ||
            ::getsockname(socket_, generic, &size) != 0)
            std::abort();
        port_ = ntohs(address.sin_port);
        thread_ = std::thread([this] { serve(); });
    }
    ~Server()
    {
        ::shutdown(socket_, SHUT_RDWR);
        thread_.join();
        ::close(socket_);
    }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    [[nodiscard]] QUrl url() const { return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(port_)); }

private:
    void serve() const
    {
        for (;;) {
            const int connection = ::accept(socket_, nullptr, nullptr);
            if (connection < 0)
                return;
            answer(connection);
            ::close(connection);
        }
    }
    static void answer(int connection)
    {
        std::string request;
        char piece[4096];
        // The last thing in a question is this member; a look has no more than its head.
        while (!request.ends_with("\"stream\":true}") &&
               !(request.starts_with("GET") && request.ends_with("\r\n\r\n"))) {
            const ssize_t count = ::recv(connection, piece, sizeof(piece), 0);
            if (count <= 0)
                return;
            request.append(piece, static_cast<size_t>(count));
        }
        const std::string body =
            request.starts_with("GET")
                ? R"({"object":"list","data":[{"id":"small"}]})"
                : "data: {\"choices\":[{\"delta\":{\"content\":\"So, we went home.\"}}]}\n\n"
                  "data: {\"choices\":[{\"delta\":{},\"finish_reason\":\"stop\"}]}\n\ndata: [DONE]\n\n";
        const std::string all = "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) +
                                "\r\nConnection: close\r\n\r\n" + body;
        (void)::send(connection, all.data(), all.size(), MSG_NOSIGNAL);
    }

    int socket_;
    quint16 port_ = 0;
    std::thread thread_;
};

class NoDefaults : public UserDefaults {
public:
    void registerDefaults(const std::map<QString, DefaultsValue>&) override {}
    [[nodiscard]] int64_t integer(const QString&) const override { return 0; }
    [[nodiscard]] bool boolean(const QString&) const override { return true; }
    [[nodiscard]] std::optional<QString> string(const QString&) const override { return std::nullopt; }
    void set(const QString&, const DefaultsValue&) override {}
};

class NoLog : public SystemLog {
protected:
    void writeLine(const QString&) override {}
};

/// The event loop, on whose clock time can be let pass.
class HurriedQueue : public QtMainQueue {
public:
    Duration ahead{};
    [[nodiscard]] Duration now() const override { return QtMainQueue::now() + ahead; }
};

/// Turns of the event loop, and how long the longest was.
class Turns {
public:
    /// Runs turns until `condition` holds.
    void runUntil(const std::function<bool()>& condition)
    {
        while (!condition()) {
            // Sleeps between the turns, so that they alone are measured.
            std::this_thread::sleep_for(50us);
            measure([] { QCoreApplication::processEvents(); });
        }
    }
    /// Counts `work`, which is done within a turn.
    void measure(const std::function<void()>& work)
    {
        const auto began = Clock::now();
        const Milliseconds usedBefore = processorTime();
        work();
        passed.push_back(Clock::now() - began);
        used.push_back(processorTime() - usedBefore);
    }

    std::vector<Milliseconds> passed;
    std::vector<Milliseconds> used;

private:
    /// On a busy machine less than what has passed.
    [[nodiscard]] static Milliseconds processorTime()
    {
        timespec time{};
        clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
        return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    }
};

[[nodiscard]] Milliseconds longest(const std::vector<Milliseconds>& times)
{
    return *std::ranges::max_element(times);
}

[[nodiscard]] Milliseconds median(std::vector<Milliseconds> times)
{
    std::ranges::sort(times);
    return times[times.size() / 2];
}

struct Bench {
    Server server;
    HurriedQueue queue;
    NoDefaults defaults;
    NoLog log;
    ChatServerModel model{queue, defaults, log, {{server.url()}, {}, quint64{8} << 30}};

    void look(Turns& turns)
    {
        queue.ahead += 3s;
        bool isDone = false;
        std::unique_ptr<Registration> look;
        turns.measure([&] { look = model.refreshAvailability([&] { isDone = true; }); });
        turns.runUntil([&] { return isDone; });
    }
    [[nodiscard]] Milliseconds rewrite()
    {
        const auto began = Clock::now();
        bool isDone = false;
        const auto session = model.makeSession(QStringLiteral("Rewrite."));
        session->respond(QStringLiteral("so we goes home"), [&](const LanguageModelAnswer& answer) {
            isDone = std::holds_alternative<QString>(answer);
        });
        while (!isDone)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return Clock::now() - began;
    }
};

[[nodiscard]] bool measureLooks(Bench& bench)
{
    Turns turns;
    for (int i = 0; i < looks; ++i)
        bench.look(turns);
    std::printf("a look at the model, longest turn of the main thread: %.3f ms, of which %.3f ms of work\n",
                longest(turns.passed).count(), longest(turns.used).count());
    return longest(turns.used) < allowedForATurn;
}

[[nodiscard]] bool measureRewrites(Bench& bench)
{
    std::vector<Milliseconds> times;
    for (int i = 0; i < rewrites; ++i)
        times.push_back(bench.rewrite());
    std::printf("a rewrite by a server that answers at once: median %.2f ms, longest %.2f ms\n",
                median(times).count(), longest(times).count());
    return median(times) < allowedForTheWay;
}

[[nodiscard]] long long entriesOf(const char* folder)
{
    return QDir(QLatin1String(folder))
        .entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)
        .size();
}

[[nodiscard]] bool measureAbandoned(Bench& bench)
{
    const auto files = [] { return entriesOf("/proc/self/fd"); };
    const auto threads = [] { return entriesOf("/proc/self/task"); };
    const auto atRest = [] { std::this_thread::sleep_for(200ms); };
    atRest();
    const long long filesBefore = files();
    const long long threadsBefore = threads();
    const auto began = Clock::now();
    for (int i = 0; i < abandoned; ++i) {
        const auto session = bench.model.makeSession(QStringLiteral("Rewrite."));
        session->respond(QStringLiteral("so we goes home"), [](const LanguageModelAnswer&) {});
        // Long enough to reach the server with some of them.
        std::this_thread::sleep_for(std::chrono::microseconds(i % 10 * 100));
    }
    const Milliseconds passed = Clock::now() - began;
    atRest();
    std::printf("%d questions given up in %.0f ms: open files %lld before, %lld after; threads %lld, %lld\n",
                abandoned, passed.count(), filesBefore, files(), threadsBefore, threads());
    return files() <= filesBefore && threads() <= threadsBefore;
}

int run()
{
    Bench bench;
    // First and separately: the first look of a process loads what the network needs.
    Turns first;
    bench.look(first);
    std::printf("the first look, longest turn of the main thread: %.3f ms, of which %.3f ms of work\n",
                longest(first.passed).count(), longest(first.used).count());
    const bool firstIsShort = longest(first.used) < allowedForATurn;
    const bool looksAreShort = measureLooks(bench);
    const bool wayIsShort = measureRewrites(bench);
    const bool nothingIsLeft = measureAbandoned(bench);
    return firstIsShort && looksAreShort && wayIsShort && nothingIsLeft ? 0 : 1;
}

} // namespace
} // namespace corvandi::bench

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    return corvandi::bench::run();
}
