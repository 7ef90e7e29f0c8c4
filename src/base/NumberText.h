#pragma once

#include <QString>

// Numbers as text in the way of C's printf, whatever the locale: a number that lies
// between two texts becomes the nearer one, and the even one if it lies just between
// ("0.2" for 0.25). Qt's own ways round such a number up. Pure.
namespace tonequill::numberText {

// "%.*f", such as "1.38" for 1.379 with 2 decimals. REQUIRES: 0 <= decimals <= 20.
QString fixed(double value, int decimals);

// "%+.*f": with its sign, "+0" for nothing.
QString withSign(double value, int decimals);

// "%.*g": so many digits at most, without zeros at the end. REQUIRES: 1 <= digits <= 17.
QString shortest(double value, int digits);

} // namespace tonequill::numberText
