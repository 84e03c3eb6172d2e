#include "session/x11/clipboard/x11_pasteboard.h"

#include "ports/pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

#include <algorithm>

namespace corvandi {
namespace {

// Qt offers "text/plain" under the classic X11 names as well, but not under this one, which programs
// that speak MIME types ask for first.
const QString utf8Text = QStringLiteral("text/plain;charset=utf-8");
const QString managerHint = QStringLiteral("x-kde-passwordManagerHint");

} // namespace

bool ClipboardContent::addForm(const QString& value, const QString& type)
{
    if (type == pasteboard_type::string) {
        setText(value);
        setData(utf8Text, value.toUtf8());
        return true;
    }
    if (type == pasteboard_type::concealed) {
        setData(type, value.toUtf8());
        setData(managerHint, QByteArrayLiteral("secret"));
        return true;
    }
    return false;
}

std::optional<QString> ClipboardContent::plainText() const
{
    return hasFormat(QStringLiteral("text/plain")) ? std::optional(text()) : std::nullopt;
}

bool ClipboardContent::isConcealed() const
{
    return hasFormat(managerHint);
}

namespace {

/// Whether this window was made on Qt's connection to the server: the upper bits of its number tell.
bool isQtWindow(xcb_window_t window)
{
    xcb_connection_t* connection = toolkitConnection();
    if (!connection || window == XCB_WINDOW_NONE)
        return false;
    const xcb_setup_t* setup = xcb_get_setup(connection);
    return (window & ~setup->resource_id_mask) == setup->resource_id_base;
}

} // namespace

X11Pasteboard::X11Pasteboard(MainQueue& queue)
    : queue_(queue)
    , atoms_(x_)
    , ownerWatch_(x_, atoms_.clipboard)
    , readable_(x_.fileDescriptor(), QSocketNotifier::Read)
{
    QObject::connect(&readable_, &QSocketNotifier::activated, &readable_, [this] {
        collectEvents();
        readable_.setEnabled(x_.isUsable());
    });
}

X11Pasteboard::~X11Pasteboard()
{
    for (const auto& reader : activeReaders())
        reader->giveUp();
}

QCoro::Task<std::optional<QString>> X11Pasteboard::string()
{
    if (isOwner())
        co_return content_->plainText();
    const auto reader = startReader({atoms_.utf8String, XCB_ATOM_STRING});
    const auto result = reader->result();
    co_return co_await result;
}

QCoro::Task<bool> X11Pasteboard::isConcealed()
{
    if (isOwner())
        co_return content_->isConcealed();
    const auto reader = startReader({atoms_.managerHint});
    const auto result = reader->result();
    const std::optional<QString> hint = co_await result;
    co_return hint == QLatin1String("secret");
}

void X11Pasteboard::clearContents()
{
    auto content = std::make_unique<ClipboardContent>();
    content_ = content.get();
    QGuiApplication::clipboard()->setMimeData(content.release());
}

bool X11Pasteboard::setString(const QString& value, const QString& type)
{
    return isOwner() && content_->addForm(value, type);
}

int64_t X11Pasteboard::changeCount()
{
    if (!ownerWatch_.isWatching())
        return ++blindCount_;
    // Whatever has happened until now has been told once the server has answered anything.
    (void)x_.reply(xcb_get_input_focus_reply, xcb_get_input_focus(x_.get()));
    collectEvents();
    return ownerWatch_.count();
}

bool X11Pasteboard::isOwner() const
{
    if (!content_)
        return false;
    const auto owner =
        x_.reply(xcb_get_selection_owner_reply, xcb_get_selection_owner(x_.get(), atoms_.clipboard));
    return owner && isQtWindow(owner->owner);
}

std::shared_ptr<SelectionReader> X11Pasteboard::startReader(std::deque<xcb_atom_t> forms)
{
    auto reader = std::make_shared<SelectionReader>(x_, atoms_, std::move(forms));
    readers_.push_back(reader);
    reader->start(queue_);
    return reader;
}

std::vector<std::shared_ptr<SelectionReader>> X11Pasteboard::activeReaders()
{
    std::erase_if(readers_, [](const auto& reader) { return reader.expired(); });
    std::vector<std::shared_ptr<SelectionReader>> active;
    for (const auto& reader : readers_)
        active.push_back(reader.lock());
    return active;
}

void X11Pasteboard::collectEvents()
{
    while (auto event = x_.pollEvent()) {
        const auto ownerChange = ownerWatch_.handle(*event);
        arrivals_.push_back({std::move(event), ownerChange});
    }
    if (!arrivals_.empty())
        workLater();
}

void X11Pasteboard::workLater()
{
    if (std::exchange(isWorkScheduled_, true))
        return;
    queue_.async(life_.guard([this] {
        isWorkScheduled_ = false;
        work();
    }));
}

void X11Pasteboard::work()
{
    // A resumed coroutine may let go of this object.
    const auto life = life_.watch();
    while (!arrivals_.empty()) {
        const Arrival arrival = std::move(arrivals_.front());
        arrivals_.pop_front();
        dispatch(arrival);
        if (life.expired())
            return;
    }
    for (const auto& reader : activeReaders()) {
        if (reader->hasPieceToRead())
            reader->readPiece();
        if (life.expired())
            return;
    }
    const auto active = activeReaders();
    if (std::any_of(active.begin(), active.end(),
                    [](const auto& reader) { return reader->hasPieceToRead(); }))
        workLater();
    collectEvents();
}

void X11Pasteboard::dispatch(const Arrival& arrival)
{
    for (const auto& reader : activeReaders()) {
        if (!arrival.ownerChange)
            reader->handle(*arrival.event);
        else if (arrival.ownerChange == OwnerChange::lost)
            reader->handleLostOwner(*arrival.event);
    }
}

} // namespace corvandi
