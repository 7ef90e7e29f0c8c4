#pragma once

#include <QByteArrayView>

namespace tonequill {

// Whether the bytes are one JSON text by the letter of RFC 8259: Qt's reader also
// takes ".5", "1." and "\q". At most some hundred levels deep.
bool isJson(QByteArrayView bytes);

} // namespace tonequill
