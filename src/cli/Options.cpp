#include "cli/Options.h"

#include "cli/Command.h"
#include "cli/Terminal.h"
#include "library/store/LibraryStore.h"

#include <cmath>

using namespace Qt::StringLiterals;

namespace tonequill::cli {

Options::Options(const char* name, const char* arguments, const char* description)
    : m_name(QString::fromLatin1(name)),
      m_arguments(QString::fromUtf8(arguments))
{
    m_parser.setApplicationDescription(QString::fromUtf8(description));
    m_parser.addOption({{u"h"_s, u"help"_s}, u"Show this text."_s});
    m_parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsOptions);
    m_parser.setSingleDashWordOptionMode(QCommandLineParser::ParseAsCompactedShortOptions);
}

void Options::addFlag(const QString& name, const QString& description)
{
    m_parser.addOption(QCommandLineOption(name, description));
}

void Options::addValue(const QString& name, const QString& description, const QString& valueName, const QString& defaultValue)
{
    m_parser.addOption(QCommandLineOption(name, description, valueName, defaultValue));
}

void Options::addJson()
{
    addFlag(u"json"_s, u"Print one JSON document instead of text."_s);
}

void Options::addLibrary()
{
    addValue(u"library"_s, u"The library folder, if it isn't the standard one."_s, u"folder"_s);
}

void Options::addRange()
{
    addValue(u"start"_s, u"Where the part starts (0)."_s, u"seconds"_s);
    addValue(u"end"_s, u"Where the part ends (the end of the file)."_s, u"seconds"_s);
}

QString Options::libraryFolder() const
{
    return has(u"library"_s) ? value(u"library"_s) : LibraryStore::defaultFolder();
}

std::optional<double> Options::seconds(const QString& name, double standard) const
{
    if (!has(name))
        return standard;
    bool isNumber = false;
    const double number = value(name).toDouble(&isNumber);
    return isNumber && std::isfinite(number) && std::abs(number) <= kToTheEnd ? std::optional(number) : std::nullopt;
}

std::optional<Range> Options::range() const
{
    const auto start = seconds(u"start"_s, 0);
    const auto end = seconds(u"end"_s, kToTheEnd);
    if (!start || !end)
        return std::nullopt;
    return Range{*start, *end};
}

int Options::mistake(const QString& sentence) const
{
    terminal::complain(sentence + u"\nTry: tonequill-cli %1 --help"_s.arg(m_name));
    return kUsage;
}

std::optional<int> Options::parse(const QStringList& arguments, qsizetype fewest, qsizetype most)
{
    // The parser takes its first word for the program.
    const bool isClean = m_parser.parse(QStringList{u"tonequill-cli"_s} + arguments);
    if (has(u"help"_s)) {
        QString text = m_parser.helpText();
        text.replace(text.indexOf(u"Usage:"), text.indexOf(u'\n') - text.indexOf(u"Usage:"),
                     u"Usage: tonequill-cli %1 [options] %2"_s.arg(m_name, m_arguments));
        terminal::print(text.trimmed());
        return kDone;
    }
    if (!isClean)
        return mistake(m_parser.errorText());
    if (positional().size() < fewest)
        return mistake(u"Something is missing: tonequill-cli %1 %2"_s.arg(m_name, m_arguments));
    if (positional().size() > most)
        return mistake(u"That is too much: tonequill-cli %1 %2"_s.arg(m_name, m_arguments));
    return std::nullopt;
}

} // namespace tonequill::cli
