#ifndef ZR8BITPROCCOMMAND_H
#define ZR8BITPROCCOMMAND_H

#include <zr8bitlib/zr8bitlib_export.h>
#include <zrbaselib/zrobject.h>

#include <QtCore/QHash>
#include <QtCore/QObject>
#include <QtCore/QString>

namespace ZR {

/// A row of an instruction table: one encoding of a machine instruction.
///
/// A row holds no function. It has the signal execute(), which a processor model connects to its handler; a
/// row that nobody connected runs as a no-op of its length. Only ZR8BitProcCommands makes rows.
class ZR8BITLIB_EXPORT ZR8BitProcCommand : public QObject, public ZRObject
{
    Q_OBJECT

public:
    ~ZR8BitProcCommand() override;

    /// "ZR8BitProcCommand".
    static const QString className();

    /// The opcode.
    unsigned char code();
    /// Length of the whole instruction in bytes, opcode included.
    unsigned char length();
    /// Machine cycles of the instruction, as the table states them. Nothing counts them.
    unsigned char cycleCnt();
    /// The mnemonic, as in "ADC".
    QString assembly();

    /// Runs the instruction: emits execute() and returns length(), whatever the handler did. params points at
    /// the operand bytes, of which there must be as many as the row needs; paramLen is not looked at.
    unsigned char exec(const char *params, const unsigned char &paramLen);

Q_SIGNALS:
    /// The instruction runs. The handler is to be connected with Qt::DirectConnection. The type stands
    /// without its namespace, as in the strings that handlers are connected by: a connection by strings
    /// compares the spelling.
    void execute(ZR8BitProcCommand *pCommand, const char *params);

private:
    friend class ZR8BitProcCommands;

    ZR8BitProcCommand(const unsigned char &code, const unsigned char &length, const unsigned char &cycleCnt,
                      const QString &assembly, const QString &title, const QString &text, const QString &name,
                      QObject *parent);

    unsigned char _code;
    unsigned char _length;
    unsigned char _cycleCnt;
    QString _assembly;
};

/// The instruction table of a processor model, keyed by the opcode. It only grows.
///
/// The table owns its rows; pointers to them stay valid as long as it lives. Takes no lock: a model fills it
/// once and only reads it afterwards.
class ZR8BITLIB_EXPORT ZR8BitProcCommands : public QObject, public ZRObject
{
    Q_OBJECT

public:
    /// An empty table.
    explicit ZR8BitProcCommands(const QString &name = QString(), QObject *parent = nullptr);
    ~ZR8BitProcCommands() override;

    /// "ZR8BitProcCommands".
    static const QString className();

    /// Adds a row with its mnemonic, short title and long text. Returns null with a last error, and changes
    /// nothing, when assembly is empty or the opcode is taken. Any length and cycle count is stored, but a
    /// row of length 0 fails when it runs.
    ZR8BitProcCommand *addCommand(const unsigned char &code, const unsigned char &length,
                                  const unsigned char &cycleCnt, const QString &assembly,
                                  const QString &title, const QString &text);

    /// The row of an opcode; null, and no failure, when there is none.
    ZR8BitProcCommand *command(const unsigned char &code);

    /// All rows by opcode, as a copy.
    QHash<unsigned char, ZR8BitProcCommand *> commandList();

private:
    QHash<unsigned char, ZR8BitProcCommand *> _commands;
};

} // namespace ZR

#endif
