#pragma once

#include "app/model/AppModel.h"
#include "ui/wave/WaveItems.h"

#include <QAbstractListModel>
#include <QTimer>

namespace tonequill {

// What a row of the library shows. Pure.
namespace LibraryRow {

// "7.0 s · door, slam": the duration and the first two tags that say something.
QString subtitle(const SoundItem& item);
// What is going on with a file that comes in.
QString step(double fraction, bool isFirst);

} // namespace LibraryRow

// The rows of the library list: the files that are coming in, then the sounds of
// the library's session. Pointer and keys are the session's; files that come in
// are nothing that they could reach. One thread.
class LibraryListModel : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("It belongs to the window's model")
    Q_PROPERTY(int soundCount READ soundCount NOTIFY countChanged FINAL) // of the library
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY countChanged FINAL)      // the library
    Q_PROPERTY(QString query READ query WRITE setQuery NOTIFY queryChanged FINAL)
    // Over sounds that aren't the search's own: "Related to “spooky”: horror, creepy".
    Q_PROPERTY(QString relatedHeading READ relatedHeading NOTIFY countChanged FINAL)
    // What stands in the list's place where there is no row; empty while there are rows.
    Q_PROPERTY(QString nothingFound READ nothingFound NOTIFY countChanged FINAL)
    // Beside the count: how many of several are marked, or what a search shows; else empty.
    Q_PROPERTY(QString footNote READ footNote NOTIFY footNoteChanged FINAL)
    // The row that the keys move; -1 for none.
    Q_PROPERTY(int currentRow READ currentRow NOTIFY currentRowChanged FINAL)

public:
    enum Role {
        NameRole = Qt::DisplayRole,
        SubtitleRole = Qt::UserRole,
        LevelsRole,
        IsIncomingRole,
        IsSelectedRole,
        CreditRole,
        IsBeingNamedRole
    };
    Q_ENUM(Role)

    explicit LibraryListModel(AppModel& app);

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    int soundCount() const { return int(m_app.library().items().size()); }
    bool isEmpty() const { return soundCount() == 0 && m_incoming.isEmpty(); }
    int currentRow() const;

    const QString& query() const { return m_session.query(); }
    void setQuery(const QString& query) { m_session.setQuery(query); }
    // A language model may relate words to a query that finds nothing; the list
    // is then what contains them.
    QString relatedHeading() const;
    QString nothingFound() const;
    QString footNote() const;

    // A click on a row, with what was held. Nothing for a file that comes in.
    Q_INVOKABLE void click(int row, int modifiers);
    // Moves to the row, or to the nearest sound; extends the selection with Shift.
    Q_INVOKABLE void moveTo(int row, int modifiers);
    // To the list from elsewhere: to the first sound, unless the open one is shown.
    Q_INVOKABLE void enter() { m_session.enter(); }
    Q_INVOKABLE void selectAll() { m_session.selectAll(); }
    Q_INVOKABLE void type(const QString& letter) { m_session.type(letter); }
    Q_INVOKABLE void deleteSelected();
    // The row's menu: all that are selected if the row is one of several, else it alone.
    Q_INVOKABLE QString deleteLabel(int row) const;
    Q_INVOKABLE void deleteFrom(int row);
    // While one of them is being named, its action stops that.
    Q_INVOKABLE QString smartNameLabel(int row) const;
    Q_INVOKABLE void smartNameFrom(int row);
    Q_INVOKABLE QString saveLabel(int row) const;
    Q_INVOKABLE void saveFrom(int row);
    // The row's own file, in the desktop's file manager.
    Q_INVOKABLE void showFileOf(int row) const;
    Q_INVOKABLE bool hasCredit(int row) const;
    Q_INVOKABLE QString copyCreditLabel(int row) const;
    Q_INVOKABLE void copyCreditFrom(int row);

    // The sounds that an action on a row means.
    QList<SoundItem> meantBy(int row) const { return m_session.meantBy(indexOf(row)); }

Q_SIGNALS:
    void countChanged();
    void currentRowChanged();
    void queryChanged();
    void footNoteChanged();
    void rowWanted(int row); // it should be in view

private:
    int incomingCount() const { return int(m_incoming.size()); }
    int indexOf(int row) const { return row - incomingCount(); } // in the session
    bool isBeingNamed(const QList<SoundItem>& sounds) const;
    QVariant incomingData(qsizetype row, int role) const;
    QStringList creditsOf(int row) const;
    void follow(); // the session
    void tellChanged(int index, const QList<int>& roles = {});
    void followIncoming();
    void lookAtProgress();

    AppModel& m_app;
    LibrarySession& m_session;
    QList<IncomingFile> m_incoming;
    QTimer m_progressTimer;
};

} // namespace tonequill
