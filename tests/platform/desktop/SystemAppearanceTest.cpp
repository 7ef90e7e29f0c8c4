#include "platform/desktop/SystemAppearance.h"

#include "support/Printing.h"
#include "support/SessionBus.h"

#include <QDBusArgument>
#include <QDBusVariant>
#include <QElapsedTimer>
#include <QLocalServer>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace tonequill;
using namespace Qt::StringLiterals;

namespace {

constexpr int kAtOnceMs = 200; // what a start may not notice
constexpr int kAWhileMs = 300; // in which nothing must happen
constexpr int kPatienceMs = 10'000;

const QString kService = u"org.freedesktop.portal.Desktop"_s;
const QString kPath = u"/org/freedesktop/portal/desktop"_s;
const QString kInterface = u"org.freedesktop.portal.Settings"_s;
const QString kSpace = u"org.freedesktop.appearance"_s;
const QString kKey = u"color-scheme"_s;

QVariant variant(const QVariant& value)
{
    return QVariant::fromValue(QDBusVariant(value));
}

// As portals answer: a variant in a variant.
QVariant scheme(uint value)
{
    return variant(variant(value));
}

QDBusMessage changeOf(const QString& space, const QString& key, const QVariant& value)
{
    auto signal = QDBusMessage::createSignal(kPath, kInterface, u"SettingChanged"_s);
    signal << space << key << value;
    return signal;
}

// This process as the settings portal.
class Portal {
public:
    // It answers with these arguments.
    explicit Portal(const test::SessionBus& bus, QVariantList answer)
        : m_answer(std::move(answer)),
          m_program(bus, kService, kPath, [this](const QDBusMessage& call, const QDBusConnection& to) { take(call, to); })
    {
        EXPECT_TRUE(m_program.isThere);
    }
    // It answers when it is told to.
    explicit Portal(const test::SessionBus& bus) : Portal(bus, QVariantList()) { m_isSlow = true; }

    void answer(const QVariantList& arguments)
    {
        for (const QDBusMessage& call : std::exchange(m_waiting, {}))
            m_program.send(call.createReply(arguments));
    }
    void refuse()
    {
        for (const QDBusMessage& call : std::exchange(m_waiting, {}))
            m_program.send(call.createErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, u"no"_s));
    }
    void change(uint value) { m_program.send(changeOf(kSpace, kKey, variant(value))); }
    void send(const QDBusMessage& message) { m_program.send(message); }

    bool isAsked() const { return m_isAsked; }
    QString question;

private:
    void take(const QDBusMessage& call, const QDBusConnection& to)
    {
        question = call.interface() + u'.' + call.member() + u' ' + call.arguments().value(0).toString() + u' ' +
                   call.arguments().value(1).toString();
        m_isAsked = true;
        if (m_isSlow)
            m_waiting << call;
        else
            to.send(call.createReply(m_answer));
    }

    QVariantList m_answer;
    bool m_isSlow = false;
    bool m_isAsked = false;
    QList<QDBusMessage> m_waiting;
    test::BusProgram m_program;
};

bool becomes(const SystemAppearance& system, bool isDark)
{
    return QTest::qWaitFor([&] { return system.isDark() == isDark; }, kPatienceMs);
}

bool isAsked(const Portal& portal)
{
    return QTest::qWaitFor([&] { return portal.isAsked(); }, kPatienceMs);
}

// Whether it is light, and stays so.
bool staysLight(const SystemAppearance& system)
{
    return !QTest::qWaitFor([&] { return system.isDark(); }, kAWhileMs);
}

} // namespace

TEST(SystemAppearance, IsWhatThePortalSays)
{
    const test::SessionBus bus;
    Portal portal(bus, {scheme(1)});
    const SystemAppearance system;
    EXPECT_FALSE(system.isDark()) << "nobody has answered yet";
    EXPECT_TRUE(becomes(system, true));
    EXPECT_EQ(portal.question, u"org.freedesktop.portal.Settings.Read org.freedesktop.appearance color-scheme"_s);
}

TEST(SystemAppearance, TakesAnAnswerThatIsNoVariantInAVariant)
{
    const test::SessionBus bus;
    const Portal portal(bus, {variant(uint(1))});
    const SystemAppearance system;
    EXPECT_TRUE(becomes(system, true));
}

TEST(SystemAppearance, IsLightWithoutAPreferenceForDark)
{
    for (const uint value : {0U, 2U, 3U, 4'000'000'000U}) {
        const test::SessionBus bus;
        const Portal portal(bus, {scheme(value)});
        const SystemAppearance system;
        EXPECT_TRUE(isAsked(portal));
        EXPECT_TRUE(staysLight(system)) << value;
    }
}

TEST(SystemAppearance, FollowsTheUser)
{
    const test::SessionBus bus;
    Portal portal(bus, {scheme(2)});
    const SystemAppearance system;
    std::vector<bool> told;
    QObject::connect(&system, &SystemAppearance::changed, [&](bool isDark) { told.push_back(isDark); });
    ASSERT_TRUE(isAsked(portal));
    portal.change(1);
    EXPECT_TRUE(becomes(system, true));
    portal.change(1);
    portal.change(0);
    EXPECT_TRUE(becomes(system, false));
    portal.change(1);
    EXPECT_TRUE(becomes(system, true));
    EXPECT_EQ(told, (std::vector<bool>{true, false, true})) << "each change is told once";
}

TEST(SystemAppearance, HearsNoOtherSettingAndNobodyElse)
{
    const test::SessionBus bus;
    Portal portal(bus, {scheme(2)});
    const test::BusProgram stranger(bus, {}, u"/"_s, [](const QDBusMessage&, const QDBusConnection&) {});
    const SystemAppearance system;
    ASSERT_TRUE(isAsked(portal));
    portal.send(changeOf(u"org.freedesktop.desktop"_s, kKey, variant(uint(1))));
    portal.send(changeOf(kSpace, u"contrast"_s, variant(uint(1))));
    stranger.send(changeOf(kSpace, kKey, variant(uint(1))));
    EXPECT_TRUE(staysLight(system));
}

TEST(SystemAppearance, IsLightForAnAnswerThatIsNone)
{
    QVariant deep = uint(1);
    for (int i = 0; i < 20; ++i)
        deep = variant(deep);
    const QList<QVariantList> answers = {
        {},
        {uint(1)},
        {u"dark"_s},
        {variant(u"dark"_s)},
        {variant(1)},
        {variant(true)},
        {variant(1.0)},
        {variant(QStringList{u"1"_s})},
        {variant(QVariantMap{{u"color-scheme"_s, uint(1)}})},
        {scheme(1), scheme(1)},
        {deep},
    };
    for (qsizetype i = 0; i < answers.size(); ++i) {
        const test::SessionBus bus;
        const Portal portal(bus, answers[i]);
        const SystemAppearance system;
        EXPECT_TRUE(isAsked(portal));
        EXPECT_TRUE(staysLight(system)) << "answer " << i;
    }
}

TEST(SystemAppearance, AChangeToNonsenseIsAChangeToLight)
{
    const test::SessionBus bus;
    Portal portal(bus, {scheme(1)});
    const SystemAppearance system;
    ASSERT_TRUE(becomes(system, true));
    portal.send(changeOf(kSpace, kKey, uint(0))); // not the signal: it has another signature
    EXPECT_FALSE(QTest::qWaitFor([&] { return !system.isDark(); }, kAWhileMs));
    portal.send(changeOf(kSpace, kKey, variant(u"dark"_s)));
    EXPECT_TRUE(becomes(system, false));
}

TEST(SystemAppearance, IsLightWhereThePortalRefuses)
{
    const test::SessionBus bus;
    Portal portal(bus);
    const SystemAppearance system;
    ASSERT_TRUE(isAsked(portal));
    portal.refuse();
    EXPECT_TRUE(staysLight(system));
}

TEST(SystemAppearance, NobodyWaitsForASlowPortal)
{
    const test::SessionBus bus;
    Portal portal(bus);
    QElapsedTimer time;
    time.start();
    auto system = std::make_unique<SystemAppearance>();
    EXPECT_LT(time.elapsed(), kAtOnceMs);
    ASSERT_TRUE(isAsked(portal));
    EXPECT_FALSE(system->isDark());
    portal.answer({scheme(1)});
    EXPECT_TRUE(becomes(*system, true));

    Portal* const silent = &portal;
    auto another = std::make_unique<SystemAppearance>();
    ASSERT_TRUE(isAsked(*silent));
    time.restart();
    another.reset();
    EXPECT_LT(time.elapsed(), kAtOnceMs) << "it can end while the portal still thinks";
}

TEST(SystemAppearance, AnAnswerIsOlderThanAChange)
{
    const test::SessionBus bus;
    Portal portal(bus);
    const SystemAppearance system;
    ASSERT_TRUE(isAsked(portal));
    portal.change(1);
    ASSERT_TRUE(becomes(system, true));
    portal.answer({scheme(2)});
    EXPECT_FALSE(QTest::qWaitFor([&] { return !system.isDark(); }, kAWhileMs));
}

TEST(SystemAppearance, AsksAPortalThatStartsLater)
{
    const test::SessionBus bus;
    const SystemAppearance system;
    EXPECT_TRUE(staysLight(system));
    {
        Portal portal(bus, {scheme(1)});
        EXPECT_TRUE(becomes(system, true));
    }
    EXPECT_TRUE(system.isDark()) << "a portal that ends says nothing";
    const Portal another(bus, {scheme(2)});
    EXPECT_TRUE(becomes(system, false));
}

TEST(SystemAppearance, IsLightWithoutABus)
{
    for (const QByteArray& address : {QByteArray(), QByteArray("unix:path=/nowhere/bus"), QByteArray("nonsense")}) {
        const test::Environment bus("DBUS_SESSION_BUS_ADDRESS", address);
        const SystemAppearance system;
        EXPECT_TRUE(staysLight(system));
    }
}

TEST(SystemAppearance, NobodyWaitsForABusThatSaysNothing)
{
    const QTemporaryDir folder;
    auto silent = std::make_unique<QLocalServer>();
    ASSERT_TRUE(silent->listen(folder.filePath(u"bus"_s)));
    const test::Environment bus("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + QFile::encodeName(folder.filePath(u"bus"_s)));
    QElapsedTimer time;
    time.start();
    auto system = std::make_unique<SystemAppearance>();
    EXPECT_LT(time.elapsed(), kAtOnceMs);
    ASSERT_TRUE(QTest::qWaitFor([&] { return silent->hasPendingConnections(); }, kPatienceMs));
    EXPECT_TRUE(staysLight(*system));
    silent.reset(); // closes the connection: the bus has gone
    time.restart();
    system.reset();
    EXPECT_LT(time.elapsed(), 5000);
}
