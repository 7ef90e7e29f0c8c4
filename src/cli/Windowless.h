#pragma once

#include "app/model/AppModel.h"
#include "app/smart/NamingFlows.h"
#include "cli/LibraryAccess.h"
#include "discovery/catalogue/SoundIndex.h"
#include "platform/desktop/DesktopApps.h"
#include "platform/network/LocalLanguageModel.h"
#include "platform/playback/NoAudioOutput.h"
#include "understanding/listening/SoundClassifier.h"

namespace tonequill::cli {

// The program without its window: its flows, over a library of its own.
class Windowless {
public:
    enum class Ear { isNeeded, mayStayClosed };

    // Takes the library's store. Throws SoundModelError if the ear is needed and its
    // network can't be used.
    Windowless(OwnLibrary& own, Ear ear)
        : m_work(opened(m_classifier, ear), m_output, own.workers),
          m_languageModel(LocalLanguageModel::Settings::from(m_defaults)),
          m_model({m_defaults, own.clock, own.workers, m_work, m_apps, m_languageModel, SoundIndex::shared()},
                  std::move(own.store))
    {
        followTheEar(m_model);
    }

    AppModel& model() { return m_model; }

private:
    static const SoundClassifier& opened(const SoundClassifier& classifier, Ear ear)
    {
        if (ear == Ear::isNeeded)
            classifier.prepare();
        return classifier;
    }

    Defaults m_defaults;
    const SoundClassifier m_classifier{ClassifierChoice::from(m_defaults, ClassifierChoice::IfBroken::fail)};
    NoAudioOutput m_output;
    BackgroundEditorWork m_work;
    DesktopApps m_apps;
    LocalLanguageModel m_languageModel;
    AppModel m_model;
};

} // namespace tonequill::cli
