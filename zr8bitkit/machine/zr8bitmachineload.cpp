// How a machine is loaded and wired.

#include "zr8bitmachine_p.h"

#include "zrfailure_p.h"

#include <zr8bitkit/zr8bitprocmos6510full.h>
#include <zr8bitkit/zr8bitprocz80.h>
#include <zr8bitkit/zriniconfig.h>
#include <zr8bitkit/zrnumbers.h>

#include <QtCore/QRegularExpression>

namespace ZR {

namespace {

constexpr char sourceFile[] = "zr8bitkit/zr8bitmachineload";

constexpr int AddressCount = 0x10000;

template <typename Processor>
CompleteProcessor completed(std::unique_ptr<Processor> processor)
{
    ZR8BitChipIface *chip = processor.get();
    return {std::move(processor), chip};
}

/// Gives nothing where the settings leave it to the computer's own processor.
CompleteProcessor makeMOS6510(ZR8BitMachine::Instructions instructions)
{
    if (instructions == ZR8BitMachine::Instructions::AsSettings)
        return {};
    auto processor = std::make_unique<ZR8BitProcMOS6510Full>();
    processor->setUndocumented(instructions == ZR8BitMachine::Instructions::All);
    return completed(std::move(processor));
}

/// It has all of its instructions, whichever are asked for.
CompleteProcessor makeZ80(ZR8BitMachine::Instructions)
{
    return completed(std::make_unique<ZR8BitProcZ80>());
}

/// The processors that a machine may have, by the key "Type".
const struct
{
    const char *type;
    CompleteProcessor (*make)(ZR8BitMachine::Instructions instructions);
    bool hasChoice; ///< whether it can do without the undocumented instructions
} processorTypes[] = {
    {"MOS6510", makeMOS6510, true},
    {"Z80", makeZ80, false},
};

std::optional<size_t> typeIndex(const QString &type)
{
    for (size_t i = 0; i < std::size(processorTypes); ++i) {
        if (type.compare(QLatin1String(processorTypes[i].type), Qt::CaseInsensitive) == 0)
            return i;
    }
    return std::nullopt;
}

QStringList typeNames()
{
    QStringList names;
    for (const auto &known : processorTypes)
        names += QLatin1String(known.type);
    return names;
}

/// The settings as the library's computer is to see them. It knows one type of processors, which it makes for
/// the others, too: the machine runs its own in their place.
class ComputerConfig : public ZRConfigIface
{
public:
    explicit ComputerConfig(ZRConfigIface &config)
        : _config(config)
    {
    }

    QString stringValue(const QString &key, const QString &defaultValue) override
    {
        const QString value = _config.stringValue(key, defaultValue);
        const bool isType = key.startsWith(QLatin1String("PROC_")) && key.endsWith(QLatin1String(".Type"));
        return isType && !value.isEmpty() ? QStringLiteral("MOS6510") : value;
    }
    QStringList stringListValue(const QString &key, const QStringList &defaultValue) override
    {
        return _config.stringListValue(key, defaultValue);
    }
    int intValue(const QString &key, int defaultValue) override
    {
        return _config.intValue(key, defaultValue);
    }

private:
    ZRConfigIface &_config;
};

/// What an item of the key "Map" says: its block, and where which part of it goes.
struct MapItem
{
    bool isROM = false;
    QString name;
    int address = 0;
    int offset = 0;
    int length = -1; ///< to the end
};

std::optional<MapItem> parseMapItem(const QString &text)
{
    static const QRegularExpression form(
        QStringLiteral("^(RAM|ROM):(.+)@([^@+:]+)(?:\\+([^@+:]+))?(?::([^@+:]+))?$"));
    const QRegularExpressionMatch match = form.match(text);
    MapItem item;
    item.isROM = match.captured(1) == QLatin1String("ROM");
    item.name = match.captured(2).trimmed();
    int *const numbers[] = {&item.address, &item.offset, &item.length};
    for (int i = 0; i < 3; ++i) {
        const QString digits = match.captured(3 + i).trimmed();
        const std::optional<int> number = ZRNumbers::parse(digits);
        if (number && *number >= 0)
            *numbers[i] = *number;
        else if (i == 0 || !digits.isEmpty()) // only the address must be there
            return std::nullopt;
    }
    return item;
}

/// The name of the first RAM of a map, empty when there is none.
QString firstRAM(const QStringList &map)
{
    for (const QString &text : map) {
        const auto item = parseMapItem(text);
        if (item && !item->isROM)
            return item->name;
    }
    return QString();
}

/// A setting for messages, with its file and line where the settings know them.
QString nameOf(ZRConfigIface *config, const QString &key)
{
    const auto *settings = dynamic_cast<const ZRMapConfig *>(config);
    return settings ? settings->nameOf(key) : key;
}

} // namespace

bool ZR8BitMachine::load(ZRConfigIface *config, const Choice &choice)
{
    if (_d->isBusy())
        return _isReady(QStringLiteral("be loaded"));
    _unwire();
    if (config && !_checkTypes(config))
        return false;
    std::optional<ComputerConfig> computerConfig;
    if (config)
        computerConfig.emplace(*config);
    if (!_d->computer.readFromConfig(QString(), config ? &*computerConfig : nullptr))
        return _fail(_d->computer);
    if (_choose(config, choice))
        return true;
    _unwire();
    return false;
}

bool ZR8BitMachine::load(ZRConfigIface *config)
{
    return load(config, Choice());
}

bool ZR8BitMachine::loadSettings(const QString &filePath, const Choice &choice)
{
    if (_d->isBusy())
        return _isReady(QStringLiteral("be loaded"));
    ZRIniConfig config;
    config.setLogger(_logger);
    if (!config.load(filePath)) {
        _unload();
        return _fail(config);
    }
    const bool isLoaded = load(&config, choice);
    const QString badNumber = config.badNumberText();
    if (!isLoaded) {
        _lastError = QStringLiteral("Settings file '%1': %2")
                         .arg(filePath, badNumber.isEmpty() ? _lastError : badNumber);
        return false;
    }
    if (!badNumber.isEmpty())
        _d->warnings += badNumber;
    const QStringList unread = config.unreadKeys();
    for (const QString &key : unread)
        _d->warnings += QStringLiteral("Nothing reads the setting %1!").arg(config.nameOf(key));
    return true;
}

bool ZR8BitMachine::loadSettings(const QString &filePath)
{
    return loadSettings(filePath, Choice());
}

/// Whether each processor is of a type that there is.
bool ZR8BitMachine::_checkTypes(ZRConfigIface *config)
{
    const QStringList names = config->stringListValue(QStringLiteral("Computer.Processors"), QStringList());
    for (const QString &name : names) {
        const QString prefix = QStringLiteral("PROC_") + name.trimmed();
        // Of the processors that are not chosen these keys are not read again, but they are no mistake.
        for (const char *key : {".Instructions", ".Map"})
            config->stringValue(prefix + QLatin1String(key), QString());
        const QString type = config->stringValue(prefix + QStringLiteral(".Type"), QString());
        if (type.isEmpty() || typeIndex(type))
            continue; // one that is missing is reported by the computer
        _unload();
        return ZR_FAIL(QStringLiteral("Unsupported processor type: '%1', supported are: %2")
                           .arg(type, typeNames().join(QStringLiteral(", "))));
    }
    return true;
}

bool ZR8BitMachine::_choose(ZRConfigIface *config, const Choice &choice)
{
    const auto memories = _d->computer.rams();
    const auto processors = _d->computer.processors();
    QString processor = choice.processor;
    if (!_findName(processor, processors.keys(), QStringLiteral("processor")))
        return false;
    const QString prefix = QStringLiteral("PROC_") + processor;
    const QString mapKey = prefix + QStringLiteral(".Map");
    const QStringList map = config->stringListValue(mapKey, QStringList());

    QString memory = choice.memory.isEmpty() ? firstRAM(map) : choice.memory;
    if (!_findName(memory, memories.keys(), QStringLiteral("RAM")))
        return false;
    _d->memory = memories.value(memory);
    // The type of every processor of a computer derives from this class.
    _d->processor = static_cast<ZR8BitProcBase *>(processors.value(processor));
    return _makeProcessor(config, prefix, choice.instructions) && _map(nameOf(config, mapKey), map) &&
           _wire(config, prefix);
}

/// Makes an empty name that of the only part, and returns whether there is a part of the name.
bool ZR8BitMachine::_findName(QString &name, const QStringList &names, const QString &kind)
{
    if (names.contains(name))
        return true;
    const QString allNames = names.join(QStringLiteral(", "));
    if (!name.isEmpty())
        return ZR_FAIL(QStringLiteral("The machine has no %1 '%2', it has: %3").arg(kind, name, allNames));
    if (names.size() > 1)
        return ZR_FAIL(QStringLiteral("The machine has more than one %1, choose one by its name: %2")
                           .arg(kind, allNames));
    name = names.first();
    return true;
}

/// Makes a complete processor the one to run, when it is wanted.
bool ZR8BitMachine::_makeProcessor(ZRConfigIface *config, const QString &prefix, Instructions instructions)
{
    const QString key = prefix + QStringLiteral(".Instructions");
    const QString word = config->stringValue(key, QString());
    if (instructions == Instructions::AsSettings && !word.isEmpty()) {
        const bool isAll = word.compare(QLatin1String("all"), Qt::CaseInsensitive) == 0;
        if (!isAll && word.compare(QLatin1String("documented"), Qt::CaseInsensitive) != 0)
            return ZR_FAIL(
                QStringLiteral("%1 is 'documented' or 'all', not '%2'!").arg(nameOf(config, key), word));
        instructions = isAll ? Instructions::All : Instructions::Documented;
    }
    const QString name = config->stringValue(prefix + QStringLiteral(".Type"), QString());
    const auto &type = processorTypes[*typeIndex(name)];
    if (instructions == Instructions::Documented && !type.hasChoice)
        return ZR_FAIL(QStringLiteral("A %1 has all of its instructions, never the 'documented' ones alone!")
                           .arg(QLatin1String(type.type)));
    _d->complete = type.make(instructions);
    if (_d->complete.chip)
        _d->processor = _d->complete.processor.get();
    return true;
}

/// Fills the address space as the settings say.
bool ZR8BitMachine::_map(const QString &key, const QStringList &items)
{
    if (items.isEmpty()) {
        const int length = qMin(_d->memory->size(), AddressCount);
        return length == 0 || _d->space.mapMemory(0, _d->memory, 0, length) || _fail(_d->space);
    }
    if (!_d->complete.chip)
        return ZR_FAIL(
            QStringLiteral("%1 needs a complete processor, with 'documented' or 'all' Instructions!")
                .arg(key));
    for (const QString &text : items) {
        const auto item = parseMapItem(text);
        if (!item)
            return ZR_FAIL(QStringLiteral("%1: '%2' is not of the form RAM:NAME@ADDRESS or ROM:NAME@ADDRESS, "
                                          "with +OFFSET and :LENGTH after it if wanted!")
                               .arg(key, text));
        ZR8BitROM *block =
            item->isROM ? _d->computer.roms().value(item->name) : _d->computer.rams().value(item->name);
        if (!block)
            return ZR_FAIL(
                QStringLiteral("%1: the machine has no %2 '%3'!").arg(key, text.left(3), item->name));
        if (!_d->space.mapMemory(item->address, block, item->offset, item->length))
            return ZR_FAIL(QStringLiteral("%1: '%2': %3").arg(key, text, _d->space.lastErrorStr()));
    }
    return true;
}

bool ZR8BitMachine::_wire(ZRConfigIface *config, const QString &prefix)
{
    if (_logger)
        setLogger(_logger);
    _d->processor->setMainMemory(_d->memory);
    if (!_d->processor->readFromConfig(prefix, config) || !_d->processor->init())
        return _fail(*_d->processor);
    _d->chip = _d->complete.chip;
    if (!_d->chip) {
        _d->plainChip = std::make_unique<PlainChip>(*_d->processor);
        _d->chip = _d->plainChip.get();
    }
    _d->chip->setBus(&_d->space);
    _d->observeInterrupts();
    return true;
}

/// Leaves the computer alone, without a processor that runs.
void ZR8BitMachine::_unwire()
{
    _d->chip = nullptr;
    _d->processor = nullptr;
    _d->memory = nullptr;
    _d->plainChip.reset();
    _d->complete = {};
    _d->space.clear();
    _d->watch.watch(0, 0, Access::Any);
    _d->observer = nullptr;
    _d->loaded.clear();
    _d->history.reset();
    _d->warnings.clear();
    _d->instructionCount = 0;
}

/// Leaves no machine at all.
void ZR8BitMachine::_unload()
{
    _unwire();
    _d->computer.setLogger(nullptr); // it takes this for a failure
    _d->computer.readFromConfig(QString(), nullptr);
    _d->computer.setLogger(_logger);
}

} // namespace ZR
