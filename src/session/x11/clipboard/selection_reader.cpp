#include "session/x11/clipboard/selection_reader.h"

#include <xcb/xfixes.h>

namespace corvandi {
namespace {

/// The number of XFixes' selection event on this server; 0 without XFixes.
uint8_t negotiateXFixes(const XcbConnection& x)
{
    const auto* extension = xcb_get_extension_data(x.get(), &xcb_xfixes_id);
    if (!extension || extension->present == 0)
        return 0;
    // The server refuses every other request of a client that has not stated its version.
    const auto version =
        x.reply(xcb_xfixes_query_version_reply,
                xcb_xfixes_query_version(x.get(), XCB_XFIXES_MAJOR_VERSION, XCB_XFIXES_MINOR_VERSION));
    return version ? static_cast<uint8_t>(extension->first_event + XCB_XFIXES_SELECTION_NOTIFY) : uint8_t{0};
}

} // namespace

SelectionOwnerWatch::SelectionOwnerWatch(const XcbConnection& x, xcb_atom_t selection)
    : eventType_(negotiateXFixes(x))
    , selection_(selection)
{
    if (!isWatching())
        return;
    xcb_xfixes_select_selection_input(x.get(), x.root(), selection_,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    x.flush();
}

std::optional<OwnerChange> SelectionOwnerWatch::handle(const xcb_generic_event_t& event)
{
    if (!isWatching() || eventType(event) != eventType_)
        return std::nullopt;
    const auto& notice = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(event);
    if (notice.selection != selection_)
        return std::nullopt;
    ++count_;
    return notice.subtype == XCB_XFIXES_SELECTION_EVENT_SET_SELECTION_OWNER ? OwnerChange::taken
                                                                            : OwnerChange::lost;
}

namespace {

using namespace std::chrono_literals;

/// A person waits for the paste that this reading precedes.
constexpr auto answerLimit = 300ms;
/// Fits into the buffer of a socket: the X server can hand it over without waiting for us in between.
constexpr uint32_t pieceBytes = 64 * 1024;
/// Nobody wants more text than this back; an owner must not be able to fill the memory.
constexpr size_t largestText = size_t{64} * 1024 * 1024;

} // namespace

SelectionAtoms::SelectionAtoms(const XcbConnection& x)
    : clipboard(x.atom("CLIPBOARD"))
    , utf8String(x.atom("UTF8_STRING"))
    , managerHint(x.atom("x-kde-passwordManagerHint"))
    , incr(x.atom("INCR"))
    , transfer(x.atom("CORVANDI_TRANSFER"))
{
}

// A window for each reading: what a slow owner still sends to an earlier one goes nowhere.
SelectionReader::SelectionReader(const XcbConnection& x, const SelectionAtoms& atoms,
                                 std::deque<xcb_atom_t> forms)
    : x_(x)
    , atoms_(atoms)
    , window_(xcb_generate_id(x.get()))
    , forms_(std::move(forms))
{
    const uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_create_window(x_.get(), XCB_COPY_FROM_PARENT, window_, x_.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
}

SelectionReader::~SelectionReader()
{
    xcb_destroy_window(x_.get(), window_);
    x_.flush();
}

void SelectionReader::start(MainQueue& queue)
{
    timeLimit_ = queue.after(answerLimit, [this] {
        const auto held = shared_from_this();
        giveUp();
    });
    tryNextForm();
}

void SelectionReader::tryNextForm()
{
    if (forms_.empty()) {
        finish(std::nullopt);
        return;
    }
    const xcb_atom_t target = forms_.front();
    forms_.pop_front();
    question_ =
        xcb_convert_selection(x_.get(), window_, atoms_.clipboard, target, atoms_.transfer, XCB_CURRENT_TIME)
            .sequence;
    x_.flush();
}

void SelectionReader::handle(const xcb_generic_event_t& event)
{
    if (eventType(event) == XCB_SELECTION_NOTIFY)
        onSelectionNotify(reinterpret_cast<const xcb_selection_notify_event_t&>(event));
    else if (eventType(event) == XCB_PROPERTY_NOTIFY)
        onPropertyNotify(reinterpret_cast<const xcb_property_notify_event_t&>(event));
}

void SelectionReader::handleLostOwner(const xcb_generic_event_t& event)
{
    // An event bears the number of the last question that the server had seen. Before ours, it tells of
    // an earlier owner. The numbers wrap around.
    const bool isOurs = static_cast<int32_t>(event.full_sequence - question_) >= 0;
    if (!isOurs)
        return;
    hasLostOwner_ = true;
    if (phase_ == Phase::converting || phase_ == Phase::awaitingPart)
        giveUp();
}

void SelectionReader::onSelectionNotify(const xcb_selection_notify_event_t& notice)
{
    if (notice.requestor != window_ || phase_ != Phase::converting)
        return;
    if (notice.property != XCB_ATOM_NONE)
        beginPart();
    else
        tryNextForm();
}

void SelectionReader::onPropertyNotify(const xcb_property_notify_event_t& notice)
{
    const bool isNewPart =
        notice.window == window_ && notice.atom == atoms_.transfer && notice.state == XCB_PROPERTY_NEW_VALUE;
    if (isNewPart && phase_ == Phase::awaitingPart)
        beginPart();
}

void SelectionReader::beginPart()
{
    partOffset_ = 0;
    phase_ = Phase::reading;
}

void SelectionReader::readPiece()
{
    constexpr uint32_t bytesPerWord = 4;
    // The server deletes the property with its last piece, which is what the owner of a text in parts
    // waits for.
    constexpr uint8_t deleteWhenRead = 1;
    const auto piece = x_.reply(xcb_get_property_reply,
                                xcb_get_property(x_.get(), deleteWhenRead, window_, atoms_.transfer,
                                                 XCB_GET_PROPERTY_TYPE_ANY, partOffset_ / bytesPerWord,
                                                 pieceBytes / bytesPerWord));
    if (!piece)
        finish(std::nullopt);
    else if (piece->type == atoms_.incr && !comesInParts_) {
        comesInParts_ = true;
        phase_ = Phase::awaitingPart;
    } else
        takePiece(*piece);
}

void SelectionReader::takePiece(xcb_get_property_reply_t& piece)
{
    const auto size = static_cast<uint32_t>(xcb_get_property_value_length(&piece));
    received_ += size;
    if (piece.format != 8 || received_ > largestText) {
        finish(std::nullopt);
        return;
    }
    if (!decoder_)
        decoder_.emplace(piece.type == XCB_ATOM_STRING ? QStringDecoder::Latin1 : QStringDecoder::Utf8);
    text_ += (*decoder_)(QByteArrayView(static_cast<const char*>(xcb_get_property_value(&piece)), size));
    partOffset_ += size;
    if (piece.bytes_after == 0)
        endPart();
}

void SelectionReader::endPart()
{
    const bool isLast = !comesInParts_ || partOffset_ == 0;
    if (isLast)
        // Qt programs answer with an empty text rather than refuse a form that they lack.
        finish(text_.isEmpty() ? std::nullopt : std::optional(std::move(text_)));
    else if (hasLostOwner_)
        giveUp();
    else
        phase_ = Phase::awaitingPart;
}

void SelectionReader::finish(std::optional<QString> text)
{
    phase_ = Phase::finished;
    timeLimit_.reset();
    result_.complete(std::move(text));
}

} // namespace corvandi
