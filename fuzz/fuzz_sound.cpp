// Sounds in both directions, under any format and separator.

#include "fuzzing.h"

#include <zr8bitlib/zr8bittvcsound.h>

#include <QtCore/QtLogging>

#include <algorithm>

using ZR::ZR8BitTVCSound;

namespace {

constexpr char EndByte = '\xF0';

void ignoreMessage(QtMsgType, const QMessageLogContext &, const QString &) {}

/// How a sound is written.
struct Form
{
    QString format;
    QString separator;

    qsizetype recordSize() const
    {
        return format.size() + format.count(u'p', Qt::CaseInsensitive); // a pitch has two bytes
    }

    bool separatesNumbers() const
    {
        return !separator.isEmpty() && std::none_of(separator.begin(), separator.end(),
                                                    [](QChar character) { return character.isDigit(); });
    }

    bool isValid() const
    {
        return std::all_of(format.begin(), format.end(),
                           [](QChar letter) { return QStringLiteral("vpdVPD").contains(letter); });
    }
};

/// A stream that was written is read, and then written, as the same again.
void checkRoundTrip(const QByteArray &stream, const Form &form)
{
    QString text;
    LAW(ZR8BitTVCSound::binToSound(stream, text, form.format, form.separator));
    LAW(text.endsWith(QStringLiteral("240")));
    if (!form.separatesNumbers())
        return;
    QByteArray back;
    LAW(ZR8BitTVCSound::soundToBin(text, back, form.format, form.separator));
    LAW(back == stream);
}

void checkEncode(const QString &text, const Form &form)
{
    QByteArray stream("old");
    if (!ZR8BitTVCSound::soundToBin(text, stream, form.format, form.separator)) {
        LAW(form.isValid() || stream.isEmpty());
        return;
    }
    LAW(form.isValid() && stream.endsWith(EndByte));
    LAW((stream.size() - 1) % qMax<qsizetype>(form.recordSize(), 1) == 0);
    checkRoundTrip(stream, form);
}

void checkDecode(const QByteArray &stream, const Form &form)
{
    QString text = QStringLiteral("old");
    if (!ZR8BitTVCSound::binToSound(stream, text, form.format, form.separator)) {
        LAW(form.isValid() || text.isEmpty());
        return;
    }
    LAW(form.isValid());
    if (!form.separatesNumbers())
        return;
    QByteArray back;
    LAW(ZR8BitTVCSound::soundToBin(text, back, form.format, form.separator));
    LAW(back.size() == stream.size() || back.size() == stream.size() + 1); // an end that is missing is added
    checkRoundTrip(back, form);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    qInstallMessageHandler(ignoreMessage);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    FuzzedDataProvider input(bytes, size);
    const bool encode = input.ConsumeBool();
    Form form{QStringLiteral("vpd"), QStringLiteral(",")};
    if (input.ConsumeBool())
        form.separator = QString::fromStdString(input.ConsumeRandomLengthString(8));
    if (input.ConsumeBool()) {
        form.format.clear();
        for (int letters = input.ConsumeIntegralInRange(0, 5); letters > 0; --letters)
            form.format += QLatin1Char(input.PickValueInArray({'v', 'p', 'd', 'V', 'P', 'D', '\xE9'}));
    }
    if (encode)
        checkEncode(remainingText(input).text(), form);
    else
        checkDecode(remainingBytes(input).bytes(), form);
    return 0;
}
