#include <zr8bitkit/zr8bitprogramfile.h>

#include <zr8bitkit/zrnumbers.h>

#include <algorithm>

namespace ZR {

namespace {

using Program = ZR8BitProgramFile::Program;

constexpr qint64 AddressCount = 0x10000;

/// Reads Intel HEX line by line. What reads a part of it returns what is wrong with it, if anything.
class HexReader
{
public:
    QString readLine(const QByteArray &line);
    bool isAtEnd() const { return _isAtEnd; }
    const QList<ZR8BitProgramFile::Segment> &segments() const { return _segments; }

private:
    QString _readRecord(int type, qint64 address, const QByteArray &data);
    QString _addData(qint64 address, const QByteArray &data);

    QList<ZR8BitProgramFile::Segment> _segments;
    qint64 _base = 0; ///< to be added to the address of a record
    bool _isAtEnd = false;
};

bool isHexDigit(char letter)
{
    return (letter >= '0' && letter <= '9') || (letter >= 'A' && letter <= 'F') ||
           (letter >= 'a' && letter <= 'f');
}

qint64 wordAt(const QByteArray &bytes, qsizetype place)
{
    return static_cast<quint8>(bytes[place]) << 8 | static_cast<quint8>(bytes[place + 1]);
}

QString HexReader::readLine(const QByteArray &line)
{
    constexpr qsizetype BytesAroundData = 5; // length, address, type and checksum
    if (line.isEmpty())
        return QString();
    if (_isAtEnd)
        return QStringLiteral("The record of the end must be the last one!");
    if (!line.startsWith(':'))
        return QStringLiteral("A record begins with a colon!");
    const auto bad = std::find_if_not(line.begin() + 1, line.end(), isHexDigit);
    if (bad != line.end())
        return QStringLiteral("Letter %1 of the record is no base-16 digit!").arg(bad - line.begin() + 1);
    const QByteArray record = QByteArray::fromHex(line.sliced(1));
    const qsizetype length = record.isEmpty() ? 0 : static_cast<quint8>(record[0]);
    if (line.size() != 1 + 2 * (length + BytesAroundData))
        return QStringLiteral("A record with %1 bytes of data has %2 digits, not %3!")
            .arg(QString::number(length), QString::number(2 * (length + BytesAroundData)),
                 QString::number(line.size() - 1));
    int sum = 0;
    const QByteArray summed = record.chopped(1);
    for (const char byte : summed)
        sum -= static_cast<quint8>(byte);
    const int checksum = static_cast<quint8>(record.back());
    if (static_cast<quint8>(sum) != checksum)
        return QStringLiteral("The checksum is %1, but that of the record is %2!")
            .arg(ZRNumbers::hexDigits(checksum, 2), ZRNumbers::hexDigits(static_cast<quint8>(sum), 2));
    return _readRecord(record[3], wordAt(record, 1), record.sliced(4, length));
}

QString HexReader::_readRecord(int type, qint64 address, const QByteArray &data)
{
    switch (type) {
    case 0:
        return _addData(_base + address, data);
    case 1:
        _isAtEnd = true;
        return QString();
    case 2: // a base in units of 16 bytes
    case 4: // a base in units of 64 KiB
        if (data.size() != 2)
            return QStringLiteral("A record of type %1 has 2 bytes of data, not %2!")
                .arg(QString::number(type), QString::number(data.size()));
        _base = wordAt(data, 0) * (type == 2 ? 16 : AddressCount);
        return QString();
    case 3: // where the program starts
    case 5:
        return QString();
    default:
        return QStringLiteral("A record is of type 0 to 5, not %1!").arg(static_cast<quint8>(type));
    }
}

QString HexReader::_addData(qint64 address, const QByteArray &data)
{
    if (address + data.size() > AddressCount)
        return QStringLiteral("%1 bytes from %2 on go beyond $FFFF!")
            .arg(QString::number(data.size()), ZRNumbers::addressText(static_cast<int>(address)));
    const bool goesOn =
        !_segments.isEmpty() && _segments.constLast().address + _segments.constLast().bytes.size() == address;
    if (goesOn)
        _segments.last().bytes += data;
    else if (!data.isEmpty())
        _segments.append({static_cast<int>(address), data});
    return QString();
}

/// Whether the content can be nothing but Intel HEX.
bool isSurelyHex(const QByteArray &content)
{
    const auto isOfHex = [](char letter) {
        return isHexDigit(letter) || letter == ':' || letter == '\r' || letter == '\n' || letter == ' ';
    };
    return content.trimmed().startsWith(':') && std::all_of(content.begin(), content.end(), isOfHex);
}

/// These give the program, or what is wrong in error.
std::optional<Program> readHex(const QByteArray &content, QString &error)
{
    HexReader reader;
    const auto lines = content.split('\n');
    for (qsizetype i = 0; i < lines.size() && error.isEmpty(); ++i) {
        const QString problem = reader.readLine(lines[i].trimmed());
        if (!problem.isEmpty())
            error = QStringLiteral("Line %1: %2").arg(QString::number(i + 1), problem);
    }
    if (error.isEmpty() && !reader.isAtEnd())
        error = QStringLiteral("The record of the end, :00000001FF, is missing!");
    if (!error.isEmpty())
        return std::nullopt;
    return Program{ZR8BitProgramFile::Format::IntelHex, reader.segments()};
}

std::optional<Program> readBytes(ZR8BitProgramFile::Format format, int address, const QByteArray &bytes,
                                 QString &error)
{
    if (address < 0 || bytes.size() > AddressCount - address) {
        error = QStringLiteral("%1 bytes from %2 on go beyond $FFFF!")
                    .arg(QString::number(bytes.size()), ZRNumbers::addressText(address));
        return std::nullopt;
    }
    return Program{format, {{address, bytes}}};
}

std::optional<Program> readPrg(const QByteArray &content, QString &error)
{
    if (content.size() < 2) {
        error = QStringLiteral("A .prg file begins with two bytes of address, but this one has %1!")
                    .arg(content.size());
        return std::nullopt;
    }
    const int address = static_cast<quint8>(content[0]) | static_cast<quint8>(content[1]) << 8;
    return readBytes(ZR8BitProgramFile::Format::Prg, address, content.sliced(2), error);
}

} // namespace

std::optional<Program> ZR8BitProgramFile::read(const QByteArray &content, const QString &fileName,
                                               QString *error)
{
    const auto hasSuffix = [&fileName](const char *suffix) {
        return fileName.endsWith(QLatin1String(suffix), Qt::CaseInsensitive);
    };
    QString problem;
    std::optional<Program> program;
    if (isSurelyHex(content) || hasSuffix(".hex") || hasSuffix(".ihx"))
        program = readHex(content, problem);
    else if (hasSuffix(".prg"))
        program = readPrg(content, problem);
    else
        program = readBytes(Format::Raw, 0, content, problem);
    if (error)
        *error = problem;
    return program;
}

std::optional<Program> ZR8BitProgramFile::readRaw(const QByteArray &content, int address, QString *error)
{
    QString problem;
    auto program = readBytes(Format::Raw, address, content, problem);
    if (error)
        *error = problem;
    return program;
}

} // namespace ZR
