// How long a large library takes to open, to save one change, and how much memory
// it needs. The peer is the cheapest thing that could be done with the same bytes:
// reading the index, or writing it and syncing it. The bars are for 10,000 sounds.

#include "Bar.h"
#include "base/Uuid.h"
#include "library/store/LibraryIndex.h"
#include "library/store/LibraryStore.h"
#include "platform/files/Files.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <chrono>
#include <cstdio>
#include <optional>
#include <random>

#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace tonequill;

namespace {

double milliseconds(const std::function<void()>& work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

double residentMegabytes()
{
    QFile status(u"/proc/self/statm"_s);
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    return status.readAll().split(' ').value(1).toDouble() * double(::sysconf(_SC_PAGESIZE)) / (1 << 20);
}

SoundItem record(std::mt19937& random)
{
    static const QStringList words{u"Door"_s, u"Glass"_s, u"Whoosh"_s, u"باب"_s, u"Rain"_s, u"Metal"_s, u"Slam"_s, u"Long"_s};
    const auto word = [&] { return words[qsizetype(random() % std::size_t(words.size()))]; };
    SoundItem item;
    item.id = QUuid::createUuid();
    item.name = word() + u' ' + word() + u' ' + QString::number(random() % 1000);
    item.fileName = uuidText(item.id) + u".wav"_s;
    item.duration = double(random() % 100000) / 1000;
    item.tags = {word().toLower(), word().toLower(), u"sfx"_s};
    item.descriptors = {u"medium"_s, u"punchy"_s};
    item.createdAt = 800000000 + double(random()) / 1000;
    item.nameIsAuto = false;
    item.thumbnail.emplace();
    for (int i = 0; i < 48; ++i)
        item.thumbnail->push_back(float(random() % 100000) / 100000);
    return item;
}

struct Bars {
    double openMs;
    double saveMs;
};

void measure(int count, std::optional<Bars> bars)
{
    const QTemporaryDir folder;
    const QString library = folder.filePath(u"Library"_s);
    QDir().mkpath(library);
    std::mt19937 random(1);
    QByteArray json = "[";
    for (int i = 0; i < count; ++i) {
        const SoundItem item = record(random);
        json += (i ? "," : "") + LibraryIndex::encode(item);
        QFile(library + u'/' + item.fileName).open(QIODevice::WriteOnly);
    }
    json += ']';
    const QString index = library + u"/index.json"_s;
    Files::writeDurably(index, std::span(&json, 1));

    SystemClock clock;
    Workers workers;
    const double read = milliseconds([&] { Files::readAll(index, 1 << 30); });
    const double memoryBefore = residentMegabytes();
    std::unique_ptr<LibraryStore> store;
    const double open = milliseconds([&] { store = std::make_unique<LibraryStore>(clock, workers, library); });
    const double memory = residentMegabytes() - memoryBefore;
    const SoundItem middle = store->items()[count / 2];
    const double firstSave = milliseconds([&] { store->rename(middle, u"First"_s); });
    std::vector<double> saves;
    for (int i = 0; i < 9; ++i)
        saves.push_back(milliseconds([&] { store->rename(middle, QString::number(i)); }));
    std::sort(saves.begin(), saves.end());
    const QString plain = library + u"/plain"_s;
    const double write = milliseconds([&] { Files::writeDurably(plain, std::span(&json, 1)); });
    std::printf("%7d sounds, index %.1f MB\n", count, double(json.size()) / 1e6);
    const auto told = [](double milliseconds, double bar) {
        return QByteArray(" (bar ") + QByteArray::number(bar) + " ms: " + bench::verdict(milliseconds <= bar) + ')';
    };
    std::printf("  open       %8.1f ms   reading the bytes alone %.1f ms%s\n", open, read,
                bars ? told(open, bars->openMs).constData() : "");
    std::printf("  first save %8.1f ms\n", firstSave);
    std::printf("  save       %8.1f ms   writing and syncing the bytes alone %.1f ms%s\n", saves[4], write,
                bars ? told(saves[4], bars->saveMs).constData() : "");
    std::printf("  memory     %8.1f MB   (index %.1f MB)\n", memory, double(json.size()) / 1e6);
}

} // namespace

int main()
{
    measure(10000, Bars{.openMs = 150, .saveMs = 50});
    measure(100000, {});
    return bench::exitCode();
}
