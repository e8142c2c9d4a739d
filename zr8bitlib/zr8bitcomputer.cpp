#include <zr8bitlib/zr8bitcomputer.h>

#include "zr8bitfailure_p.h"

#include <zr8bitlib/zr8bitprocmos6510.h>
#include <zr8bitlib/zr8bitram.h>
#include <zrbaselib/zrconfigiface.h>

#include <QtCore/QScopeGuard>

#include <new>

namespace ZR {

namespace {

constexpr char sourceFile[] = "zr8bitlib/zr8bitcomputer";

QString alreadyLoadedText(const QString &kind, const QString &name)
{
    return QStringLiteral("%1: '%2' is already loaded!").arg(kind, name);
}

QString loadErrorText(const QString &prefix, const QString &cause)
{
    return QStringLiteral("Error on load '%1' parameters! %2").arg(prefix, cause);
}

} // namespace

ZR8BitComputer::ZR8BitComputer(const QString &name, QObject *parent)
    : QObject(parent)
    , ZRObject(name)
    , _computerName(tr("Not defined"))
{
}

ZR8BitComputer::~ZR8BitComputer()
{
    _releaseResources();
}

const QString ZR8BitComputer::className()
{
    return QStringLiteral("ZR8BitComputer");
}

bool ZR8BitComputer::readFromConfig(const QString &prefix, ZRConfigIface *config)
{
    Q_UNUSED(prefix)
    _releaseResources();
    if (!config) {
        ZR_SET_LAST_ERROR(noConfigText());
        return false;
    }
    auto release = qScopeGuard([this] { _releaseResources(); });
    _computerName = config->stringValue(QStringLiteral("Computer.Name"), tr("Not defined"));

    const QStringList romNames = config->stringListValue(QStringLiteral("Computer.ROMs"), QStringList());
    if (!_loadBlocks(QStringLiteral("ROM"), romNames, _roms, config, Q_FUNC_INFO))
        return false;

    const QStringList ramNames = config->stringListValue(QStringLiteral("Computer.RAMs"), QStringList());
    if (ramNames.isEmpty()) {
        ZR_SET_LAST_ERROR(QStringLiteral("At least one RAM must be defined!"));
        return false;
    }
    if (!_loadBlocks(QStringLiteral("RAM"), ramNames, _rams, config, Q_FUNC_INFO))
        return false;

    const QStringList processorNames =
        config->stringListValue(QStringLiteral("Computer.Processors"), QStringList());
    if (processorNames.isEmpty()) {
        ZR_SET_LAST_ERROR(QStringLiteral("At least one processor must be defined!"));
        return false;
    }
    for (const QString &processorName : processorNames) {
        if (!_loadProcessor(processorName.trimmed(), config, Q_FUNC_INFO))
            return false;
    }
    release.dismiss();
    return true;
}

QString ZR8BitComputer::computerName()
{
    return _computerName;
}

QMap<QString, ZR8BitROM *> ZR8BitComputer::roms()
{
    return _roms;
}

QMap<QString, ZR8BitRAM *> ZR8BitComputer::rams()
{
    return _rams;
}

QMap<QString, ZR8BitProcessorIface *> ZR8BitComputer::processors()
{
    return _processors;
}

template <typename Block>
bool ZR8BitComputer::_loadBlocks(const QString &kind, const QStringList &names,
                                 QMap<QString, Block *> &blocks, ZRConfigIface *config, const char *operation)
{
    for (const QString &item : names) {
        const QString blockName = item.trimmed();
        auto *block = new (std::nothrow) Block;
        if (!block) {
            ZR_SET_LAST_ERROR_OF(
                operation, QStringLiteral("Couldn't allocate %1 instance for '%2'").arg(kind, blockName));
            return false;
        }
        if (blocks.contains(blockName)) {
            ZR_SET_LAST_ERROR_OF(operation, alreadyLoadedText(kind, blockName));
            delete block;
            return false;
        }
        blocks.insert(blockName, block);
        const QString prefix = kind + QLatin1Char('_') + blockName;
        if (!block->readFromConfig(prefix, config)) {
            ZR_SET_LAST_ERROR_OF(operation, loadErrorText(prefix, block->lastErrorStr()));
            return false;
        }
    }
    return true;
}

bool ZR8BitComputer::_loadProcessor(const QString &name, ZRConfigIface *config, const char *operation)
{
    const QString prefix = QStringLiteral("PROC_") + name;
    const QString type = config->stringValue(prefix + QStringLiteral(".Type"), QString());
    if (type.isEmpty()) {
        ZR_SET_LAST_ERROR_OF(operation, QStringLiteral("Processor: '%1' type is not defined!").arg(name));
        return false;
    }
    ZR8BitProcessorIface *processor = _createProcessor(type);
    if (!processor)
        return false;
    if (_processors.contains(name)) {
        ZR_SET_LAST_ERROR_OF(operation, alreadyLoadedText(QStringLiteral("Processor"), name));
        delete processor;
        return false;
    }
    _processors.insert(name, processor);
    if (!processor->readFromConfig(prefix, config)) {
        ZR_SET_LAST_ERROR_OF(operation,
                             loadErrorText(prefix, static_cast<ZR8BitProcBase *>(processor)->lastErrorStr()));
        return false;
    }
    return true;
}

ZR8BitProcessorIface *ZR8BitComputer::_createProcessor(const QString &type)
{
    if (type.toUpper() != QLatin1String("MOS6510")) {
        ZR_SET_LAST_ERROR(QStringLiteral("Unsupported processor type: '%1'!").arg(type));
        return nullptr;
    }
    auto *processor = new (std::nothrow) ZR8BitProcMOS6510;
    if (!processor)
        ZR_SET_LAST_ERROR(QStringLiteral("Couldn't allocate '%1' processor instance!").arg(type));
    return processor;
}

void ZR8BitComputer::_releaseResources()
{
    qDeleteAll(_processors);
    _processors.clear();
    qDeleteAll(_rams);
    _rams.clear();
    qDeleteAll(_roms);
    _roms.clear();
}

} // namespace ZR
