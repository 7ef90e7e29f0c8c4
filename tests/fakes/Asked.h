#pragma once

#include <QCoroFuture>
#include <QCoroTask>

#include <QPromise>

#include <exception>
#include <memory>
#include <optional>

namespace tonequill::test {

// One piece of background work that a test ends when it likes. What nobody ends
// is answered with nothing when the last copy of this goes.
template <typename Question, typename Answer>
class Asked {
public:
    explicit Asked(Question asked) : question(std::move(asked)) { m_done->start(); }

    Question question;

    void answer(Answer given)
    {
        *m_answer = std::move(given);
        m_done->finish();
    }
    template <typename Error>
    void fail(const Error& error)
    {
        m_done->setException(std::make_exception_ptr(error));
        m_done->finish();
    }

    QCoro::Task<Answer> task() const { return wait(m_done->future(), m_answer); }

private:
    static QCoro::Task<Answer> wait(QFuture<void> done, std::shared_ptr<std::optional<Answer>> answer)
    {
        co_await done;
        co_return answer->has_value() ? std::move(**answer) : Answer();
    }

    std::shared_ptr<QPromise<void>> m_done = std::make_shared<QPromise<void>>();
    std::shared_ptr<std::optional<Answer>> m_answer = std::make_shared<std::optional<Answer>>();
};

} // namespace tonequill::test
