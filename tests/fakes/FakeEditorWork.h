#pragma once

#include "editor/EditorWork.h"

#include <QCoreApplication>
#include <QCoroFuture>
#include <QPromise>

#include <deque>
#include <exception>
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
        co_return answer->value_or(Answer());
    }

    std::shared_ptr<QPromise<void>> m_done = std::make_shared<QPromise<void>>();
    std::shared_ptr<std::optional<Answer>> m_answer = std::make_shared<std::optional<Answer>>();
};

// Background work that a test turns by hand: every question waits in its list.
class FakeEditorWork final : public EditorWork {
public:
    struct Range {
        QString path;
        double start = 0;
        double end = 0;
        bool operator==(const Range&) const = default;
    };
    struct Render {
        Range range;
        EffectSettings effects;
        ProgressPtr progress;
    };
    struct Analysis {
        QString path;
        ProgressPtr progress;
    };

    FakeEditorWork() = default;
    ~FakeEditorWork() override
    {
        analyses.clear();
        labellings.clear();
        hearings.clear();
        renders.clear();
        openings.clear();
        QCoreApplication::processEvents(); // so that whoever waited goes
        QCoreApplication::processEvents();
    }

    std::deque<Asked<Analysis, AudioAnalysis>> analyses;
    std::deque<Asked<std::vector<CutCandidate>, std::vector<CutCandidate>>> labellings;
    std::deque<Asked<Range, std::vector<HeardLabel>>> hearings;
    std::deque<Asked<Render, QString>> renders;
    std::deque<Asked<QString, std::shared_ptr<AudioPlayer>>> openings;

    QCoro::Task<AudioAnalysis> analyze(QString path, ProgressPtr progress) override
    {
        return analyses.emplace_back(Analysis{path, progress}).task();
    }
    QCoro::Task<std::vector<CutCandidate>> label(std::vector<CutCandidate> candidates, QString) override
    {
        return labellings.emplace_back(std::move(candidates)).task();
    }
    QCoro::Task<std::vector<HeardLabel>> classify(QString path, double start, double end) override
    {
        return hearings.emplace_back(Range{path, start, end}).task();
    }
    QCoro::Task<QString> render(QString path, double start, double end, EffectSettings effects, ProgressPtr progress) override
    {
        return renders.emplace_back(Render{{path, start, end}, effects, progress}).task();
    }
    QCoro::Task<std::shared_ptr<AudioPlayer>> open(QString path) override { return openings.emplace_back(path).task(); }
};

} // namespace tonequill::test
