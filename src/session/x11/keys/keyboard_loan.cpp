#include "session/x11/keys/keyboard_loan.h"

#include "session/x11/xcb_connection.h"

#include <algorithm>
#include <random>

namespace corvandi {
namespace {

/// The first number: what comes after it is arranged as below.
constexpr uint32_t version = 1;
constexpr uint32_t hasStickyOptions = 0x10000;
constexpr size_t headSize = 5;
constexpr size_t keyHeadSize = 3;

/// Takes one number after the other; zeros when there are none left.
class Reader {
public:
    explicit Reader(const std::vector<uint32_t>& words)
        : words_(words)
    {
    }

    uint32_t take() { return isAtEnd() ? 0 : words_[next_++]; }
    [[nodiscard]] bool isAtEnd() const { return next_ >= words_.size(); }
    [[nodiscard]] size_t left() const { return words_.size() - next_; }

private:
    const std::vector<uint32_t>& words_;
    size_t next_ = 0;
};

} // namespace

std::vector<uint32_t> wordsFor(const BorrowedKeyboard& borrowed)
{
    const uint32_t sticky = borrowed.stickyOptions ? hasStickyOptions | *borrowed.stickyOptions : 0;
    std::vector<uint32_t> words{version, borrowed.locks, sticky, borrowed.hasModifiersDown ? 1U : 0U,
                                static_cast<uint32_t>(borrowed.characters.size())};
    for (const auto& [code, key] : borrowed.characters) {
        words.insert(words.end(), {uint32_t{code} | (uint32_t{key.types[0]} << 8U), key.width,
                                   static_cast<uint32_t>(key.symbols.size())});
        words.insert(words.end(), key.symbols.begin(), key.symbols.end());
    }
    return words;
}

std::optional<BorrowedKeyboard> borrowedIn(const std::vector<uint32_t>& words)
{
    Reader reader(words);
    if (words.size() < headSize || reader.take() != version)
        return std::nullopt;
    BorrowedKeyboard borrowed;
    borrowed.locks = static_cast<uint8_t>(reader.take());
    if (const uint32_t sticky = reader.take(); sticky & hasStickyOptions)
        borrowed.stickyOptions = static_cast<uint16_t>(sticky);
    borrowed.hasModifiersDown = reader.take() != 0;
    for (uint32_t count = reader.take(); count > 0 && reader.left() >= keyHeadSize; --count) {
        const uint32_t code = reader.take();
        KeySymbols key;
        key.types = {static_cast<uint8_t>(code >> 8U), 0, 0, 0};
        key.groupInfo = 1;
        key.width = static_cast<uint8_t>(reader.take());
        key.symbols.resize(std::min<size_t>(reader.take(), reader.left()));
        std::generate(key.symbols.begin(), key.symbols.end(), [&] { return reader.take(); });
        borrowed.characters.emplace(static_cast<uint8_t>(code), std::move(key));
    }
    return borrowed;
}

KeyboardLoan::KeyboardLoan(const X11Connection& connection)
    : connection_(connection)
    , property_(connection.atom("_CORVANDI_BORROWED_KEYBOARD"))
    , writer_{xcb_generate_id(connection.get()), std::random_device()()}
{
    xcb_create_window(connection_.get(), 0, writer_.window, connection_.root(), 0, 0, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, 0, nullptr);
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, writer_.window, property_,
                        XCB_ATOM_CARDINAL, 32, 1, &writer_.mark);
    connection_.flush();
}

std::vector<uint32_t> KeyboardLoan::present() const
{
    constexpr uint32_t longestNote = 64 * 1024;
    return wordsOf(connection_, requestProperty(connection_, connection_.root(), property_, longestNote));
}

KeyboardLoan::Writer KeyboardLoan::takeWriter(std::vector<uint32_t>& words)
{
    if (words.size() < 2)
        return {XCB_WINDOW_NONE, 0};
    const Writer writer{words[words.size() - 2], words.back()};
    words.resize(words.size() - 2);
    return writer;
}

bool KeyboardLoan::isAlive(const Writer& writer) const
{
    return wordsOf(connection_, requestProperty(connection_, writer.window, property_)) ==
           std::vector{writer.mark};
}

std::optional<BorrowedKeyboard> KeyboardLoan::leftBehind()
{
    std::vector<uint32_t> words = present();
    if (words.empty() || isAlive(takeWriter(words)))
        return std::nullopt;
    xcb_delete_property(connection_.get(), connection_.root(), property_);
    return borrowedIn(words);
}

void KeyboardLoan::write(BorrowedKeyboard borrowed)
{
    if (borrowed == borrowed_)
        return;
    borrowed_ = std::move(borrowed);
    std::vector<uint32_t> others = present();
    const Writer writer = takeWriter(others);
    if (writer.window != writer_.window && isAlive(writer))
        return;
    if (borrowed_.isNothing()) {
        xcb_delete_property(connection_.get(), connection_.root(), property_);
    } else {
        std::vector<uint32_t> words = wordsFor(borrowed_);
        words.insert(words.end(), {writer_.window, writer_.mark});
        xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, connection_.root(), property_,
                            XCB_ATOM_CARDINAL, 32, static_cast<uint32_t>(words.size()), words.data());
    }
    connection_.flush();
}

} // namespace corvandi
