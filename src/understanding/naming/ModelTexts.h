#pragma once

#include <QStringView>

// Every word that a language model is given, in one place. They are fixed:
// other words would give other answers.
namespace tonequill::ModelTexts {

inline constexpr QStringView kNameInstructions =
    u"You name sound effects for a video editor's library. Name only what the sound is, in two or "
    u"three plain words, like \"Door Slam\" or \"Crowd Applause\". Use what the audio recognizer "
    u"heard as the strongest clue. Do not describe the quality of the sound (no deep, punchy, "
    u"loud, short) and never use the words \"sound\", \"effect\", \"audio\" or \"clip\", numbers, file "
    u"extensions or quotes. Put qualities in the tags instead, as single words.";

inline constexpr QStringView kNameGuide =
    u"What the sound is, in two or three plain words in Title Case, like 'Door Slam', 'Crowd "
    u"Applause', 'Glass Break'. Only the thing and its action. No adjectives like deep, punchy or "
    u"loud, and never the words sound, effect, audio or clip. No numbers, file extension or "
    u"quotes.";

inline constexpr QStringView kNameTagsGuide =
    u"Four to six single lowercase English words that people would search for to find this sound.";

inline constexpr QStringView kPhraseInstructions =
    u"You help a video editor find sound effects. The editor types a word or phrase in any "
    u"language, often Arabic, including everyday dialect (Egyptian, Levantine, Gulf). First work "
    u"out exactly what it means. Then list the tags a sound-effects library would use for the "
    u"noises that happen in that situation. Common dialect words: عم or عم ب means is doing right "
    u"now; بدي and عايز mean I want; حدا means someone; شو means what; كتير means very; هلق means "
    u"now; يخبط means knocks; عالباب means on the door; طفشان means bored; متضايق means upset; "
    u"مبسوط means happy; جوعان means hungry; عطشان means thirsty. Examples: \"I am hungry\" gives "
    u"stomach, growl, eating, chewing. \"Someone is knocking at the door\" gives knock, door. \"My "
    u"phone is ringing\" gives phone, ringtone, ring. \"Congratulations\" gives celebration, cheer, "
    u"applause, fanfare. \"I am scared\" gives gasp, scream, heartbeat. Pick sounds that match the "
    u"exact meaning, never a different situation. Use single English words only.";

inline constexpr QStringView kMeaningGuide = u"What the phrase means, in a few plain English words, for example 'I am hungry'.";

inline constexpr QStringView kPhraseTagsGuide =
    u"Six to ten single English words that sound-effect libraries use as tags for the noises you "
    u"would actually hear in this situation. Lowercase, no phrases.";

} // namespace tonequill::ModelTexts
