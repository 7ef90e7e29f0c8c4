#include "discovery/catalogue/SoundIndex.h"

#include "platform/files/Files.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace tonequill {

namespace {

constexpr int kFoldersUpwards = 5; // the current one and four above

bool isFile(const QString& path)
{
    return !path.isEmpty() && QFileInfo(path).isFile();
}

} // namespace

struct SoundIndex::Catalogue {
    explicit Catalogue(CatalogueTables made) : tables(std::make_shared<const CatalogueTables>(std::move(made))), search(*tables)
    {}

    std::shared_ptr<const CatalogueTables> tables;
    IndexSearch search;
};

SoundIndex::SoundIndex() = default;
SoundIndex::~SoundIndex() = default;

SoundIndex& SoundIndex::shared()
{
    static auto* const index = new SoundIndex; // searches may run while the program ends
    return *index;
}

QString SoundIndex::userPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Tonequill/sound-index.bin"_s;
}

std::optional<QString> SoundIndex::locate()
{
    const QString installed = QCoreApplication::applicationDirPath() + u"/../share/tonequill/sound-index.bin"_s;
    for (const QString& path : {qEnvironmentVariable("TONEQUILL_INDEX"), userPath(), installed}) {
        if (isFile(path))
            return QDir::cleanPath(path);
    }
    QDir folder = QDir::current();
    for (int i = 0; i < kFoldersUpwards; ++i) {
        if (const QString path = folder.filePath(u"Tools/index/sound-index.bin"_s); isFile(path))
            return path;
        if (!folder.cdUp())
            break;
    }
    return std::nullopt;
}

std::shared_ptr<SoundIndex::Load> SoundIndex::startLoadingIfNeeded(Workers& workers)
{
    const std::scoped_lock lock(m_lock);
    if (m_isReady)
        return nullptr;
    if (!m_loading) {
        m_loading = std::make_shared<Load>(*this, workers);
        workers.behind().add(m_loading);
    }
    return m_loading;
}

void SoundIndex::load(Progress& progress)
{
    const auto path = locate();
    if (!path)
        return;
    // A stream is never longer than what comes out but for a few bytes a block.
    constexpr qint64 kLargestFile = qint64(CatalogueReader::kMostBytes) + (qint64(1) << 20);
    const QByteArray file = Files::readAll(*path, kLargestFile);
    install({file.constData(), std::size_t(file.size())}, &progress);
}

CatalogueReader::Outcome SoundIndex::install(std::span<const char> file, Progress* progress)
{
    TableBuilder builder;
    const CatalogueReader::Outcome outcome = CatalogueReader::read(file, builder, progress);
    if (outcome != CatalogueReader::Outcome::done)
        return outcome;
    auto made = std::make_unique<Catalogue>(builder.finish());
    const std::scoped_lock lock(m_lock);
    m_isReady = made->tables->soundCount() > 0;
    m_catalogue.swap(made);
    return outcome;
}

bool SoundIndex::isReady() const
{
    const std::scoped_lock lock(m_lock);
    return m_isReady;
}

std::int32_t SoundIndex::soundCount() const
{
    const std::scoped_lock lock(m_lock);
    return m_catalogue ? m_catalogue->tables->soundCount() : 0;
}

std::shared_ptr<const CatalogueTables> SoundIndex::tables() const
{
    const std::scoped_lock lock(m_lock);
    return m_catalogue ? m_catalogue->tables : std::make_shared<const CatalogueTables>();
}

QList<OnlineSound> SoundIndex::search(const IndexQuery& query)
{
    const std::scoped_lock lock(m_lock);
    return m_catalogue ? m_catalogue->search.search(query) : QList<OnlineSound>();
}

SoundIndex::Load::Load(SoundIndex& index, Workers& workers)
    : Job(std::make_shared<Progress>()),
      m_index(index),
      m_workers(workers)
{}

void SoundIndex::Load::run()
{
    try {
        m_index.load(*progress());
    } catch (...) {
        // Cancelled, not to be read, no memory: nothing is found then, and nothing said.
    }
    ring();
}

void SoundIndex::Load::ring()
{
    std::vector<Listener> listeners;
    {
        const std::scoped_lock lock(m_mutex);
        m_isOver = true;
        listeners.swap(m_listeners);
    }
    for (const Listener& listener : listeners) {
        const auto bell = listener.bell.lock();
        auto wait = listener.wait.lock();
        if (bell && wait)
            FlowGroup::ring(bell, std::move(wait));
    }
}

QCoro::Task<> SoundIndex::Load::ended(FlowGroup& flows)
{
    m_workers.moveUp(progress());
    return toldWhenEnded(flows);
}

QCoro::Task<> SoundIndex::Load::toldWhenEnded(FlowGroup& flows)
{
    auto wait = flows.add();
    {
        const std::scoped_lock lock(m_mutex);
        if (!m_isOver)
            m_listeners.push_back({flows.bell(), wait});
        else
            wait->arrive();
    }
    return FlowGroup::arrived(std::make_shared<detail::Answer<void>>(), std::move(wait));
}

} // namespace tonequill
