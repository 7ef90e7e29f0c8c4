#include "app/model/Settings.h"

#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

const QString kCreateWithCredits = u"createWithCredits"_s;
const QString kShortOnlyByDefault = u"shortOnlyByDefault"_s;
const QString kHideCreditSounds = u"hideCreditSounds"_s;
const QString kAlsoFinalCut = u"alsoFinalCut"_s;
const QString kSaveFolderPath = u"saveFolderPath"_s;

} // namespace

Settings::Settings(Defaults& defaults)
    : m_defaults(defaults),
      m_createWithCredits(defaults.boolean(kCreateWithCredits).value_or(false)),
      m_shortOnlyByDefault(defaults.boolean(kShortOnlyByDefault).value_or(true)),
      m_hideCreditSounds(defaults.boolean(kHideCreditSounds).value_or(false)),
      m_alsoFinalCut(defaults.boolean(kAlsoFinalCut).value_or(true)),
      m_saveFolderPath(defaults.text(kSaveFolderPath))
{}

void Settings::write(bool& field, const QString& key, bool value)
{
    field = value;
    m_defaults.setBoolean(key, value);
    Q_EMIT changed();
}

void Settings::setCreateWithCredits(bool value)
{
    write(m_createWithCredits, kCreateWithCredits, value);
}

void Settings::setShortOnlyByDefault(bool value)
{
    write(m_shortOnlyByDefault, kShortOnlyByDefault, value);
}

void Settings::setHideCreditSounds(bool value)
{
    write(m_hideCreditSounds, kHideCreditSounds, value);
}

void Settings::setAlsoFinalCut(bool value)
{
    write(m_alsoFinalCut, kAlsoFinalCut, value);
}

void Settings::setSaveFolderPath(std::optional<QString> path)
{
    m_saveFolderPath = std::move(path);
    if (m_saveFolderPath)
        m_defaults.setText(kSaveFolderPath, *m_saveFolderPath);
    else
        m_defaults.remove(kSaveFolderPath);
    Q_EMIT changed();
}

QString Settings::saveFolder(const Defaults& defaults)
{
    const auto chosen = defaults.text(kSaveFolderPath);
    if (chosen && QFileInfo::exists(*chosen))
        return *chosen;
    return QStandardPaths::writableLocation(QStandardPaths::DesktopLocation);
}

} // namespace tonequill
