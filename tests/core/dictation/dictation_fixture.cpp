#include "core/dictation/dictation_fixture.h"

namespace corvandi::testing {

DictationFixture::DictationFixture()
{
    focus.focusTextField();
    // The recognition stays open until a test ends it.
    engine.finalizingEndsResults = false;
    const Platform platform{
        .queue = queue,
        .wallClock = clock,
        .log = log,
        .files = files,
        .storeQueue = storeQueue,
        .eventTapFactory = taps,
        .keyboard = keyboard,
        .pasteboard = pasteboard,
        .accessibility = accessibility,
        .focusedElements = focus,
        .workspace = workspace,
        .sessionLock = lock,
        .audioInput = input,
        .audioConverterFactory = converters,
        .captureAuthorization = microphone,
        .speechFramework = engine,
        .languageModel = model,
        .hudPanelFactory = panels,
        .locale = Locale(QStringLiteral("en-US")),
        .storeDirectory = QStringLiteral("/data/Corvandi"),
    };
    controller = DictationController::create(settings, platform);
}

DictationFixture::~DictationFixture()
{
    // Lets every task that a test left behind come to its end.
    for (ScriptedStep* step :
         {&input.starting, &input.removing, &engine.listing, &engine.inventory, &engine.downloading,
          &engine.formatQuery, &engine.starting, &engine.finalizing})
        step->release();
    keyboard.freeKeys();
    model.endLooks();
    focus.endRefreshes();
    queue.drain();
    engine.endAllResults();
    queue.advance(10s);
    // Of a dictation that waited until time had ended the one before it.
    engine.endAllResults();
    queue.drain();
}

void DictationFixture::press()
{
    controller->beginDictation();
    queue.drain();
}

void DictationFixture::release()
{
    controller->endDictation();
    queue.drain();
}

void DictationFixture::hold(MainQueue::Duration held)
{
    press();
    queue.advance(held);
    release();
}

void DictationFixture::recognise(const QString& text)
{
    engine.pushFinal(text);
    engine.endResults();
    queue.drain();
}

void DictationFixture::dictate(const QString& text)
{
    hold();
    recognise(text);
}

void DictationFixture::dictateAndFail(const QString& text)
{
    hold();
    engine.pushFinal(text);
    engine.failResults(QStringLiteral("the engine broke"));
    queue.drain();
}

bool DictationFixture::shows(HUDState state, const char* message)
{
    return panels.isVisible && face().state() == state && face().statusText() == QString::fromUtf8(message);
}

bool DictationFixture::nothingWasDelivered() const
{
    return keyboard.posted.empty() && pasteboard.changes == 0;
}

} // namespace corvandi::testing
