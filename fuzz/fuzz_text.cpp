// The character code in both directions.

#include "fuzzing.h"

#include <zr8bitlib/zr8bittvc.h>

using ZR::ZR8BitTVC;

namespace {

void checkDecode(const QByteArray &codes)
{
    const QString text = ZR8BitTVC::TVCStrToQString(codes);
    LAW(text.size() == codes.size());
    const QByteArray back = ZR8BitTVC::QStringToTVCStr(text);
    LAW(back.size() == codes.size());
    for (qsizetype i = 0; i < codes.size(); ++i) {
        const auto code = static_cast<unsigned char>(codes[i]);
        const bool isUsed = code >= 0x20 && code <= 0x9F;
        LAW(back[i] == (isUsed ? codes[i] : ' ') && (isUsed || text[i] == u' '));
    }
}

void checkEncode(const QString &text)
{
    const QByteArray codes = ZR8BitTVC::QStringToTVCStr(text);
    LAW(codes.size() == text.size());
    LAW(ZR8BitTVC::QStringToTVCStr(ZR8BitTVC::TVCStrToQString(codes)) == codes);
    const qsizetype half = text.size() / 2;
    LAW(ZR8BitTVC::QStringToTVCStr(text.first(half)) + ZR8BitTVC::QStringToTVCStr(text.sliced(half)) ==
        codes);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const unsigned char *bytes, size_t size)
{
    FuzzedDataProvider input(bytes, size);
    if (input.ConsumeBool())
        checkEncode(remainingText(input).text());
    else
        checkDecode(remainingBytes(input).bytes());
    return 0;
}
