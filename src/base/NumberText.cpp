#include "base/NumberText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace tonequill {

namespace {

QString text(double value, std::chars_format format, int precision)
{
    std::array<char, 400> buffer = {}; // the largest number has 309 digits
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, format, precision).ptr;
    return QString::fromLatin1(buffer.data(), end - buffer.data());
}

} // namespace

QString numberText::fixed(double value, int decimals)
{
    return text(value, std::chars_format::fixed, decimals);
}

QString numberText::withSign(double value, int decimals)
{
    return (std::signbit(value) ? QString() : QStringLiteral("+")) + fixed(value, decimals);
}

QString numberText::shortest(double value, int digits)
{
    return text(value, std::chars_format::general, digits);
}

} // namespace tonequill
