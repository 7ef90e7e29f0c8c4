#pragma once

#include "fakes/FakeAudioOutput.h"
#include "support/LibraryFolder.h"
#include "ui/OpenSound.h"
#include "ui/kit/ThemeStore.h"
#include "ui/window/WindowModel.h"
#include "understanding/listening/SoundClassifier.h"

#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

#include <memory>

namespace tonequill::test {

// What the surfaces stand on in a test: a whole program without its window, over
// a library in a temporary folder. QML reaches it as `Fixture`.
class Fixture : public QObject {
    Q_OBJECT
    Q_PROPERTY(tonequill::WindowModel* model READ model NOTIFY modelChanged FINAL)
    Q_PROPERTY(tonequill::Levels wave READ wave CONSTANT FINAL)
    Q_PROPERTY(QString pictures READ pictures CONSTANT FINAL)
    Q_PROPERTY(int filesAskedFor MEMBER m_filesAskedFor NOTIFY filesAskedForChanged FINAL)

public:
    Fixture();
    ~Fixture() override;

    WindowModel* model() const { return m_model.get(); }

    // A sound that is struck and dies away.
    static Levels wave();
    // The folder to keep pictures in; empty for none.
    static QString pictures() { return qEnvironmentVariable("TONEQUILL_PICTURES"); }

    // A new program with sounds "Sound 1" … "Sound count".
    Q_INVOKABLE void start(int count);
    // A new program whose one sound is open: ten seconds, with the parts "Slam"
    // (3 to 4 s, the best), 6 to 7.5 s, and the whole.
    Q_INVOKABLE void startEditing();
    // The same before its analysis has come; a player is there.
    Q_INVOKABLE void startLoading();
    // Its analysis comes, and then what is heard in the parts.
    Q_INVOKABLE void analyse();
    Q_INVOKABLE void label();
    // Ends it; no window may show it any more.
    Q_INVOKABLE void stop();

    // The editor's state, as one line: "3.00-4.00", the number of marked parts,
    // and what else is going on.
    Q_INVOKABLE QString editor() const;
    Q_INVOKABLE QString effects() const;
    Q_INVOKABLE QString record() const; // name and tags of the open sound
    Q_INVOKABLE void answerHearing();
    Q_INVOKABLE void answerHearingWithNothing();
    Q_INVOKABLE void failEffects();        // the render that is asked for
    Q_INVOKABLE void play(double seconds); // the sound has come there

    // The names of the selected sounds, in the list's order, and the open one.
    Q_INVOKABLE QString selected() const;
    Q_INVOKABLE QString open() const;
    Q_INVOKABLE void say(const QString& text, bool isError);
    Q_INVOKABLE void advance(int milliseconds) { m_machine.clock.advance(std::chrono::milliseconds(milliseconds)); }
    Q_INVOKABLE void setDark(bool isDark);
    // The Auto Folder gets a folder of that name, and a run of it fails.
    Q_INVOKABLE void chooseAutoFolder(const QString& name);
    // What the language model will say is related to any query.
    Q_INVOKABLE void answerRelated(const QStringList& words);
    Q_INVOKABLE void failAutoFolder(const QString& problem) { m_app->autoFolder().record({}, problem); }
    // A setting as it is stored, as text; and all of them as on a first start, but light.
    Q_INVOKABLE QString setting(const QString& key) const;
    Q_INVOKABLE void resetSettings();
    Q_INVOKABLE void setFinalCut(bool isThere) { m_machine.apps.isThere = isThere; }
    Q_INVOKABLE QStringList shownFolders() const { return m_machine.apps.shownFolders; }
    Q_INVOKABLE void deleteFirst();
    // The path of a sound, or of a text file that is none.
    Q_INVOKABLE QString sound(const QString& name) const;
    Q_INVOKABLE QString words(const QString& name) const;
    Q_INVOKABLE void rename(int row, const QString& name);
    Q_INVOKABLE void license(int row, const QString& license, const QString& credit);
    Q_INVOKABLE QStringList revealedFiles() const { return m_machine.apps.revealed; }

    // A drag over the window's point, and its end; true if the window takes it.
    Q_INVOKABLE static bool dragOver(QQuickWindow* window, const QStringList& urls, double x, double y);
    Q_INVOKABLE static void dragLeave(QQuickWindow* window);
    Q_INVOKABLE static void drop(QQuickWindow* window, const QStringList& urls, double x, double y);

    // A key that is held until it has repeated so often.
    Q_INVOKABLE static void hold(QQuickWindow* window, int key, int repeats);

    // Everything of the window that the Tab key reaches, as "role: name".
    Q_INVOKABLE static QStringList tabStops(QQuickWindow* window);
    // What is wrong with them: no name, or too small to hit.
    Q_INVOKABLE static QStringList flaws(QQuickWindow* window);
    // Those that lie under an item.
    Q_INVOKABLE static QStringList stopsUnder(QQuickItem* item);
    // What a screen reader says of an item.
    Q_INVOKABLE static QString spoken(QQuickItem* item);
    // A slider's: "0 of -24 to 12".
    Q_INVOKABLE static QString valueOf(QQuickItem* item);
    // What a screen reader can do with it: false where it can't.
    Q_INVOKABLE static bool setValue(QQuickItem* item, double value);
    Q_INVOKABLE static bool press(QQuickItem* item);
    // What another program would paste.
    Q_INVOKABLE static QString clipboard();

Q_SIGNALS:
    void modelChanged();
    void filesAskedForChanged();

private:
    void makeModel();

    Machine m_machine;
    FakeAudioOutput m_output;
    SoundClassifier m_classifier;
    BackgroundEditorWork m_work{m_classifier, m_output, m_machine.workers};
    ThemeStore m_themes{m_machine.defaults};
    std::unique_ptr<LibraryFolder> m_folder;
    std::unique_ptr<OpenSound> m_openSound;
    std::shared_ptr<FakeAudioPlayer> m_player;
    std::unique_ptr<AppModel> m_app;
    std::unique_ptr<WindowModel> m_model;
    int m_filesAskedFor = 0;
};

} // namespace tonequill::test
