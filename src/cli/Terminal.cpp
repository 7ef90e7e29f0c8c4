#include "cli/Terminal.h"

#include "base/NumberText.h"

#include <algorithm>
#include <cmath>
#include <condition_variable>
#include <cstdio>
#include <mutex>
#include <thread>

#include <unistd.h>

using namespace Qt::StringLiterals;

namespace tonequill::cli::terminal {

namespace {

void put(std::FILE* stream, const QByteArray& bytes)
{
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stream);
    std::fflush(stream);
}

} // namespace

void print(const QString& text)
{
    put(stdout, text.toUtf8() + '\n');
}

void printJson(const QByteArray& document)
{
    put(stdout, document + '\n');
}

void complain(const QString& text)
{
    put(stderr, harmless(text).toUtf8() + '\n');
}

QString lengthText(double seconds)
{
    constexpr double kMinute = 60;
    if (seconds < kMinute)
        return numberText::fixed(seconds, 1) + u" s"_s;
    constexpr double kLongest = 1e9; // a hostile number is not spelled out
    const qint64 whole = qint64(std::min(seconds, kLongest));
    const QString tail = u"%1:%2"_s.arg(whole / 60 % 60, 2, 10, QChar(u'0')).arg(whole % 60, 2, 10, QChar(u'0'));
    return whole >= 3600 ? u"%1:%2"_s.arg(whole / 3600).arg(tail) : (tail.startsWith(u'0') ? tail.sliced(1) : tail);
}

QString harmless(const QString& text)
{
    QString result = text;
    for (QChar& character : result) {
        const bool isControl = character.category() == QChar::Other_Control && character != u'\n' && character != u'\t';
        if (isControl)
            character = QChar::ReplacementCharacter;
    }
    return result;
}

struct ProgressLine::Ticker {
    std::mutex mutex;
    std::condition_variable ended;
    bool isEnded = false;
    std::thread thread;
};

ProgressLine::ProgressLine(QString label, ProgressPtr progress)
{
    if (!::isatty(STDERR_FILENO))
        return;
    m_ticker = std::make_unique<Ticker>();
    m_ticker->thread = std::thread([ticker = m_ticker.get(), label = harmless(label), progress] {
        using namespace std::chrono_literals;
        std::unique_lock lock(ticker->mutex);
        bool isShown = false;
        for (auto wait = 200ms; !ticker->ended.wait_for(lock, wait, [ticker] { return ticker->isEnded; }); wait = 100ms) {
            isShown = true;
            put(stderr, u"\r%1  %2 %"_s.arg(label).arg(std::lround(progress->fraction() * 100)).toUtf8());
        }
        if (isShown)
            put(stderr, "\r\x1b[K");
    });
}

ProgressLine::~ProgressLine()
{
    if (!m_ticker)
        return;
    {
        const std::lock_guard lock(m_ticker->mutex);
        m_ticker->isEnded = true;
    }
    m_ticker->ended.notify_one();
    m_ticker->thread.join();
}

} // namespace tonequill::cli::terminal
