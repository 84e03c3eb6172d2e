#pragma once

#include "ports/notice_presenter.h"

#include <optional>
#include <utility>

namespace corvandi::testing {

/// A face that shows its things to the test.
class FakeNoticePresenter : public NoticePresenter {
public:
    void showBusy(const QString& text, std::function<void()> cancel) override
    {
        clear();
        busy = text;
        cancel_ = std::move(cancel);
    }
    void ask(const Question& asked, std::function<void(Answer)> answer) override
    {
        clear();
        question = asked;
        answer_ = std::move(answer);
    }
    void tell(const Notice& told) override
    {
        clear();
        message = told;
    }
    void dismiss() override { clear(); }
    void bringToFront() override { ++timesBroughtToFront; }

    void cancel() { std::exchange(cancel_, {})(); }
    void answer(Answer answer) { std::exchange(answer_, {})(answer); }
    [[nodiscard]] bool showsNothing() const { return busy.isEmpty() && !question && !message; }

    /// What is shown; at most one of them.
    QString busy;
    std::optional<Question> question;
    std::optional<Notice> message;
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
    std::function<void(Answer)> answer_;
};

} // namespace corvandi::testing
