#include "library/records/ImportError.h"

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

QString sentence(ImportError::Kind kind, const QString& name)
{
    switch (kind) {
    case ImportError::Kind::noAudio:
        return name + u" has no audio track."_s;
    case ImportError::Kind::unsupported:
        return name + u" is not a format Tonequill can read. Try WAV, MP3, M4A, AIFF, MP4, MOV or M4V."_s;
    }
    Q_UNREACHABLE();
}

} // namespace

ImportError::ImportError(Kind kind, const QString& name, QString cause)
    : UserError(sentence(kind, name)),
      m_kind(kind),
      m_cause(std::move(cause))
{}

} // namespace tonequill
