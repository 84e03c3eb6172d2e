#include "session/x11/keys/x11_keyboard.h"

#include "session/x11/keys/key_plan.h"
#include "session/x11/keys/keyboard_loan.h"
#include "session/x11/keys/keyboard_state.h"
#include "session/x11/keys/keymap_reader.h"
#include "session/x11/keys/keymap_writer.h"
#include "session/x11/keys/spare_keys.h"
#include "session/x11/keys/watched_chord.h"
#include "session/x11/keys/x11_connection.h"
#include "session/x11/keys/x11_key_event_source.h"

#include <chrono>
#include <optional>

namespace corvandi {
namespace {

/// After this time without typing, every program has looked up the characters that were typed.
constexpr std::chrono::minutes lookUpTime{1};

/// The keyboard whose map gives our keys their meaning.
std::optional<uint16_t> xtestKeyboard(const X11Connection& connection, uint16_t master)
{
    for (const KeyboardDevice& device : slaveKeyboards(connection)) {
        if (device.isXtest && device.master == master)
            return device.id;
    }
    return std::nullopt;
}

} // namespace

/// The connection, and what is on the keyboard because of us.
class X11Keyboard::Session {
public:
    Session(X11Connection connection, X11Connection player, SystemLog& log, WatchedChord& watched)
        : connection_(std::move(connection))
        , player_(std::move(player))
        , watched_(watched)
        , loan_(player_)
        , freeKeys_(connection_)
        , pump_(
              connection_, [this](const xcb_generic_event_t& event) { freeKeys_.handle(event); },
              [&log] { log.write(QStringLiteral("the keyboard's connection to the X server is lost")); })
    {
        giveBackWhatIsLeft(log);
        freeStaleModifiers();
    }
    ~Session()
    {
        releaseLeftDown();
        takeCharactersBack();
    }

    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    [[nodiscard]] std::unique_ptr<KeyEventSource> createSource(const QString& text,
                                                               const std::function<PasteShortcut()>& shortcut)
    {
        pump_.drainSoon();
        const auto state = readState(connection_);
        auto keymap = state ? presentKeymap(*state) : std::nullopt;
        if (!keymap)
            return nullptr;
        const TypingConditions conditions{
            state->group, static_cast<uint8_t>(state->locked & x11_mask::numLock), chordToAvoid()};
        const auto characters = typedCharacters(text.toStdU16String());
        keymap = keymapFor(characters, std::move(*keymap), conditions);
        if (!keymap)
            return nullptr;
        lastTyping_ = std::chrono::steady_clock::now();
        // Before they go off.
        loan_.note([&](BorrowedKeyboard& borrowed) {
            borrowed.locks = static_cast<uint8_t>(state->locked & ~x11_mask::numLock);
        });
        CharacterMap strokes(*keymap, conditions);
        return std::make_unique<X11KeyEventSource>(player_, std::move(*keymap), state->device,
                                                   std::move(strokes), watched_, loan_, shortcut,
                                                   [this](const KeySet& keys) { releaseWhenFree(keys); });
    }

    [[nodiscard]] bool isAnyHeld(uint64_t flags) const
    {
        const auto state = readState(connection_);
        return state && (state->held & x11Mask(flags)) != 0;
    }

    [[nodiscard]] std::unique_ptr<Registration> whenKeysAreFree(std::function<void()> callback)
    {
        pump_.drainSoon();
        return freeKeys_.add(std::move(callback));
    }

private:
    /// A program that was killed could not.
    void giveBackWhatIsLeft(SystemLog& log)
    {
        const auto left = loan_.leftBehind();
        if (!left)
            return;
        log.write(QStringLiteral("gives back what a killed program had borrowed from the keyboard"));
        if (left->locks)
            setLocks(player_, left->locks, left->locks);
        if (auto helps = left->stickyOptions ? readHelps(player_) : std::nullopt) {
            helps->stickyOptions = *left->stickyOptions;
            setHelps(player_, *helps);
        }
        if (left->hasModifiersDown)
            leftDown_ = modifiersOnlyDownOn(Owner::synthetic);
        spareKeys_ = SpareKeys(left->characters);
        takeCharactersBack();
    }

    /// A program that died while it held a keyboard has swallowed the release: then only the master keyboard
    /// takes the modifier for held.
    void freeStaleModifiers()
    {
        leftDown_ |= modifiersOnlyDownOn(Owner::nobody);
        if (leftDown_.none())
            return;
        const auto keymap = readKeymap(player_, XCB_XKB_ID_USE_CORE_KBD);
        if (const auto neutral = keymap ? keymap->neutralKey() : std::nullopt) {
            fakeKey(player_, *neutral, KeyDirection::down);
            fakeKey(player_, *neutral, KeyDirection::up);
        }
        releaseLeftDown();
    }

    enum class Owner { nobody, synthetic };

    /// The modifiers that are down on the master keyboard, or on the one for synthetic keys, and nowhere
    /// else.
    [[nodiscard]] KeySet modifiersOnlyDownOn(Owner owner) const
    {
        std::vector<uint16_t> synthetic;
        std::vector<uint16_t> others;
        for (const KeyboardDevice& device : slaveKeyboards(player_, Floating::too))
            (device.isXtest ? synthetic : others).push_back(device.id);
        const KeySet onSynthetic = keysDownOn(player_, requestKeysDownOn(player_, synthetic));
        const KeySet onOthers = keysDownOn(player_, requestKeysDownOn(player_, others));
        const auto keymap = readKeymap(player_, XCB_XKB_ID_USE_CORE_KBD);
        const KeySet modifiers = keymap ? heldModifierKeys(*keymap) : KeySet();
        const KeySet down = owner == Owner::synthetic ? onSynthetic : keysDown(player_) & ~onSynthetic;
        return modifiers & down & ~onOthers;
    }

    /// The person lets go of them on a keyboard of their own; on the one for typing they are down as well.
    void releaseWhenFree(const KeySet& keys)
    {
        leftDown_ |= keys;
        release_ = whenKeysAreFree([this] { releaseLeftDown(); });
    }

    void releaseLeftDown()
    {
        for (size_t key = 0; key < leftDown_.size(); ++key) {
            if (leftDown_[key])
                fakeKey(player_, static_cast<uint8_t>(key), KeyDirection::up);
        }
        leftDown_.reset();
        loan_.note([](BorrowedKeyboard& borrowed) { borrowed.hasModifiersDown = false; });
        player_.sync();
    }

    [[nodiscard]] std::optional<Keymap> presentKeymap(const KeyboardState& state) const
    {
        watched_.typedOn = xtestKeyboard(connection_, state.device);
        return watched_.typedOn ? readKeymap(connection_, *watched_.typedOn) : std::nullopt;
    }

    /// A key that is held down on the very keyboard on which we play can't be struck there at all.
    [[nodiscard]] std::optional<X11Chord> chordToAvoid() const
    {
        if (watched_.chord && watched_.heldOn && watched_.heldOn == watched_.typedOn)
            return X11Chord{watched_.chord->keyCode, x11_mask::none};
        return watched_.chord;
    }

    /// `present`, changed on the server if it has to be; nothing when it can't hold all characters.
    [[nodiscard]] std::optional<Keymap> keymapFor(const std::u32string& characters, Keymap present,
                                                  const TypingConditions& conditions)
    {
        spareKeys_.reconcile(present);
        const auto missing = CharacterMap(present, conditions).missing(characters);
        if (missing.empty())
            return present;
        auto wanted = spareKeys_.withCharacters(present, missing);
        if (!wanted && std::chrono::steady_clock::now() - lastTyping_ > lookUpTime)
            wanted = startedAfresh(characters, present, conditions);
        if (!wanted || !writeKeys(connection_, changedKeys(present, *wanted), *wanted))
            return std::nullopt;
        spareKeys_.adopt(present, *wanted);
        noteCharacters();
        return wanted;
    }

    [[nodiscard]] std::optional<Keymap> startedAfresh(const std::u32string& characters, const Keymap& present,
                                                      const TypingConditions& conditions) const
    {
        const Keymap cleared = spareKeys_.withoutCharacters(present);
        return SpareKeys().withCharacters(cleared, CharacterMap(cleared, conditions).missing(characters));
    }

    void takeCharactersBack()
    {
        const auto state = readState(connection_);
        const auto present = state ? presentKeymap(*state) : std::nullopt;
        if (!present)
            return;
        spareKeys_.reconcile(*present);
        const Keymap cleared = spareKeys_.withoutCharacters(*present);
        (void)writeKeys(connection_, changedKeys(*present, cleared), cleared);
        spareKeys_ = SpareKeys();
        noteCharacters();
    }

    void noteCharacters()
    {
        loan_.note([this](BorrowedKeyboard& borrowed) { borrowed.characters = spareKeys_.ours(); });
    }

    X11Connection connection_;
    /// For typing: no other events come here than what hands do meanwhile.
    X11Connection player_;
    WatchedChord& watched_;
    KeyboardLoan loan_;
    SpareKeys spareKeys_;
    std::chrono::steady_clock::time_point lastTyping_ = std::chrono::steady_clock::now();
    FreeKeysWatch freeKeys_;
    KeySet leftDown_;
    std::unique_ptr<Registration> release_;
    X11EventPump pump_;
};

X11Keyboard::X11Keyboard(SystemLog& log, WatchedChord& watched,
                         std::function<PasteShortcut()> shortcutOfFrontmost)
    : shortcutOfFrontmost_(std::move(shortcutOfFrontmost))
{
    auto connection = X11Connection::open(log);
    auto player = connection ? X11Connection::open(log) : std::nullopt;
    if (player)
        session_ = std::make_unique<Session>(std::move(*connection), std::move(*player), log, watched);
}

X11Keyboard::~X11Keyboard() = default;

std::unique_ptr<KeyEventSource> X11Keyboard::createSource(const QString& text)
{
    return session_ ? session_->createSource(text, shortcutOfFrontmost_) : nullptr;
}

bool X11Keyboard::isAnyHeld(uint64_t flags)
{
    return session_ && session_->isAnyHeld(flags);
}

std::unique_ptr<Registration> X11Keyboard::whenKeysAreFree(std::function<void()> callback)
{
    if (session_)
        return session_->whenKeysAreFree(std::move(callback));
    callback();
    return std::make_unique<Registration>();
}

} // namespace corvandi
