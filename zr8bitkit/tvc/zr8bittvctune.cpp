#include <zr8bitkit/zr8bittvcpitch.h>
#include <zr8bitkit/zr8bittvctune.h>

#include "zr8bittvcsoundreader_p.h"
#include "zrfailure_p.h"

#include <zr8bitlib/zr8bittvcsound.h>

#include <QtCore/QList>
#include <QtCore/QRegularExpression>
#include <QtCore/QStringList>

#include <algorithm>

namespace ZR {

namespace {

constexpr int EndMark = 240;
constexpr QLatin1String Rest("-");

/// A number or a note, and where it stands.
struct Word
{
    QStringView text;
    qsizetype line;
};

bool isNumber(QStringView text)
{
    bool isNumber = false;
    static_cast<void>(text.toInt(&isNumber));
    return isNumber;
}

QStringView withoutComment(QStringView line)
{
    for (qsizetype i = line.indexOf(u'#'); i >= 0; i = line.indexOf(u'#', i + 1)) {
        if (i == 0 || line[i - 1].isSpace())
            return line.first(i);
    }
    return line;
}

QList<Word> wordsOf(const QString &text, const QString &separator)
{
    QList<Word> words;
    qsizetype number = 0;
    for (QStringView line : QStringView(text).tokenize(u'\n')) {
        ++number;
        if (!separator.contains(u'#'))
            line = withoutComment(line);
        for (const QStringView part : line.tokenize(separator, Qt::SkipEmptyParts)) {
            const QStringView word = part.trimmed();
            if (!word.isEmpty())
                words.append({word, number});
        }
    }
    return words;
}

/// Turns the words of records into numbers.
class Records
{
public:
    Records(const QList<Word> &words, const ZR8BitTVCTuneOptions &options)
        : _words(words)
        , _options(options)
        , _format(options.format.toLower())
    {
    }

    /// Returns false with a sentence in error.
    bool read(QString *error)
    {
        for (qsizetype first = 0; first < _words.size(); first += _format.size()) {
            const bool isRest = _isRest(first);
            for (qsizetype i = first; i < std::min(first + _format.size(), _words.size()); ++i) {
                if (!_readWord(i, isRest, error))
                    return false;
            }
        }
        const bool hasEnd = !_words.isEmpty() && _words.last().text.toInt() == EndMark;
        const qsizetype count = _words.size() - int(hasEnd);
        const qsizetype left = count % _format.size();
        return left == 0 ||
               fail(error, QStringLiteral("%1: the sound ends after %2 of the %3 numbers of a record%4.")
                               .arg(_place(count - 1), QString::number(left), QString::number(_format.size()),
                                    hasEnd ? QStringLiteral(", as a last 240 is its end") : QString()));
    }

    /// The numbers, each with a comma after it.
    const QString &numbers() const { return _numbers; }

private:
    QChar _field(qsizetype index) const { return _format[index % _format.size()]; }

    bool _isRest(qsizetype first) const
    {
        const qsizetype end = std::min(first + _format.size(), _words.size());
        bool isRest = false;
        for (qsizetype i = first; i < end && _options.rests; ++i)
            isRest = isRest || (_field(i) == u'p' && _words[i].text == Rest);
        return isRest;
    }

    bool _readWord(qsizetype index, bool isRest, QString *error)
    {
        const QStringView text = _words[index].text;
        if (isNumber(text)) {
            _numbers += isRest && _field(index) == u'v' ? QStringView(u"0") : text;
        } else if (_field(index) != u'p') {
            return fail(error, QStringLiteral("%1: '%2' is not a number.").arg(_place(index), text));
        } else if (isRest && text == Rest) {
            _numbers += QString::number(ZR8BitTVCPitch::Lowest);
        } else {
            QString reason;
            const int pitch = ZR8BitTVCPitch::ofNote(text.toString(), &reason);
            if (pitch == 0)
                return fail(error, QStringLiteral("%1: %2").arg(_place(index), reason));
            _numbers += QString::number(pitch);
        }
        _numbers += u',';
        return true;
    }

    QString _place(qsizetype index) const
    {
        return QStringLiteral("Line %1, record %2").arg(_words[index].line).arg(index / _format.size() + 1);
    }

    const QList<Word> &_words;
    const ZR8BitTVCTuneOptions &_options;
    const QString _format;
    QString _numbers;
};

/// A record as a line.
QString recordLine(const QList<QStringView> &numbers, const QString &format,
                   const ZR8BitTVCTuneOptions &options)
{
    QStringList words;
    bool isSilent = false;
    for (qsizetype i = 0; i < format.size(); ++i)
        isSilent = isSilent || (format[i] == u'v' && numbers[i].toInt() == 0);
    for (qsizetype i = 0; i < format.size(); ++i) {
        const int pitch = format[i] == u'p' ? numbers[i].toInt() : 0;
        const QString note =
            options.notes ? ZR8BitTVCPitch::nearestNote(ZR8BitTVCPitch::frequency(pitch)) : QString();
        if (options.rests && isSilent && pitch == ZR8BitTVCPitch::Lowest)
            words += Rest;
        else if (!note.isEmpty() && ZR8BitTVCPitch::ofNote(note) == pitch)
            words += note;
        else
            words += numbers[i].toString();
    }
    return words.join(options.separator);
}

} // namespace

bool ZR8BitTVCTune::isGood(const Options &options, QString *error)
{
    const QString &separator = options.separator;
    if (options.format.isEmpty() ||
        !std::all_of(options.format.begin(), options.format.end(), [](QChar letter) {
            return QStringLiteral("vpd").contains(letter, Qt::CaseInsensitive);
        }))
        return fail(error, QStringLiteral("The format '%1' is not one or more of the letters v, p and d.")
                               .arg(options.format));
    // Numbers that run into each other could not be read back.
    if (separator.isEmpty() ||
        std::any_of(separator.begin(), separator.end(), [](QChar character) { return character.isDigit(); }))
        return fail(error, QStringLiteral("The separator '%1' is not one or more characters without a digit.")
                               .arg(separator));
    static const QRegularExpression partOfNote(QStringLiteral("[a-g#-]"),
                                               QRegularExpression::CaseInsensitiveOption);
    if (options.notes && separator.contains(partOfNote))
        return fail(error,
                    QStringLiteral("Notes need a separator without letters from A to G, '#' and '-'."));
    if (options.rests && (separator.contains(Rest) || !options.format.contains(u'v', Qt::CaseInsensitive)))
        return fail(error, QStringLiteral("Rests need a volume in the format, and a separator without '-'."));
    return true;
}

bool ZR8BitTVCTune::toBytes(const QString &text, QByteArray &bytes, const Options &options, QString *error)
{
    if (!isGood(options, error))
        return false;
    const QList<Word> words = wordsOf(text, options.separator);
    Records records(words, options);
    if (!records.read(error))
        return false;
    QByteArray data;
    if (!ZR8BitTVCSound::soundToBin(records.numbers(), data, options.format, QStringLiteral(",")))
        return fail(error, QStringLiteral("The numbers of the sound are refused."));
    bytes = data;
    return true;
}

bool ZR8BitTVCTune::fromBytes(const QByteArray &bytes, QString &text, const Options &options, QString *error)
{
    if (!isGood(options, error) || recordCount(bytes, options.format, error) < 0)
        return false;
    const bool areLines = options.notes || options.rests;
    const QString separator = areLines ? QStringLiteral(",") : options.separator;
    QString numbers;
    if (!ZR8BitTVCSound::binToSound(bytes, numbers, options.format, separator))
        return fail(error, QStringLiteral("The bytes of the sound are refused."));
    if (!areLines) {
        text = numbers;
        return true;
    }
    const QString format = options.format.toLower();
    const QList<QStringView> words = QStringView(numbers).split(u',');
    QString lines;
    for (qsizetype i = 0; i + format.size() < words.size(); i += format.size())
        lines += recordLine(words.sliced(i, format.size()), format, options) + u'\n';
    text = lines + QString::number(EndMark);
    return true;
}

} // namespace ZR
