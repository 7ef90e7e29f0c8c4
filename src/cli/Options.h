#pragma once

#include <QCommandLineParser>
#include <QStringList>

#include <optional>

namespace tonequill::cli {

// A stretch of a file in seconds; the file cuts it to its length.
inline constexpr double kToTheEnd = 1e9;
struct Range {
    double start = 0;
    double end = kToTheEnd;
};

// The options of one command: --help, and whatever is added. Text goes to
// stdout for --help and to stderr for a mistake.
class Options {
public:
    // `arguments` as in Command.
    Options(const char* name, const char* arguments, const char* description);

    void addFlag(const QString& name, const QString& description);
    void addValue(const QString& name, const QString& description, const QString& valueName, const QString& defaultValue = {});
    // --json and --library, which most commands have.
    void addJson();
    void addLibrary();
    // --start and --end.
    void addRange();

    // None if the command may go on; otherwise the exit code to end with.
    std::optional<int> parse(const QStringList& arguments, qsizetype fewest, qsizetype most);

    bool has(const QString& name) const { return m_parser.isSet(name); }
    QString value(const QString& name) const { return m_parser.value(name); }
    QStringList positional() const { return m_parser.positionalArguments(); }
    bool json() const { return has(QStringLiteral("json")); }
    QString libraryFolder() const;
    // The time that an option gives, `standard` where it isn't given; none, like
    // range(), for what is no such number.
    std::optional<double> seconds(const QString& name, double standard) const;
    std::optional<Range> range() const;

    // Says what is wrong with the command line. Returns kUsage.
    int mistake(const QString& sentence) const;

private:
    QString m_name;
    QString m_arguments;
    QCommandLineParser m_parser;
};

} // namespace tonequill::cli
