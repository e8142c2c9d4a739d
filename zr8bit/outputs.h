#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>

class QIODevice;

// The outputs of the sub-commands. "-" means standard output.

/// Writes an output piece by piece to the device that it is given. Throws Failure when it cannot.
using Writer = std::function<void(QIODevice &)>;

/// A file by its name within a folder.
struct NamedData
{
    QString name;
    QByteArray data;
};

/// The outputs of a command, which are written together: all of them or, when one fails, none.
///
/// Files are written under other names and renamed at the end. Until then existing ones stay as they were,
/// also when an interrupt ends the program. Only if the system refuses to rename one, those before it have
/// been replaced. Devices, pipes and standard output are written to as they are, when all files are ready.
class Outputs
{
public:
    /// Adds a file, a device or standard output.
    void add(const QString &path, const Writer &write);
    void add(const QString &path, const QByteArray &data);

    /// Adds files of a folder, which is made when it does not exist. Its other files stay as they are.
    void addFolder(const QString &path, const QList<NamedData> &files);

    /// Writes them. Throws Failure when it cannot, and when two of them are one file.
    void write();

private:
    void _refuseRepeated() const;

    struct Output
    {
        QString path;
        Writer write;           ///< empty for a folder
        QList<NamedData> files; ///< of a folder
    };
    QList<Output> _outputs;
};

/// Writes a single output in the same way.
void writeOutput(const QString &path, const QByteArray &data);
void writeOutput(const QString &path, const Writer &write);

/// The first output that is the same file as one before it, by the same name, by a link or by another way
/// through the folders; an empty text when there is none. To be asked before a long job.
QString repeatedOutput(const QStringList &paths);
