#pragma once

// What the fuzzers share. Each takes its numbers from the end of the input and its texts and bytes from the
// front, so that a plain file, with a few bytes for the numbers after it, makes a good seed.

#include <fuzzer/FuzzedDataProvider.h>

#include <QtCore/QByteArray>
#include <QtCore/QString>
#include <QtCore/QtLogging>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <utility>
#include <vector>

/// Ends the run with a finding when a condition that always holds does not.
#define LAW(condition)                                                                                       \
    do {                                                                                                     \
        if (!(condition)) {                                                                                  \
            std::fprintf(stderr, "%s:%d: broken law: %s\n", __FILE__, __LINE__, #condition);                 \
            std::abort();                                                                                    \
        }                                                                                                    \
    } while (false)

/// What AddressSanitizer spends on each allocation is most of the time of a short execution: a finding shows
/// the last callers only, and freed memory is watched for a shorter while. ASAN_OPTIONS overrides it.
extern "C" const char *__asan_default_options()
{
    return "malloc_context_size=3:quarantine_size_mb=2:thread_local_quarantine_size_kb=256";
}

/// Bytes whose memory ends with them, so that AddressSanitizer sees a read beyond them.
class ExactBytes
{
public:
    explicit ExactBytes(std::vector<char> &&bytes)
        : _bytes(std::move(bytes))
    {
        _bytes.shrink_to_fit();
    }

    /// The bytes, which stay this object's.
    QByteArray bytes() const
    {
        return QByteArray::fromRawData(_bytes.data(), static_cast<qsizetype>(_bytes.size()));
    }

private:
    std::vector<char> _bytes;
};

/// A text whose memory ends with it.
class ExactText
{
public:
    /// A text of the bytes in UTF-8 or, with raw, of UTF-16 units that need not be characters.
    ExactText(const std::string &bytes, bool raw)
    {
        if (raw) {
            _units.resize(bytes.size() / sizeof(char16_t));
            if (!_units.empty())
                std::memcpy(_units.data(), bytes.data(), _units.size() * sizeof(char16_t));
        } else {
            const QString text = QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
            _units.assign(text.utf16(), text.utf16() + text.size());
        }
    }

    /// The text, whose units stay this object's.
    QString text() const
    {
        return QString::fromRawData(reinterpret_cast<const QChar *>(_units.data()),
                                    static_cast<qsizetype>(_units.size()));
    }

private:
    std::vector<char16_t> _units;
};

/// What is left of the input as exact bytes.
inline ExactBytes remainingBytes(FuzzedDataProvider &input)
{
    return ExactBytes(input.ConsumeRemainingBytes<char>());
}

/// What is left of the input as an exact text.
inline ExactText remainingText(FuzzedDataProvider &input)
{
    const bool raw = input.ConsumeBool();
    return ExactText(input.ConsumeRemainingBytesAsString(), raw);
}

/// Keeps warnings that inputs give off the log.
inline void ignoreMessages()
{
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
}
