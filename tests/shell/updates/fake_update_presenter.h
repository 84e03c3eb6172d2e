#pragma once

#include "shell/updates/update_presenter.h"

#include <optional>
#include <utility>
#include <vector>

namespace corvandi::testing {

/// A face that shows its things to the test.
class FakeUpdatePresenter : public UpdatePresenter {
public:
    void showBusy(const QString& text, std::function<void()> cancel) override
    {
        showBusy(text);
        cancel_ = std::move(cancel);
    }
    void showBusy(const QString& text) override
    {
        clear();
        busy = text;
    }
    void showProgress(DownloadProgress progress) override { progresses.push_back(progress); }
    void ask(const UpdateQuestion& asked, std::function<void(UpdateAnswer)> answer) override
    {
        clear();
        question = asked;
        answer_ = std::move(answer);
    }
    void tell(const UpdateMessage& told) override
    {
        clear();
        message = told;
    }
    void dismiss() override { clear(); }
    void bringToFront() override { ++timesBroughtToFront; }

    void cancel() { std::exchange(cancel_, {})(); }
    [[nodiscard]] bool canCancel() const { return bool(cancel_); }
    void answer(UpdateAnswer answer) { std::exchange(answer_, {})(answer); }
    [[nodiscard]] bool showsNothing() const { return busy.isEmpty() && !question && !message; }

    /// What is shown; at most one of them.
    QString busy;
    std::optional<UpdateQuestion> question;
    std::optional<UpdateMessage> message;

    std::vector<DownloadProgress> progresses;
    int timesBroughtToFront = 0;

private:
    void clear()
    {
        busy.clear();
        question.reset();
        message.reset();
        cancel_ = {};
        answer_ = {};
    }

    std::function<void()> cancel_;
    std::function<void(UpdateAnswer)> answer_;
};

} // namespace corvandi::testing
