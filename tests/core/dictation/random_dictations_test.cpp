// Dictations by a user who does anything at any moment, on a desktop on which anything may happen. What must
// hold whatever happens is written down in `World`.

#include "core/dictation/dictation_fixture.h"

#include <cstdlib>
#include <iostream>
#include <random>

namespace corvandi::testing {
namespace {

constexpr int eventsInAll = 100000;
constexpr int eventsOfOneRun = 250;

/// The outcomes that a session can state, each by the line that it logs.
enum class Outcome { inserted, copied, notCopied, partial, partialLost, nothing, refused, notStarted };

std::optional<Outcome> outcomeOf(const QString& line)
{
    static const std::vector<std::pair<const char*, Outcome>> lines{
        {"text inserted ", Outcome::inserted},
        {"Saved to the clipboard.", Outcome::copied},
        {"Couldn't copy to the clipboard", Outcome::notCopied},
        {"Transcription incomplete. Partial", Outcome::partial},
        {"Transcription incomplete.", Outcome::partialLost},
        {"Transcription timed out.", Outcome::nothing},
        {"Transcription failed.", Outcome::nothing},
        {"Didn't catch that.", Outcome::nothing},
        {"Dictation isn't available in password fields.", Outcome::refused},
        {"Couldn't start dictation.", Outcome::notStarted},
        {"Preparing speech model", Outcome::notStarted},
        {"Speech model download failed.", Outcome::notStarted},
    };
    for (const auto& [text, outcome] : lines) {
        if (line.contains(QString::fromUtf8(text)))
            return outcome;
    }
    return std::nullopt;
}

/// One run of the program, from its start to its end. Its laws: each text ends in exactly one stated place;
/// nothing is posted to a target that is not the one of the press, nor into a password field, nor on a locked
/// screen; nothing is recorded while nobody holds the key; no state is stuck.
class World : public DictationFixture {
public:
    explicit World(std::mt19937& random)
        : random_(random)
    {
        log.onLine = [this](const QString& line) { handleLine(line); };
        keyboard.onPost = [this] { handlePosting(); };
    }

    ~World() override
    {
        // The fixture lets things go on.
        log.onLine = nullptr;
        keyboard.onPost = nullptr;
    }

    void run()
    {
        for (int i = 0; i < eventsOfOneRun && !HasFailure(); ++i) {
            step();
            settle();
            checkState();
        }
        if (chance(2))
            calmDown();
        else
            quit();
    }
    [[nodiscard]] static const std::map<Outcome, int>& seen() { return counts(); }

private:
    void TestBody() override {}
    static std::map<Outcome, int>& counts()
    {
        static std::map<Outcome, int> value;
        return value;
    }

    [[nodiscard]] int pick(int count) { return std::uniform_int_distribution(0, count - 1)(random_); }
    [[nodiscard]] bool chance(int oneIn) { return pick(oneIn) == 0; }

    void step();
    void stepOfTheUser();
    void stepOfTheEngine();
    void stepOfTheDesktop();
    void stepOfTheFaults();
    void beginHolding();
    void endHolding();
    void lockScreen(bool isLocked);
    void recogniseSomething();
    void calmDown();
    void quit();
    void settle() { queue.drain(); }
    void checkState();

    void handleLine(const QString& line);
    void handlePosting();
    void check(Outcome outcome);
    void checkNowhere();
    void checkHistory(bool hasText);
    [[nodiscard]] bool isText(const QString& text) const { return text == text_ || text == rewritten_; }

    std::mt19937& random_;
    // What the user does.
    bool isHeld_ = false;
    bool isRefusing_ = false;
    bool isCalm_ = false;
    MainQueue::Duration pressed_{};
    /// The targets of the presses that were long enough and have no outcome yet, in order.
    std::deque<std::optional<QString>> targets_;
    int sessions_ = 0;
    // Of the session that is being delivered.
    int nextText_ = 0;
    size_t analyzers_ = 0;
    bool hasEnded_ = false;
    QString text_;
    QString rewritten_;
    QString typed_;
    std::vector<QString> pasted_;
    size_t historyBefore_ = 0;
};

void World::step()
{
    switch (pick(10)) {
    case 0:
    case 1:
    case 2:
        return stepOfTheUser();
    case 3:
    case 4:
        return stepOfTheEngine();
    case 5:
        return stepOfTheDesktop();
    case 6:
        return stepOfTheFaults();
    default:
        return queue.advance(std::chrono::milliseconds(chance(8) ? pick(6000) : pick(400)));
    }
}

void World::stepOfTheUser()
{
    if (lock.isLocked() ? chance(2) : chance(30))
        lockScreen(!lock.isLocked());
    else if (isHeld_)
        endHolding();
    else
        beginHolding();
}

void World::beginHolding()
{
    const std::optional<QString> target =
        workspace.frontmost == workspace.own ? std::nullopt : workspace.frontmost;
    const bool isRefused = controller->isDictating() || lock.isLocked() ||
                           (focus.element && focus.element->subrole == QStringLiteral("AXSecureTextField")) ||
                           microphone.present == AuthorizationStatus::denied;
    isHeld_ = !isRefused;
    if (isHeld_) {
        pressed_ = queue.now();
        targets_.push_back(target);
        ++sessions_;
    }
    isRefusing_ = isRefused;
    controller->beginDictation();
    isRefusing_ = false;
    EXPECT_EQ(controller->isDictating(), isHeld_);
}

void World::endHolding()
{
    if (!isHeld_)
        return;
    isHeld_ = false;
    // A press that is too short states no outcome.
    if (queue.now() - pressed_ < 350ms)
        targets_.pop_back();
    controller->endDictation();
}

void World::lockScreen(bool isLocked)
{
    const bool wasHeld = isHeld_;
    if (isLocked && wasHeld) {
        isHeld_ = false;
        if (queue.now() - pressed_ < 350ms)
            targets_.pop_back();
    }
    lock.set(isLocked);
    EXPECT_EQ(controller->isDictating(), isHeld_);
}

void World::stepOfTheEngine()
{
    if (engine.dictations().empty() || !engine.latest().wasStarted)
        return;
    switch (pick(4)) {
    case 0:
    case 1:
        return recogniseSomething();
    case 2:
        if (model.isAsked()) {
            rewritten_ = QStringLiteral("R") + text_;
            if (chance(4))
                return model.answer(LanguageModelFailure{QStringLiteral("no")});
            return model.answer(rewritten_);
        }
        return;
    default:
        if (chance(3))
            engine.failResults(QStringLiteral("the engine broke"));
    }
}

void World::recogniseSomething()
{
    if (engine.dictations().size() != analyzers_) {
        analyzers_ = engine.dictations().size();
        hasEnded_ = false;
        text_.clear();
        rewritten_.clear();
    }
    if (hasEnded_)
        return;
    if (text_.isEmpty() && !chance(10)) {
        text_ =
            QStringLiteral("Text%1").arg(nextText_++) + QString(pick(chance(3) ? 200 : 20), QLatin1Char('x'));
        engine.pushFinal(text_);
    }
    if (!isHeld_ || chance(10)) {
        hasEnded_ = true;
        engine.endResults();
    }
}

void World::stepOfTheDesktop()
{
    static const std::vector<std::optional<QString>> applications{
        QStringLiteral("org.example.editor"), QStringLiteral("org.example.other"),
        QStringLiteral("com.apple.finder"), QStringLiteral("io.corvandi.Corvandi"), std::nullopt};
    switch (pick(14)) {
    case 0:
        workspace.frontmost = applications[static_cast<size_t>(pick(5))];
        return;
    case 1:
        return focus.focusPasswordField();
    case 2:
        return focus.element.reset();
    case 3:
    case 4:
        return pasteboard.copyFromOutside(QStringLiteral("somebody's"));
    case 5:
        settings.setInsertion(chance(2) ? InsertionMethod::type : InsertionMethod::paste);
        return;
    case 6:
        settings.setCleanUpSentences(chance(2));
        return;
    case 7:
        keyboard.keysAreFree = false;
        return;
    case 8:
        return keyboard.freeKeys();
    default:
        workspace.frontmost = applications.front();
        return focus.focusTextField();
    }
}

void World::stepOfTheFaults()
{
    const std::vector<ScriptedStep*> steps{&input.starting,     &input.removing,  &engine.listing,
                                           &engine.formatQuery, &engine.starting, &engine.finalizing};
    ScriptedStep& one = *steps[static_cast<size_t>(pick(6))];
    switch (pick(11)) {
    case 10:
        if (chance(2))
            input.starting.hold();
        if (input.isRunning())
            input.end(QStringLiteral("the device has gone"));
        return;
    case 0:
        return one.hold();
    case 1:
    case 2:
        for (ScriptedStep* each : steps)
            each->release();
        return;
    case 3:
        // Stopping the microphone can't fail.
        return &one == &input.removing ? one.succeed() : one.fail(QStringLiteral("it broke"));
    case 4:
    case 5:
        for (ScriptedStep* each : steps)
            each->succeed();
        return;
    case 6:
        pasteboard.acceptsText = !pasteboard.acceptsText || !chance(3);
        return;
    case 7:
        keyboard.hasSources = !keyboard.hasSources || !chance(3);
        return;
    case 8:
        model.state =
            chance(3) ? LanguageModelAvailability::modelNotReady : LanguageModelAvailability::available;
        model.looksAreHeld = chance(3);
        return focus.endRefreshes();
    default:
        focus.refreshesAreHeld = chance(3);
        return model.endLooks();
    }
}

/// After all that can still happen has happened.
void World::checkState()
{
    EXPECT_EQ(controller->isDictating(), isHeld_);
    const bool mayRun = isHeld_ || input.removing.isPending();
    EXPECT_TRUE(mayRun || !input.isRunning() || engine.listing.isPending() ||
                engine.formatQuery.isPending() || engine.starting.isPending())
        << "recorded while nobody holds the key";
}

void World::handlePosting()
{
    const SyntheticKeyEvent& event = keyboard.posted.back();
    if (event.direction == KeyDirection::up)
        return;
    if (event.text.empty())
        pasted_.push_back(pasteboard.text().value_or(QString()));
    typed_ += QString::fromStdU16String(event.text);
    ASSERT_FALSE(targets_.empty());
    const std::optional<QString> front =
        workspace.frontmost == workspace.own ? std::nullopt : workspace.frontmost;
    EXPECT_EQ(front, targets_.front()) << "posted to another application";
    EXPECT_FALSE(lock.isLocked()) << "posted on a locked screen";
    EXPECT_FALSE(focus.element && focus.element->subrole == QStringLiteral("AXSecureTextField"))
        << "posted into a password field";
    // The user does not wait until all has arrived.
    if (!isCalm_ && chance(4))
        stepOfTheDesktop();
    if (!isCalm_ && chance(40))
        lockScreen(true);
}

void World::handleLine(const QString& line)
{
    EXPECT_FALSE(line.contains(QStringLiteral("broke off"))) << line.toStdString();
    const auto outcome = outcomeOf(line);
    // A press that is refused says so in the words of a session; one that is not lets a waiting session go
    // on.
    if (!outcome || isRefusing_)
        return;
    ASSERT_FALSE(targets_.empty()) << "an outcome that nobody asked for: " << line.toStdString();
    targets_.pop_front();
    ++counts()[*outcome];
    check(*outcome);
    text_.clear();
    typed_.clear();
    pasted_.clear();
    rewritten_.clear();
    historyBefore_ = controller->store().history().size();
}

void World::check(Outcome outcome)
{
    const QString clipboard = pasteboard.text().value_or(QString());
    switch (outcome) {
    case Outcome::inserted:
        EXPECT_TRUE(pasted_.empty() ? isText(typed_)
                                    : pasted_.size() == 1 && typed_.isEmpty() && isText(pasted_[0]))
            << typed_.toStdString();
        return checkHistory(true);
    case Outcome::copied:
        EXPECT_TRUE(isText(typed_ + clipboard)) << typed_.toStdString() << " and " << clipboard.toStdString();
        EXPECT_TRUE(pasteboard.isMarked());
        EXPECT_TRUE(pasted_.empty());
        return checkHistory(true);
    case Outcome::notCopied:
        EXPECT_TRUE(pasted_.empty());
        return checkHistory(true);
    case Outcome::partial:
        EXPECT_EQ(clipboard, text_);
        EXPECT_TRUE(typed_.isEmpty() && pasted_.empty());
        return checkHistory(true);
    case Outcome::partialLost:
        EXPECT_TRUE(typed_.isEmpty() && pasted_.empty());
        return checkHistory(true);
    case Outcome::nothing:
    case Outcome::refused:
    case Outcome::notStarted:
        EXPECT_TRUE(typed_.isEmpty() && pasted_.empty());
        EXPECT_TRUE(clipboard.isEmpty() || !isText(clipboard)) << clipboard.toStdString();
        return checkHistory(false);
    }
}

void World::checkHistory(bool hasText)
{
    const auto& history = controller->store().history();
    ASSERT_EQ(history.size(), historyBefore_ + (hasText ? 1 : 0));
    EXPECT_TRUE(!hasText || isText(history.front().text)) << history.front().text.toStdString();
}

/// Nothing happens any more, and everything that was held up goes on: then each session must have had its
/// outcome, and the next dictation must be like the first.
void World::calmDown()
{
    isCalm_ = true;
    endHolding();
    lock.set(false);
    for (ScriptedStep* step : {&input.starting, &input.removing, &engine.listing, &engine.inventory,
                               &engine.formatQuery, &engine.starting, &engine.finalizing}) {
        step->succeed();
        step->release();
    }
    keyboard.freeKeys();
    keyboard.hasSources = true;
    pasteboard.acceptsText = true;
    settings.setCleanUpSentences(false);
    settings.setInsertion(InsertionMethod::type);
    model.endLooks();
    focus.endRefreshes();
    // Each session waits for the one before it, and has a time-out for its transcript and for its rewrite.
    queue.advance(10s * (sessions_ + 1));
    EXPECT_TRUE(targets_.empty()) << targets_.size() << " sessions without an outcome";
    EXPECT_FALSE(panels.isVisible);
    EXPECT_FALSE(input.isRunning());
    EXPECT_EQ(queue.timerCount(), 0U);

    workspace.frontmost = QStringLiteral("org.example.editor");
    focus.focusTextField();
    analyzers_ = engine.dictations().size() + 1;
    text_ = QStringLiteral("The last one");
    typed_.clear();
    beginHolding();
    queue.advance(1s);
    endHolding();
    settle();
    recognise(text_);
    EXPECT_TRUE(targets_.empty());
}

/// The user quits, whatever is under way.
void World::quit()
{
    // The end of the program counts as a release.
    if (isHeld_ && queue.now() - pressed_ < 350ms)
        targets_.pop_back();
    isHeld_ = false;
    const QCoro::Task<> ending = controller->shutDown();
    queue.advance(DictationController::endLimit);
    EXPECT_TRUE(ending.isReady());
    EXPECT_FALSE(panels.isVisible);
    EXPECT_FALSE(controller->isDictating());
    const auto& history = controller->store().history();
    const bool isKept = typed_.isEmpty() && pasted_.empty() ? true : isText(history.front().text);
    EXPECT_TRUE(isKept);
}

TEST(RandomDictations, ObeyTheLaws)
{
    const char* given = std::getenv("CORVANDI_SEED");
    const unsigned seed =
        given ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : std::random_device()();
    std::cout << "CORVANDI_SEED=" << seed << " repeats this\n";
    std::mt19937 random(seed);
    for (int events = 0; events < eventsInAll && !::testing::Test::HasFailure(); events += eventsOfOneRun) {
        World world(random);
        world.run();
    }
    for (const auto& [outcome, count] : World::seen())
        std::cout << "outcome " << static_cast<int>(outcome) << ": " << count << " times\n";
    EXPECT_EQ(World::seen().size(), 8U) << "not every outcome was met";
}

} // namespace
} // namespace corvandi::testing
