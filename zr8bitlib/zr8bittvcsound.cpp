#include <zr8bitlib/zr8bittvcsound.h>

#include "zr8bitnumbers_p.h"

#include <QtCore/QDebug>
#include <QtCore/QList>

#include <algorithm>
#include <iterator>
#include <optional>

namespace ZR {

namespace {

constexpr int EndMark = 240; // as a byte it is the end byte

/// What a record holds one of for each letter of the format.
struct Field
{
    char16_t letter;
    QLatin1String name;
    QLatin1String title; ///< the name at the start of a sentence
    uint smallest;
    uint largest;
    int bytes;
    int digits;
};

constexpr Field fields[] = {
    {u'v', QLatin1String("volume"), QLatin1String("Volume"), 0, 15, 1, 2},
    {u'p', QLatin1String("pitch"), QLatin1String("Pitch"), 1, 4095, 2, 4},
    {u'd', QLatin1String("duration"), QLatin1String("Duration"), 0, 255, 1, 3},
};

using Record = QList<const Field *>;

/// Reports to Qt's message log in the name of one conversion.
class Report
{
public:
    explicit Report(const char *conversion)
        : _conversion(conversion)
    {
    }

    void warning(const QString &text) const { _logger().warning().noquote() << _line(text); }

    /// Returns false, as the conversion is to do.
    bool failure(const QString &text) const
    {
        _logger().critical().noquote() << _line(text);
        return false;
    }

private:
    /// Without a place, but, unlike a QMessageLogger without arguments, of the category "default".
    static QMessageLogger _logger() { return QMessageLogger(nullptr, 0, nullptr); }

    QString _line(const QString &text) const
    {
        return QStringLiteral("ZR8BitTVCSound::%1(): %2").arg(QLatin1String(_conversion), text);
    }

    const char *_conversion;
};

/// The record that a format in small letters describes; a report, and nothing, when it has another letter.
std::optional<Record> readFormat(const QString &format, const Report &report)
{
    Record record;
    for (const QChar letter : format) {
        const auto *field = std::find_if(std::begin(fields), std::end(fields),
                                         [letter](const Field &row) { return letter == row.letter; });
        if (field == std::end(fields)) {
            report.failure(
                QStringLiteral("Invalid format: '%1'! Format only contains v - voulume, p - pitch, "
                               "d - duration characters!")
                    .arg(format));
            return std::nullopt;
        }
        record.append(field);
    }
    return record;
}

bool reportEmptyFormat(const Report &report)
{
    return report.failure(QStringLiteral(
        "Empty format! At least one of v - volume, p - pitch, d - duration characters is needed!"));
}

/// A value of a field: itself or, with a warning, the largest one.
uint valueInRange(const Field &field, uint value, qsizetype index, const Report &report)
{
    if (value >= field.smallest && value <= field.largest)
        return value;
    report.warning(QStringLiteral("Invalid %1 value: %2 on index: %3! %4 value must be %5-%6.")
                       .arg(field.name, QString::number(value), QString::number(index), field.title,
                            QString::number(field.smallest), QString::number(field.largest)));
    return field.largest;
}

bool isEndMark(QStringView part)
{
    bool isNumber = false;
    return toInt(part, 10, isNumber) == EndMark;
}

/// Appends the numbers of a stream and the end mark to text, up to a failure.
bool appendNumbers(const QByteArray &bin, const Record &record, const QString &separator,
                   const Report &report, QString &text)
{
    qsizetype position = 0;
    for (qsizetype offset = 0; offset < bin.size();) {
        if (offset == bin.size() - 1 && bin[offset] == static_cast<char>(EndMark))
            break;
        if (record.isEmpty())
            return reportEmptyFormat(report);
        const Field &field = *record.at(position);
        if (field.bytes > bin.size() - offset)
            return report.failure(QStringLiteral("Invalid input data or format! There is not enough data for "
                                                 "pitch on idnex: %1!")
                                      .arg(offset));
        uint value = 0;
        for (int i = 0; i < field.bytes; ++i)
            value = value << 8 | static_cast<uchar>(bin[offset + i]);
        QChar digits[4];
        writeDigits<10>(digits, valueInRange(field, value, offset, report), field.digits);
        text.append(digits, field.digits).append(separator);
        offset += field.bytes;
        position = (position + 1) % record.size();
    }
    if (position != 0)
        return report.failure(QStringLiteral("Invalid input data or format! Format index value is not 0."));
    text.append(QString::number(EndMark));
    return true;
}

} // namespace

bool ZR8BitTVCSound::soundToBin(const QString &sound, QByteArray &bin, QString format,
                                const QString &separator)
{
    const Report report("soundToBin");
    bin.clear();
    format = format.toLower();
    const std::optional<Record> record = readFormat(format, report);
    if (!record)
        return false;
    QList<QStringView> parts = QStringView(sound).split(separator, Qt::SkipEmptyParts);
    if (!parts.isEmpty() && isEndMark(parts.last()))
        parts.removeLast();
    if (!parts.isEmpty() && record->isEmpty())
        return reportEmptyFormat(report);
    if (!parts.isEmpty() && parts.size() % record->size() != 0)
        return report.failure(
            QStringLiteral("Sound length: %1 and format: '%2'does not match with seprator: '%3'!")
                .arg(QString::number(parts.size()), format, separator));

    for (qsizetype i = 0; i < parts.size(); ++i) {
        bool isNumber = false;
        const int number = toInt(parts[i].trimmed(), 10, isNumber);
        if (!isNumber)
            return report.failure(QStringLiteral("Invalid data: '%1' on index: %2!")
                                      .arg(parts[i].toString(), QString::number(i)));
        const Field &field = *record->at(i % record->size());
        const uint value = valueInRange(field, static_cast<quint16>(number), i, report);
        if (field.bytes == 2)
            bin.append(static_cast<char>(value >> 8));
        bin.append(static_cast<char>(value));
    }
    bin.append(static_cast<char>(EndMark));
    return true;
}

bool ZR8BitTVCSound::binToSound(const QByteArray &bin, QString &sound, QString format,
                                const QString &separator)
{
    const Report report("binToSound");
    format = format.toLower();
    const std::optional<Record> record = readFormat(format, report);
    QString text; // not sound at once, which may be the same object as separator
    const bool isWhole = record && appendNumbers(bin, *record, separator, report, text);
    sound = text;
    return isWhole;
}

} // namespace ZR
