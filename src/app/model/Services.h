#pragma once

namespace tonequill {

class Clock;
class Defaults;
class EditorWork;
class LanguageModel;
class OtherApps;
class SoundIndex;
class Workers;

// What the machine gives the program. Made by who starts it; outlives AppModel.
struct Services {
    Defaults& defaults;
    Clock& clock;
    Workers& workers;
    EditorWork& editorWork;
    OtherApps& apps;
    LanguageModel& languageModel;
    SoundIndex& soundIndex;
};

} // namespace tonequill
