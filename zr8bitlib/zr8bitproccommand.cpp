#include <zr8bitlib/zr8bitproccommand.h>

#include "zr8bitfailure_p.h"

#include <new>

namespace ZR {

namespace {

constexpr char sourceFile[] = "zr8bitlib/zr8bitproccommand";

} // namespace

ZR8BitProcCommand::ZR8BitProcCommand(const unsigned char &code, const unsigned char &length,
                                     const unsigned char &cycleCnt, const QString &assembly,
                                     const QString &title, const QString &text, const QString &name,
                                     QObject *parent)
    : QObject(parent)
    , ZRObject(name)
    , _code(code)
    , _length(length)
    , _cycleCnt(cycleCnt)
    , _assembly(assembly)
{
    setDesc(title, text);
}

ZR8BitProcCommand::~ZR8BitProcCommand() = default;

const QString ZR8BitProcCommand::className()
{
    return QStringLiteral("ZR8BitProcCommand");
}

unsigned char ZR8BitProcCommand::code()
{
    return _code;
}

unsigned char ZR8BitProcCommand::length()
{
    return _length;
}

unsigned char ZR8BitProcCommand::cycleCnt()
{
    return _cycleCnt;
}

QString ZR8BitProcCommand::assembly()
{
    return _assembly;
}

unsigned char ZR8BitProcCommand::exec(const char *params, const unsigned char &paramLen)
{
    Q_UNUSED(paramLen)
    Q_EMIT execute(this, params);
    return _length;
}

ZR8BitProcCommands::ZR8BitProcCommands(const QString &name, QObject *parent)
    : QObject(parent)
    , ZRObject(name)
{
}

ZR8BitProcCommands::~ZR8BitProcCommands() = default;

const QString ZR8BitProcCommands::className()
{
    return QStringLiteral("ZR8BitProcCommands");
}

ZR8BitProcCommand *ZR8BitProcCommands::addCommand(const unsigned char &code, const unsigned char &length,
                                                  const unsigned char &cycleCnt, const QString &assembly,
                                                  const QString &title, const QString &text)
{
    const QString opcode = hexText(code, OpcodeDigits);
    if (assembly.isEmpty()) {
        ZR_SET_LAST_ERROR(QStringLiteral("Assembly must defined for opcode: 0x%1!").arg(opcode));
        return nullptr;
    }
    if (ZR8BitProcCommand *present = command(code)) {
        ZR_SET_LAST_ERROR(QStringLiteral("Opcode: 0x%1 is already in the commands list with assembly: '%2'")
                              .arg(opcode, present->assembly()));
        return nullptr;
    }
    auto *added = new (std::nothrow) ZR8BitProcCommand(code, length, cycleCnt, assembly, title, text,
                                                       QStringLiteral("ZR8BitProcCommand_") + assembly, this);
    if (!added) {
        ZR_SET_LAST_ERROR(
            QStringLiteral("Couldn't allocate ZR8BitProcCommand instance for opcode: 0x%1 - '%2'!")
                .arg(opcode, assembly));
        return nullptr;
    }
    _commands.insert(code, added);
    return added;
}

ZR8BitProcCommand *ZR8BitProcCommands::command(const unsigned char &code)
{
    return _commands.value(code, nullptr);
}

QHash<unsigned char, ZR8BitProcCommand *> ZR8BitProcCommands::commandList()
{
    return _commands;
}

} // namespace ZR
