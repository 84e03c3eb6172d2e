#pragma once

#include "base/error.h"
#include "ports/file_system.h"
#include "ports/wall_clock.h"
#include "ports/work_queue.h"

#include <deque>
#include <map>
#include <set>
#include <stdexcept>
#include <utility>
#include <vector>

namespace corvandi::testing {

/// What a file system is asked to do.
enum class FileOperation { createDirectory, exists, read, write, remove, move };

/// Files in memory. Each operation can be made to fail, and all are recorded.
class FakeFileSystem : public FileSystem {
public:
    struct Call {
        FileOperation operation;
        QString path;

        friend bool operator==(const Call&, const Call&) = default;
    };

    /// From now on the operation fails for every path, with this reason.
    void fail(FileOperation operation, const QString& reason)
    {
        reasons_.insert_or_assign(operation, reason);
    }
    void recover(FileOperation operation) { reasons_.erase(operation); }

    void createDirectory(const QString& path) override
    {
        attempt(FileOperation::createDirectory, path);
        folders.insert(path);
    }
    [[nodiscard]] bool exists(const QString& path) override
    {
        attempt(FileOperation::exists, path);
        return files.contains(path) || folders.contains(path);
    }
    [[nodiscard]] QByteArray read(const QString& path) override
    {
        attempt(FileOperation::read, path);
        const auto file = files.find(path);
        if (file == files.end())
            throw Error(QStringLiteral("No such file or directory"));
        return file->second;
    }
    void writeAtomically(const QString& path, const QByteArray& content) override
    {
        attempt(FileOperation::write, path);
        files.insert_or_assign(path, content);
    }
    void remove(const QString& path) override
    {
        attempt(FileOperation::remove, path);
        if (files.erase(path) == 0 && folders.erase(path) == 0)
            throw Error(QStringLiteral("No such file or directory"));
    }
    void move(const QString& from, const QString& to) override
    {
        attempt(FileOperation::move, from);
        if (files.contains(to) || folders.contains(to))
            throw std::logic_error("the new name is not free");
        auto file = files.extract(from);
        if (file.empty())
            throw Error(QStringLiteral("No such file or directory"));
        file.key() = to;
        files.insert(std::move(file));
    }

    /// The paths of an operation's calls, in order.
    [[nodiscard]] std::vector<QString> pathsOf(FileOperation operation) const
    {
        std::vector<QString> paths;
        for (const Call& call : calls) {
            if (call.operation == operation)
                paths.push_back(call.path);
        }
        return paths;
    }

    std::map<QString, QByteArray> files;
    std::set<QString> folders;
    /// Everything that was asked for, also what failed.
    std::vector<Call> calls;

private:
    void attempt(FileOperation operation, const QString& path)
    {
        calls.push_back({operation, path});
        if (const auto reason = reasons_.find(operation); reason != reasons_.end())
            throw Error(reason->second);
    }

    std::map<FileOperation, QString> reasons_;
};

/// A queue whose work is done when the test says so, in the calling thread.
class ManualWorkQueue : public WorkQueue {
public:
    ~ManualWorkQueue() override { runAll(); }

    void async(std::function<void()> work) override { waiting_.push_back(std::move(work)); }

    [[nodiscard]] std::size_t size() const { return waiting_.size(); }
    void runNext()
    {
        const auto work = std::move(waiting_.front());
        waiting_.pop_front();
        work();
    }
    void runAll()
    {
        while (!waiting_.empty())
            runNext();
    }

private:
    std::deque<std::function<void()>> waiting_;
};

/// A wall clock that stands until it is set.
class FakeWallClock : public WallClock {
public:
    [[nodiscard]] Date now() const override { return date; }

    Date date;
};

} // namespace corvandi::testing
