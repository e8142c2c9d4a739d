#ifndef ZR8BITLABELS_H
#define ZR8BITLABELS_H

#include <zr8bitkit/zr8bitkit_export.h>
#include <zrbaselib/zrobject.h>

#include <memory>

namespace ZR {

/// The labels of a program, in the forms that assemblers write.
///
///     ZR::ZR8BitLabels labels;
///     if (!labels.load(u"program.lbl"_s))
///         qWarning("%s", qPrintable(labels.lastErrorStr()));
///     labels.textOf(0x229); // "done ($0229)"
///
/// A line holds one label, in one of these forms:
///
///     al C:0229 .done       label files of VICE; "C:" may be missing
///     done = $0229
///     done EQU 0229H        also "done: equ 0x0229"
///     done, 0x0229, 0, 0
///
/// Words and base-16 digits may be in upper or lower case; names are case-sensitive. A name has ASCII
/// letters, digits and any of _ . @ ? ! $ :, and begins with none of a digit, $ and :. Comments begin with a
/// semicolon. An address is from 0 to $FFFF. To be used from one thread at a time; what is const may be
/// called from several.
class ZR8BITKIT_EXPORT ZR8BitLabels : public ZRObject
{
public:
    /// Without labels.
    explicit ZR8BitLabels(const QString &name = QString());
    ~ZR8BitLabels() override;

    /// Adds the labels of a file. Returns false, with a last error and no new labels, when it cannot be read.
    bool load(const QString &filePath);

    /// Adds the labels of a text in ASCII or UTF-8. A line of any other form is skipped and counted.
    void read(const QByteArray &text);

    /// How many lines were skipped so far that are neither labels nor blank nor comments.
    int skippedLineCount() const;

    /// Adds a label. Of an address with several names, and of a name with several addresses, the first one
    /// that was added counts.
    void add(const QString &name, quint16 address);

    /// The name of an address; empty when it has none.
    QString nameOf(quint16 address) const;

    /// The address of a name; -1 when there is no such label.
    int addressOf(const QString &name) const;

    /// An address for messages: "done ($0229)", or "$0229" when it has no name.
    QString textOf(quint16 address) const;

private:
    struct Private;

    std::unique_ptr<Private> _d;
};

} // namespace ZR

#endif
