#include <zr8bitkit/zriniconfig.h>

#include "zrfailure_p.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QStringDecoder>

namespace ZR {

namespace {

constexpr char sourceFile[] = "zr8bitkit/zriniconfig";

/// Reads all of a file that is not too large to be one of settings. Returns what is wrong, if anything.
QString readContent(const QString &filePath, QByteArray &content)
{
    constexpr qint64 LargestSize = 1 << 20;
    const QFileInfo info(filePath);
    if (info.exists() && !info.isFile() && !info.isDir()) // to open a pipe could wait for ever
        return QStringLiteral("Settings file '%1' is a device or a pipe, not a file!").arg(filePath);
    QFile file(filePath);
    if (file.open(QIODevice::ReadOnly))
        content = file.read(LargestSize + 1);
    if (file.error() != QFileDevice::NoError)
        return QStringLiteral("Couldn't read settings file '%1': %2").arg(filePath, file.errorString());
    if (content.size() > LargestSize)
        return QStringLiteral("Settings file '%1' is larger than 1 MiB!").arg(filePath);
    return QString();
}

bool isBlankOrComment(QStringView text)
{
    return text.isEmpty() || text.startsWith(u';');
}

/// Reads settings line by line. What reads a part of a line returns what is wrong with it, if anything.
class IniReader
{
public:
    struct Entry
    {
        QString key;
        QString value;
        int line = 0;
    };

    QString readLine(const QByteArray &bytes);
    int line() const { return _line; }
    const QList<Entry> &entries() const { return _entries; }

private:
    QString _readSection(QStringView text);
    QString _readEntry(QStringView text);
    static QString _readValue(QStringView text, QString &value);

    int _line = 0; ///< counted from 1
    QString _section;
    QList<Entry> _entries;
    QHash<QString, int> _linesOfKeys;
};

QString IniReader::readLine(const QByteArray &bytes)
{
    ++_line;
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString all = decoder.decode(bytes);
    if (decoder.hasError())
        return QStringLiteral("the text is not UTF-8!");
    const QStringView text = QStringView(all).trimmed();
    if (isBlankOrComment(text) || text.startsWith(u'#'))
        return QString();
    return text.startsWith(u'[') ? _readSection(text) : _readEntry(text);
}

QString IniReader::_readSection(QStringView text)
{
    const qsizetype end = text.indexOf(u']');
    if (end < 0 || !isBlankOrComment(text.sliced(end + 1).trimmed()))
        return QStringLiteral("a section is written as [NAME], on a line of its own!");
    _section = text.sliced(1, end - 1).trimmed().toString();
    _section.replace(QLatin1String("%25"), QLatin1String("%"));
    return _section.isEmpty() ? QStringLiteral("the section has no name!") : QString();
}

QString IniReader::_readEntry(QStringView text)
{
    const qsizetype place = text.indexOf(u'=');
    if (place < 1)
        return QStringLiteral("this is none of [SECTION], KEY = VALUE and ; COMMENT!");
    if (_section.isEmpty())
        return QStringLiteral("the setting stands in no [SECTION]!");
    const QString key = _section + QLatin1Char('.') + text.first(place).trimmed().toString();
    const int first = _linesOfKeys.value(key, 0);
    if (first > 0)
        return QStringLiteral("%1 was set in line %2 already!").arg(key, QString::number(first));
    _linesOfKeys.insert(key, _line);
    QString value;
    QString problem = _readValue(text.sliced(place + 1).trimmed(), value);
    _entries.append({key, value, _line});
    return problem;
}

QString IniReader::_readValue(QStringView text, QString &value)
{
    bool isQuoted = false;
    qsizetype quotedSize = 0; // up to the last quotes: blanks at the end count there
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar letter = text[i];
        if (letter == u'"' && isQuoted && text.sliced(i + 1).startsWith(u'"')) {
            value += text[++i];
        } else if (letter == u'"') {
            isQuoted = !isQuoted;
            quotedSize = value.size();
        } else if (letter == u';' && !isQuoted) {
            break;
        } else {
            value += letter;
        }
    }
    while (value.size() > quotedSize && value.back().isSpace())
        value.chop(1);
    return isQuoted ? QStringLiteral("the double quotes are not closed!") : QString();
}

} // namespace

ZRIniConfig::ZRIniConfig(const QString &name)
    : ZRObject(name)
{
}

ZRIniConfig::~ZRIniConfig() = default;

bool ZRIniConfig::load(const QString &filePath)
{
    _clear();
    QByteArray content;
    const QString problem = readContent(filePath, content);
    if (!problem.isEmpty())
        return ZR_FAIL(problem);
    const QByteArray byteOrderMark = QByteArrayLiteral("\xEF\xBB\xBF");
    if (content.startsWith(byteOrderMark))
        content.remove(0, byteOrderMark.size());

    IniReader reader;
    const auto lines = content.split('\n');
    for (const QByteArray &line : lines) {
        const QString text = reader.readLine(line);
        if (!text.isEmpty())
            return ZR_FAIL(QStringLiteral("Settings file '%1', line %2: %3")
                               .arg(filePath, QString::number(reader.line()), text));
    }

    const QDir folder = QFileInfo(filePath).absoluteDir();
    for (const auto &[key, value, line] : reader.entries()) {
        const bool isPath = !value.isEmpty() && key.endsWith(QLatin1String(".FilePath"));
        _setValue(key, isPath ? folder.absoluteFilePath(value) : value,
                  QStringLiteral("'%1', line %2").arg(filePath, QString::number(line)));
    }
    return true;
}

} // namespace ZR
