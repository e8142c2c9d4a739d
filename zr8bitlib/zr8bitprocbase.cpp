#include <zr8bitlib/zr8bitprocbase.h>

#include "zr8bitfailure_p.h"

namespace ZR {

namespace {

constexpr char sourceFile[] = "zr8bitlib/zr8bitprocbase";

} // namespace

ZR8BitProcBase::ZR8BitProcBase(const QString &name, QObject *parent)
    : QObject(parent)
    , ZRObject(name)
{
}

ZR8BitProcBase::~ZR8BitProcBase() = default;

const QString ZR8BitProcBase::className()
{
    return QStringLiteral("ZR8BitProcBase");
}

bool ZR8BitProcBase::init()
{
    return true;
}

bool ZR8BitProcBase::readFromConfig(const QString &prefix, ZRConfigIface *config)
{
    Q_UNUSED(prefix)
    if (!config) {
        ZR_SET_LAST_ERROR(noConfigText());
        return false;
    }
    return true;
}

void ZR8BitProcBase::setMainMemory(ZR8BitRAM *memory)
{
    _mainMemory = memory;
}

ZR8BitRAM *ZR8BitProcBase::mainMemory()
{
    return _mainMemory;
}

void ZR8BitProcBase::pause()
{
    _paused = true;
}

void ZR8BitProcBase::resume()
{
    _paused = false;
}

bool ZR8BitProcBase::hardwareIssue()
{
    return _hardwareIssue;
}

QString ZR8BitProcBase::hardwareIssueMsg()
{
    return _hardwareIssueMsg;
}

void ZR8BitProcBase::resetHardwareIssue()
{
    _hardwareIssue = false;
    _hardwareIssueMsg.clear();
}

QMap<QString, ZR8BitRegister *> ZR8BitProcBase::registers()
{
    return _registers;
}

QHash<unsigned char, ZR8BitProcCommand *> ZR8BitProcBase::commandList()
{
    return _commands.commandList();
}

int ZR8BitProcBase::execute(const char *data, const int &size)
{
    if (_paused || _hardwareIssue)
        return 0;
    if (!data) {
        ZR_SET_HARDWARE_ISSUE(tr("There is no instruction to execute!"));
        return -1;
    }

    const auto opcode = static_cast<unsigned char>(data[0]);
    ZR8BitProcCommand *command = _commands.command(opcode);
    if (!command) {
        ZR_SET_HARDWARE_ISSUE(tr("The opcode: 0x%1 is not in the processor supported command list!")
                                  .arg(hexText(opcode, OpcodeDigits)));
        return -1;
    }
    const int length = command->exec(data + 1, static_cast<unsigned char>(size - 1));
    if (length > 0)
        return length;

    ZR_SET_HARDWARE_ISSUE(
        tr("Error on execute command: 0x%1 - '%2'! %3")
            .arg(hexText(opcode, OpcodeDigits), command->assembly(), command->lastErrorStr()));
    return -1;
}

int ZR8BitProcBase::execute(const QByteArray &data)
{
    return execute(data.constData(), static_cast<int>(data.length()));
}

void ZR8BitProcBase::_setHardwareIssue(const QString &message)
{
    _hardwareIssue = true;
    _hardwareIssueMsg = message;
}

} // namespace ZR
