#include "base/TimeText.h"

#include "base/NumberText.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

using namespace Qt::StringLiterals;

namespace tonequill {

QString TimeText::place(double seconds, double step)
{
    const int decimals = step >= 1 ? 0 : step >= 0.1 ? 1 : step >= 0.01 ? 2 : 3;
    const auto scale = std::int64_t(std::lround(std::pow(10, decimals)));
    const auto units = std::int64_t(std::llround(std::max(seconds, 0.0) * double(scale)));
    const std::int64_t whole = units / scale;
    const auto two = [](std::int64_t number) { return u"%1"_s.arg(number, 2, 10, QChar(u'0')); };
    QString text = whole >= 3600 ? u"%1:%2:%3"_s.arg(QString::number(whole / 3600), two(whole / 60 % 60), two(whole % 60))
                                 : u"%1:%2"_s.arg(QString::number(whole / 60), two(whole % 60));
    if (decimals > 0)
        text += u".%1"_s.arg(units % scale, decimals, 10, QChar(u'0'));
    return text;
}

QString TimeText::exactPlace(double seconds)
{
    constexpr double kMillisecond = 0.001;
    return place(seconds, kMillisecond);
}

QString TimeText::length(double seconds)
{
    return numberText::fixed(seconds, 2) + u's';
}

QString TimeText::duration(double seconds)
{
    return numberText::fixed(seconds, 2) + u" s"_s;
}

QString TimeText::roughDuration(double seconds)
{
    return numberText::fixed(seconds, 1) + u" s"_s;
}

} // namespace tonequill
