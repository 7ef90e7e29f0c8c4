#pragma once

#include "base/Background.h"
#include "discovery/catalogue/CatalogueTables.h"
#include "discovery/catalogue/IndexSearch.h"

#include <QString>

#include <memory>
#include <mutex>
#include <optional>
#include <span>

namespace tonequill {

// The offline catalogue of free sounds: a file that is loaded once, and searched.
// A file that is missing or can't be read is no failure: nothing is found then.
//
// Any threads; a search has it to itself, and a load takes it only to publish.
class SoundIndex {
public:
    // A load on its way, or over. It goes on when nobody waits.
    class Load;

    SoundIndex();
    ~SoundIndex();
    SoundIndex(const SoundIndex&) = delete;
    SoundIndex& operator=(const SoundIndex&) = delete;

    // The program's own; it never goes.
    static SoundIndex& shared();

    // The file of the catalogue: the one that TONEQUILL_INDEX names, else
    // "sound-index.bin" in the user's data folder, then in the folder that came with the
    // program, else "Tools/index/sound-index.bin" in the current folder or one of the four
    // above. None if there is none.
    static std::optional<QString> locate();
    // Where the user's own is looked for.
    static QString userPath();

    // None once a catalogue is loaded. Otherwise the one load there ever is, begun behind
    // when first asked for; it is over, with nothing, where there was no good file. The
    // workers outlive the load.
    std::shared_ptr<Load> startLoadingIfNeeded(Workers& workers);

    // Takes the bytes of a file in, in place of what is loaded. Changes nothing if they are no
    // catalogue. Throws Cancelled.
    CatalogueReader::Outcome install(std::span<const char> file, Progress* progress = nullptr);

    // Whether there is anything to be found.
    bool isReady() const;
    std::int32_t soundCount() const;

    QList<OnlineSound> search(const IndexQuery& query);

    // What is loaded; it stays as it is when another file is installed.
    std::shared_ptr<const CatalogueTables> tables() const;

private:
    void load(Progress& progress);

    struct Catalogue;
    mutable std::mutex m_lock; // guards what follows, for the whole of a search
    std::unique_ptr<Catalogue> m_catalogue;
    std::shared_ptr<Load> m_loading;
    bool m_isReady = false;
};

class SoundIndex::Load final : public Job {
public:
    Load(SoundIndex& index, Workers& workers);

    // Until it is over. Somebody waits: it is the next that is done.
    QCoro::Task<> ended(FlowGroup& flows);
    // The same for one who only wants to be told.
    QCoro::Task<> toldWhenEnded(FlowGroup& flows);

protected:
    void run() override;
    void withdraw() override { ring(); }

private:
    void ring();

    SoundIndex& m_index;
    Workers& m_workers;
    struct Listener {
        std::weak_ptr<FlowGroup::Bell> bell;
        std::weak_ptr<Wait> wait;
    };
    std::mutex m_mutex; // guards what follows
    std::vector<Listener> m_listeners;
    bool m_isOver = false;
};

} // namespace tonequill
