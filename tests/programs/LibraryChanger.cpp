// Changes a library as fast as it can, telling each change on stdout before and
// after it: "import", "rename ID NAME" or "delete ID", then "done [ID NAME]". The
// tests kill it at any moment, or take its disk away, and look at what is left.
//
//     library_changer FOLDER SOUND-FILE random SEED    changes until it is killed
//     library_changer FOLDER SOUND-FILE import|rename|delete    makes one change

#include "base/Background.h"
#include "base/Uuid.h"
#include "library/store/LibraryStore.h"

#include <QCoreApplication>

#include <cstdio>
#include <random>

using namespace Qt::StringLiterals;
using namespace tonequill;

namespace {

void tell(const QString& line)
{
    std::puts(line.toUtf8().constData());
    std::fflush(stdout);
}

QCoro::Task<> change(LibraryStore& store, QString what, QString source, std::mt19937& random)
{
    const auto any = [&]() -> SoundItem { return store.items()[qsizetype(random() % std::size_t(store.items().size()))]; };
    if (what == u"import" || store.items().isEmpty()) {
        tell(u"import"_s);
        try {
            const SoundItem item = co_await store.importFile(source, SoundOrigin::imported);
            tell(u"done %1 %2"_s.arg(uuidText(item.id), item.name));
        } catch (const UserError& error) {
            tell(u"failed "_s + error.message());
        }
    } else if (what == u"rename") {
        const SoundItem item = any();
        const QString name = u"name %1"_s.arg(random() % 100000);
        tell(u"rename %1 %2"_s.arg(uuidText(item.id), name));
        store.rename(item, name);
        co_await store.saved();
        tell(u"done %1 %2"_s.arg(uuidText(item.id), name));
    } else {
        const SoundItem item = any();
        tell(u"delete "_s + uuidText(item.id));
        auto deleting = store.deleteItems({item});
        const bool isDone = co_await std::move(deleting);
        tell(isDone ? u"done"_s : u"failed because the disk is full"_s);
    }
}

QCoro::Task<> run(LibraryStore& store, QStringList arguments)
{
    const QString source = arguments[2];
    const QString what = arguments[3];
    std::mt19937 random(arguments.value(4).toUInt());
    if (what != u"random") {
        co_await change(store, what, source, random);
        QCoreApplication::quit();
        co_return;
    }
    const QStringList changes{u"import"_s, u"import"_s, u"rename"_s, u"rename"_s, u"delete"_s};
    for (;;) {
        const QString next = changes[qsizetype(random() % std::size_t(changes.size()))];
        co_await change(store, next, source, random);
    }
}

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    SystemClock clock;
    Workers workers;
    LibraryStore store(clock, workers, application.arguments().value(1));
    store.sweepUnfinished();
    QMetaObject::invokeMethod(
        &application, [&] { startFlow(run(store, application.arguments())); }, Qt::QueuedConnection);
    return QCoreApplication::exec();
}
